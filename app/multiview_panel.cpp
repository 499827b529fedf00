#include "multiview_panel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QToolButton>
#include <cmath>
#include <functional>
#include <tuple>

#include "dialog_parts.h"
#include "display/inset_mode.h"
#include "hold_button.h"
#include "plot_widget.h"

namespace tevo::app {

namespace {

const Inset_Rec* Current(const Session& s) {
  return s.Inset_Cur >= 0 && s.Inset_Cur < static_cast<int32_t>(s.Insets.size())
             ? &s.Insets[static_cast<std::size_t>(s.Inset_Cur)]
             : nullptr;
}

}  // namespace

MultiView_Panel::MultiView_Panel(Session& session, Plot_Widget* plot, QWidget* parent)
    : QWidget(parent), session_(session), plot_(plot) {
  setObjectName("MultiViewToolbar");
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(4, 2, 4, 2);
  const std::pair<int, const char*> tools[] = {{1, "新規"}, {3, "削除"}, {5, "整列"}, {9, "範囲"}};
  for (const auto& [index, caption] : tools) {
    const QByteArray name = QStringLiteral("MultiViewToolbar_%1").arg(index).toUtf8();
    QToolButton* b = Named_Tool(this, name.constData(), QString::fromUtf8(caption), index == 1 || index == 9);
    buttons_[index] = b;
    row->addWidget(b);
    connect(b, &QToolButton::clicked, this, [this, index, b] {
      bool edited = false;
      if ((index == 1 || index == 9) && !b->isChecked()) session_.Mouse_Tool = 0;
      else if (index == 1) display::MultiView_New(session_);
      else if (index == 9) display::MultiView_Pick(session_);
      else if (index == 3) edited = display::MultiView_Delete(session_);
      else if (index == 5) edited = display::MultiView_Align(session_);
      Refresh();
      if (edited) emit changed();
    });
  }
  row->addSpacing(8);
  Mag_Field(0, "MultiViewText1", "MultiViewUpDown1_Up", "MultiViewUpDown1_Down", display::Set_Inset_X_Mag,
            display::Inset_X_Magnification);
  Mag_Field(1, "MultiViewText2", "MultiViewUpDown2_Up", "MultiViewUpDown2_Down", display::Set_Inset_Y_Mag,
            display::Inset_Y_Magnification);
  row->addWidget(new QLabel(QStringLiteral("Offset"), this));
  fields_[2] = Named_Field(this, "MultiViewText3");
  fields_[2]->setFixedWidth(72);
  row->addWidget(fields_[2]);
  On_Typed(fields_[2], this, [this] {
    bool ok = false;
    const double v = fields_[2]->text().toDouble(&ok);
    if (ok && display::Set_Inset_Offset(session_, v)) emit changed();
    Refresh();
  });
  // Press-and-hold steps of the offset and of the window.
  const std::tuple<const char*, const char*, std::function<bool(Session&)>> holds[] = {
      {"MultiView_offset_Up", "▲", [](Session& s) { return display::Step_Inset_Offset(s, true); }},
      {"MultiView_offset_Down", "▼", [](Session& s) { return display::Step_Inset_Offset(s, false); }},
      {"MultiView_X_Left", "◀", [](Session& s) { return display::Shift_Inset_Window(s, true); }},
      {"MultiView_X_Right", "▶", [](Session& s) { return display::Shift_Inset_Window(s, false); }}};
  for (const auto& [name, text, step] : holds) {
    auto* b = new Hold_Button(
        QString::fromUtf8(text), [this, step = step] { step(session_); },
        [this, step = step] { return step(session_); }, this);
    b->setObjectName(name);
    b->setMaximumWidth(b->fontMetrics().horizontalAdvance(QStringLiteral("▲")) + 16);
    connect(b, &Hold_Button::stepped, this, [this] {
      Refresh();
      emit changed();
    });
    row->addWidget(b);
  }
  row->addSpacing(8);
  auto* close = Named_Button(this, "MultiViewCommand1", QStringLiteral("閉じる"));
  row->addWidget(close);
  status_ = new QLabel(this);
  status_->setObjectName("MultiViewStatus");
  row->addSpacing(8);
  row->addWidget(status_);
  row->addStretch();
  connect(close, &QPushButton::clicked, this, [this] {
    display::MultiViewCommand1_Click(session_);
    emit finished();
  });
  Refresh();
}

void MultiView_Panel::Mag_Field(int k, const char* name, const char* up_name, const char* down_name,
                                bool (*apply)(Session&, double),
                                double (*shown)(const Session&, const Inset_Rec&)) {
  auto* row = static_cast<QHBoxLayout*>(layout());
  row->addWidget(new QLabel(k == 0 ? QStringLiteral("X倍率") : QStringLiteral("Y倍率"), this));
  fields_[k] = Named_Field(this, name);
  fields_[k]->setFixedWidth(64);
  row->addWidget(fields_[k]);
  On_Typed(fields_[k], this, [this, k, apply] {
    bool ok = false;
    const double v = fields_[k]->text().toDouble(&ok);
    if (ok && apply(session_, v)) emit changed();
    Refresh();
  });
  for (const auto& [button, up] : {std::pair{up_name, true}, std::pair{down_name, false}}) {
    auto* b = new QPushButton(up ? QStringLiteral("▲") : QStringLiteral("▼"), this);
    b->setObjectName(button);
    b->setAutoDefault(false);
    b->setMaximumWidth(b->fontMetrics().horizontalAdvance(QStringLiteral("▲")) + 16);
    connect(b, &QPushButton::clicked, this, [this, apply, shown, up = up] {
      const Inset_Rec* cur = Current(session_);
      if (cur != nullptr && apply(session_, display::Inset_Mag_Step(shown(session_, *cur), up))) emit changed();
      Refresh();
    });
    row->addWidget(b);
  }
}

QToolButton* MultiView_Panel::Button(int index) const {
  return index >= 0 && index < 10 ? buttons_[index] : nullptr;
}

void MultiView_Panel::Refresh() {
  const display::Inset_Fields t = display::Inset_Field_Texts(session_);
  fields_[0]->setText(QString::fromStdString(t.x_mag));
  fields_[1]->setText(QString::fromStdString(t.y_mag));
  fields_[2]->setText(QString::fromStdString(t.offset));
  const bool any = Current(session_) != nullptr;
  buttons_[1]->setEnabled(session_.Insets.size() < static_cast<std::size_t>(Inset_Max));
  for (int k : {3, 5, 9}) buttons_[k]->setEnabled(any);
  buttons_[1]->setChecked(session_.Mouse_Tool == display::Tool_Inset_New);
  buttons_[9]->setChecked(session_.Mouse_Tool == display::Tool_Inset_Range);
  status_->setText(QString::fromStdString(display::Inset_Tool_Text(session_.Mouse_Tool)));
}

void MultiView_Panel::Context_Menu(QPoint at, QPoint global) {
  bool corner = false;
  const int hit = display::Inset_Hit(session_, plot_->Frame(), at.x(), at.y(), corner);
  if (hit < 0) return;
  QMenu menu(this);
  menu.setObjectName("MultiViewMenu");
  for (int16_t tool : {display::Tool_Inset_Move, display::Tool_Inset_Resize, display::Tool_Inset_Delete}) {
    QAction* a = menu.addAction(QString::fromStdString(display::Inset_Tool_Text(tool)));
    connect(a, &QAction::triggered, this, [this, hit, tool] { Context_Chosen(hit, tool); });
  }
  menu.exec(global);
}

void MultiView_Panel::Context_Chosen(int index, int16_t tool) {
  session_.Inset_Cur = index;
  if (tool == display::Tool_Inset_Delete)
    display::Inset_Delete(session_, index);
  else
    session_.Mouse_Tool = tool;
  Refresh();
  emit changed();
}

void MultiView_Panel::Mouse_Up(QPoint press, QPoint release) {
  const bool edited =
      display::Inset_Mouse(session_, plot_->Frame(), press.x(), press.y(), release.x(), release.y());
  (void)edited;  // a click that only selects an inset changes the picture as well
  Refresh();
  emit changed();
}

}  // namespace tevo::app
