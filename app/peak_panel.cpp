#include "peak_panel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <cmath>

#include "dialog_parts.h"
#include "display/view_commands.h"
#include "editing/list_tables.h"
#include "editing/peaks.h"
#include "list_window.h"
#include "plot_widget.h"
#include "session/command_flow.h"
#include "session/number_text.h"

namespace tevo::app {

namespace {

// The three levels, in units of Max_Abs, by box.
float* Level(Session& s, int k) {
  float* levels[] = {&s.Peak_Level, &s.Noise_Level, &s.Base_Level};
  return levels[k];
}

// A level line grabbed within this many pixels moves with the mouse.
constexpr int kLineGrab = 3;

}  // namespace

Peak_Panel::Peak_Panel(Session& session, Plot_Widget* plot, QWidget* parent)
    : QWidget(parent), session_(session), plot_(plot) {
  setObjectName("PeakToolbar");
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(4, 2, 4, 2);
  const std::pair<int, const char*> tools[] = {
      {2, "範囲内検索"}, {3, "全体検索"}, {4, "近傍追加"}, {5, "カーソル位置追加"}, {6, "削除"}};
  for (const auto& [index, caption] : tools) {
    const QByteArray name = QStringLiteral("PeakToolbar_%1").arg(index).toUtf8();
    QToolButton* b = Named_Tool(this, name.constData(), QString::fromUtf8(caption), index >= 4);
    buttons_[index] = b;
    row->addWidget(b);
    connect(b, &QToolButton::clicked, this, [this, index, b] {
      if (index >= 4) return Arm(index, b->isChecked());
      if (index == 2) editing::Peak_Search_Shown(session_);
      if (index == 3) editing::Peak_Search_All(session_);
      emit changed();
    });
  }
  row->addSpacing(8);
  const char* captions[] = {"検出 Level", "Noise Level", "Base Level"};
  for (int k = 0; k < 3; ++k) {
    row->addWidget(new QLabel(QString::fromUtf8(captions[k]), this));
    const QByteArray name = QStringLiteral("PeakText%1").arg(k + 1).toUtf8();
    levels_[k] = Named_Field(this, name.constData());
    levels_[k]->setFixedWidth(64);
    row->addWidget(levels_[k]);
    // A typed number takes effect when the box is left; anything else puts
    // the level back. Enter moves on to the next box.
    On_Typed(levels_[k], this, [this, k] {
      bool ok = false;
      const float v = levels_[k]->text().toFloat(&ok);
      if (ok && std::isfinite(v)) *Level(session_, k) = v;
      emit changed();
    });
    connect(levels_[k], &QLineEdit::returnPressed, this, [this] { focusNextChild(); });
  }
  row->addSpacing(8);
  auto* close = Named_Button(this, "PeakCommand1", QStringLiteral("閉じる"));
  auto* show_list = Named_Button(this, "PeakCommand2", QStringLiteral("ﾋﾟｰｸﾘｽﾄ"));
  auto* clear = Named_Button(this, "PeakCommand3", QStringLiteral("全削除"));
  row->addWidget(close);
  row->addWidget(show_list);
  row->addWidget(clear);
  row->addStretch();
  list_ = new List_Window("PeakListWindow", QStringLiteral("ピークリスト"), this);
  connect(close, &QPushButton::clicked, this, [this] {
    Arm(0, false);
    editing::PeakCommand1_Click(session_);
    emit finished();
  });
  connect(show_list, &QPushButton::clicked, this, [this] {
    list_->show();
    list_->raise();
    Refresh();
  });
  connect(clear, &QPushButton::clicked, this, [this] {
    if (editing::PeakCommand3_Click(session_)) emit changed();
  });
  Refresh();
}

QToolButton* Peak_Panel::Button(int index) const { return index >= 2 && index <= 6 ? buttons_[index] : nullptr; }

void Peak_Panel::Arm(int index, bool on) {
  tool_ = on ? index : 0;
  for (int k = 4; k <= 6; ++k) buttons_[k]->setChecked(k == tool_);
}

void Peak_Panel::Refresh() {
  // Outside the mode no tool stays armed, so the mode starts idle.
  if (session_.Mode.Edit_Mode != session::Mode_Peak) Arm(0, false);
  for (int k = 0; k < 3; ++k)
    levels_[k]->setText(QString::fromStdString(Format_Number(*Level(session_, k), "##0.0###")));
  // A full list takes no more peaks by hand.
  const bool full = editing::Peak_List_Full(session_);
  for (int k : {4, 5}) {
    buttons_[k]->setEnabled(!full);
    if (full && tool_ == k) Arm(0, false);
  }
  if (list_->isVisible()) list_->Show_Table(editing::Peak_List_Table(session_));
}

void Peak_Panel::Mouse_Up(QPoint press, QPoint release) {
  const display::Plot_Frame& f = plot_->Frame();
  for (int k = 0; k < 3; ++k) {
    const double y = display::Y_To_Pixel(session_.Max_Abs * *Level(session_, k), f.Frame_Base, f.Frame_Top,
                                         session_.Y_Full_Scale, session_.Y_Offset);
    if (press != release && std::abs(press.y() - y) <= kLineGrab && session_.Max_Abs != 0) {
      const display::Data_Point d = display::Pixel_To_Data(session_, f, release.x(), release.y());
      *Level(session_, k) = static_cast<float>(d.value / session_.Max_Abs);
      emit changed();
      return;
    }
  }
  const int32_t index = display::Pixel_To_Data(session_, f, release.x(), release.y()).index;
  bool edited = false;
  if (tool_ == 4) edited = editing::Peak_Add_Nearest(session_, index);
  if (tool_ == 5) edited = editing::Peak_Add_At(session_, index);
  if (tool_ == 6)
    edited = editing::Peak_Delete_At(session_, release.x(), [this](double ppm) { return plot_->Pixel_Of_Ppm(ppm); });
  if (edited) emit changed();
}

}  // namespace tevo::app
