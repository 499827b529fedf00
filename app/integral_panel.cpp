#include "integral_panel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "dialog_parts.h"
#include "editing/integrals.h"
#include "editing/list_tables.h"
#include "hold_button.h"
#include "list_window.h"
#include "plot_widget.h"
#include "session/command_flow.h"
#include "session/number_text.h"

namespace tevo::app {

namespace {

struct Trim_Entry {
  const char* name;
  const char* caption;
  editing::Trim_Button button;
};
constexpr Trim_Entry kTrims[] = {
    {"Integ_B0_Up", "B0▲", editing::Trim_Button::B0_Up},
    {"Integ_B0_Down", "B0▼", editing::Trim_Button::B0_Down},
    {"Integ_B0_UpCoarse", "B0▲▲", editing::Trim_Button::B0_Up_Coarse},
    {"Integ_B0_DownCoarse", "B0▼▼", editing::Trim_Button::B0_Down_Coarse},
    {"Integ_B1_Up", "B1▲", editing::Trim_Button::B1_Up},
    {"Integ_B1_Down", "B1▼", editing::Trim_Button::B1_Down},
    {"Integ_B1_UpCoarse", "B1▲▲", editing::Trim_Button::B1_Up_Coarse},
    {"Integ_B1_DownCoarse", "B1▼▼", editing::Trim_Button::B1_Down_Coarse},
};

}  // namespace

Integral_Panel::Integral_Panel(Session& session, Plot_Widget* plot, QWidget* parent)
    : QWidget(parent), session_(session), plot_(plot) {
  setObjectName("IntegralToolbar");
  // Two rows: the mouse tools, "Ref" and the commands; below them B0 and
  // B1 with their trim buttons.
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(4, 2, 4, 2);
  rows->setSpacing(2);
  auto* row = new QHBoxLayout;
  auto* trims = new QHBoxLayout;
  rows->addLayout(row);
  rows->addLayout(trims);
  row->setSpacing(2);
  trims->setSpacing(2);
  // 15 re-scales at once; the others arm the mouse, one at a time, and
  // select-and-move (9) is armed when none is.
  const std::pair<int, const char*> tools[] = {{3, "追加"},   {5, "分割"}, {7, "削除"},  {9, "選択"},
                                               {10, "端移動"}, {11, "拡大"}, {13, "基準"}, {15, "再スケール"}};
  for (const auto& [index, caption] : tools) {
    const QByteArray name = QStringLiteral("IntegralToolbar_%1").arg(index).toUtf8();
    QToolButton* b = Named_Tool(this, name.constData(), QString::fromUtf8(caption), index != 15);
    buttons_[index] = b;
    row->addWidget(b);
    connect(b, &QToolButton::clicked, this, [this, index, b] {
      if (index != 15) return Arm(b->isChecked() ? index : 9);
      editing::Integ_Rescale(session_);
      emit changed();
    });
  }
  row->addSpacing(6);
  row->addWidget(new QLabel(QStringLiteral("Ref"), this));
  ref_ = Named_Field(this, "IntegralText1");
  ref_->setFixedWidth(64);
  row->addWidget(ref_);
  On_Typed(ref_, this, [this] { Take_Reference(); });
  // B0 and B1 of the selected region, moved by the trim buttons beside them.
  for (int k = 0; k < 2; ++k) {
    if (k == 1) trims->addSpacing(8);
    trims->addWidget(new QLabel(k == 0 ? QStringLiteral("B0") : QStringLiteral("B1"), this));
    const QByteArray name = QStringLiteral("IntegralText%1").arg(k + 2).toUtf8();
    b_[k] = Named_Field(this, name.constData());
    b_[k]->setReadOnly(true);
    b_[k]->setFixedWidth(84);
    trims->addWidget(b_[k]);
    for (int t = 4 * k; t < 4 * k + 4; ++t) {
      const Trim_Entry& e = kTrims[t];
      // Press: one undo record for the whole hold, then a step at once and
      // more while held; each step sums the region again and repaints.
      auto step = [this, e] {
        if (session_.Integ_Cur < 0 || session_.Integ_Cur >= static_cast<int32_t>(session_.Integrals.size())) return;
        editing::Integ_Trim_Step(session_, e.button);
        emit changed();
      };
      auto* h = new Hold_Button(
          QString::fromUtf8(e.caption),
          [this, step] {
            if (session_.Integrals.empty()) return;
            editing::Integ_Trim_Begin(session_);
            step();
          },
          [step] {
            step();
            return true;
          },
          this);
      h->setObjectName(e.name);
      h->setAutoDefault(false);
      h->setMaximumWidth(46);
      connect(h, &QPushButton::released, this, [this] { emit changed(); });
      trims->addWidget(h);
    }
  }
  trims->addStretch();
  row->addSpacing(6);
  auto* close = Named_Button(this, "IntegralCommand1", QStringLiteral("閉じる"));
  auto* clear = Named_Button(this, "IntegralCommand2", QStringLiteral("全削除"));
  auto* show_list = Named_Button(this, "IntegralCommand3", QStringLiteral("積分ﾘｽﾄ"));
  row->addWidget(close);
  row->addWidget(clear);
  row->addWidget(show_list);
  row->addStretch();
  list_ = new List_Window("IntegralListWindow", QStringLiteral("積分リスト"), this);
  connect(close, &QPushButton::clicked, this, [this] {
    Arm(9);
    editing::IntegralCommand1_Click(session_);
    emit finished();
  });
  connect(clear, &QPushButton::clicked, this, [this] {
    if (editing::IntegralCommand2_Click(session_)) emit changed();
  });
  connect(show_list, &QPushButton::clicked, this, [this] {
    list_->show();
    list_->raise();
    Refresh();
  });
  Arm(9);
  Refresh();
}

QToolButton* Integral_Panel::Button(int index) const {
  return index >= 3 && index <= 15 ? buttons_[index] : nullptr;
}

Hold_Button* Integral_Panel::Trim(const char* name) const { return findChild<Hold_Button*>(name); }

void Integral_Panel::Arm(int index) {
  tool_ = index;
  for (int k : {3, 5, 7, 9, 10, 11, 13}) buttons_[k]->setChecked(k == tool_);
}

void Integral_Panel::Take_Reference() {
  bool ok = false;
  const float v = ref_->text().toFloat(&ok);
  if (ok && std::isfinite(v)) session_.Integ_Ref = v;
  Refresh();
  emit changed();
}

void Integral_Panel::Refresh() {
  // Outside the mode no tool stays armed, so the mode starts idle.
  if (session_.Mode.Edit_Mode != session::Mode_Integral) Arm(9);
  const bool full = session_.Integrals.size() >= static_cast<std::size_t>(Integ_Max);
  // Adding and splitting each make one more region.
  buttons_[3]->setEnabled(!full);
  buttons_[5]->setEnabled(!full);
  if (full && (tool_ == 3 || tool_ == 5)) Arm(9);
  ref_->setText(QString::fromStdString(Format_Number(session_.Integ_Ref, "####0.0###")));
  const auto cur = static_cast<std::size_t>(session_.Integ_Cur);
  const bool selected = session_.Integ_Cur >= 0 && cur < session_.Integrals.size();
  for (int k = 0; k < 2; ++k) {
    const float v = selected ? (k == 0 ? session_.Integrals[cur].B0 : session_.Integrals[cur].B1) : 0.0f;
    b_[k]->setText(QString::fromStdString(Format_Number(v, "#0.0#####")));
  }
  if (list_->isVisible()) list_->Show_Table(editing::Integral_List_Table(session_));
}

void Integral_Panel::Mouse_Up(QPoint press, QPoint release) {
  const auto point_at = [this](QPoint p) { return editing::Spec_Point_Of_Ppm(session_, plot_->Ppm_At(p.x())); };
  const int32_t a = point_at(press), b = point_at(release);
  const int32_t region = editing::Integ_Region_At(session_, a);
  bool edited = false;
  switch (tool_) {
    case 3:
      edited = a != b && editing::Integ_Add(session_, std::max(a, b), std::min(a, b)) >= 0;
      break;
    case 5:
      // 積分の分割: the region under the click is cut there.
      edited = region >= 0 && editing::Integ_Split(session_, region, a);
      break;
    case 7:
      edited = region >= 0 && editing::Integ_Delete(session_, region);
      break;
    case 9:
      // A click selects the region under it, a drag moves it.
      if (region >= 0) session_.Integ_Cur = region;
      edited = region >= 0 && (a == b || editing::Integ_Move(session_, region, b - a));
      break;
    case 10:
    case 11:
      // Moving a boundary and 積分の拡大: a drag that starts on a region
      // takes its nearer end to the release point.
      edited = region >= 0 && editing::Integ_Widen(session_, region, b);
      break;
    case 13:
      Take_Reference();
      edited = region >= 0 && editing::Integ_Set_Reference(session_, region, session_.Integ_Ref);
      break;
    default:
      break;
  }
  if (edited) emit changed();
}

}  // namespace tevo::app
