#include "baseline_panel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <algorithm>

#include "dialog_parts.h"
#include "editing/baseline.h"
#include "editing/integrals.h"
#include "plot_widget.h"
#include "session/command_flow.h"

namespace tevo::app {

Baseline_Panel::Baseline_Panel(Session& session, Plot_Widget* plot, QWidget* parent)
    : QWidget(parent), session_(session), plot_(plot) {
  setObjectName("BaselineToolbar");
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(4, 2, 4, 2);
  // Button 2 sets the points by itself; 3 and 4 arm the mouse.
  const std::pair<int, const char*> tools[] = {{2, "自動"}, {3, "追加"}, {4, "削除"}};
  for (const auto& [index, caption] : tools) {
    const QByteArray name = QStringLiteral("BaselineToolbar_%1").arg(index).toUtf8();
    QToolButton* b = Named_Tool(this, name.constData(), QString::fromUtf8(caption), index != 2);
    buttons_[index] = b;
    row->addWidget(b);
    connect(b, &QToolButton::clicked, this, [this, index, b] {
      if (index != 2) return Arm(index, b->isChecked());
      Take_Average();
      editing::Base_Auto_Points(session_);
      emit changed();
    });
  }
  row->addSpacing(8);
  row->addWidget(new QLabel(QStringLiteral("Point数"), this));
  average_ = Named_Field(this, "BaselineText1");
  average_->setMaximumWidth(60);
  row->addWidget(average_);
  On_Typed(average_, this, [this] { Take_Average(); });
  row->addSpacing(8);
  preview_ = Named_Button(this, "BaseCorCommand1", QString());
  auto* ok = Named_Button(this, "BaseCorCommand2", QStringLiteral("O K"));
  auto* cancel = Named_Button(this, "BaseCorCommand3", QStringLiteral("ｷｬﾝｾﾙ"));
  row->addWidget(preview_);
  row->addWidget(ok);
  row->addWidget(cancel);
  row->addStretch();
  connect(preview_, &QPushButton::clicked, this, [this] {
    preview_->setText(QString::fromUtf8(editing::Base_Toggle_Preview(session_)));
    emit changed();
  });
  for (auto [button, confirm] : {std::pair{ok, true}, std::pair{cancel, false}}) {
    connect(button, &QPushButton::clicked, this, [this, confirm = confirm] {
      Arm(0, false);
      if (confirm)
        editing::BaseCorCommand2_Click(session_);
      else
        editing::BaseCorCommand3_Click(session_);
      emit finished();
    });
  }
  Refresh();
}

QToolButton* Baseline_Panel::Button(int index) const {
  return index >= 2 && index <= 4 ? buttons_[index] : nullptr;
}

void Baseline_Panel::Arm(int index, bool on) {
  tool_ = on ? index : 0;
  for (int k = 3; k <= 4; ++k) buttons_[k]->setChecked(k == tool_);
}

void Baseline_Panel::Take_Average() {
  // The box holds a whole number of points; anything else puts it back.
  bool ok = false;
  const int n = average_->text().toInt(&ok);
  if (ok) session_.Base_Average = static_cast<int16_t>(std::clamp(n, 0, 32767));
  Refresh();
}

void Baseline_Panel::Refresh() {
  // Outside the mode no tool stays armed, so the mode starts idle.
  if (session_.Mode.Edit_Mode != session::Mode_Baseline) Arm(0, false);
  average_->setText(QString::number(session_.Base_Average));
  preview_->setText(QString::fromUtf8(editing::Base_Preview_Caption(session_)));
}

void Baseline_Panel::Mouse_Up(QPoint press, QPoint release) {
  if (press != release) return;  // the tools act on a click
  bool edited = false;
  if (tool_ == 3) edited = editing::Base_Add_Point(session_, editing::Spec_Point_Of_Ppm(session_, plot_->Ppm_At(release.x())));
  if (tool_ == 4) {
    const int32_t k = editing::Base_Point_At(session_, release.x(), [this](double ppm) { return plot_->Pixel_Of_Ppm(ppm); });
    edited = k >= 0 && editing::Base_Delete_Point(session_, k);
  }
  if (edited) emit changed();
}

}  // namespace tevo::app
