#include "basic_toolbar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <tuple>
#include <QLineEdit>
#include <QToolButton>

#include "dialog_parts.h"
#include "hold_button.h"

namespace tevo::app {

namespace {
QString Q(const std::string& s) { return QString::fromStdString(s); }
}  // namespace

Basic_Toolbar::Basic_Toolbar(Session& session, QWidget* parent) : QWidget(parent), session_(session) {
  setObjectName("BasicToolbar");
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(4, 2, 4, 2);
  row->setSpacing(2);
  // Buttons by their 1-based index; 1, 2, 3 and 10 arm a mouse tool, 5
  // asks for the range window.
  const std::pair<int, const char*> tools[] = {{1, "□拡大"}, {2, "横拡大"}, {3, "縦拡大"}, {10, "距離"},
                                               {4, "戻る"},  {5, "範囲"},   {6, "全体"},   {7, "全幅"},
                                               {8, "自動"}};
  for (const auto& [index, caption] : tools) {
    auto* b = new QToolButton(this);
    b->setObjectName(QStringLiteral("BasicToolbar_%1").arg(index));
    b->setText(QString::fromUtf8(caption));
    const bool tool = index <= 3 || index == 10;
    b->setCheckable(tool);
    connect(b, &QToolButton::clicked, this, [this, index, b, tool] {
      if (index == 5) {
        emit range_requested();
        return;
      }
      if (tool && !b->isChecked()) {
        session_.Mouse_Tool = display::Tool_None;
      } else {
        display::Basic_Toolbar(session_, index);
      }
      Refresh();
      emit view_changed();
    });
    buttons_[index] = b;
    row->addWidget(b);
  }
  row->addSpacing(8);
  Add_Hold("BasicX_Left", "◀", display::View_Button::X_Left);
  Add_Hold("BasicX_Right", "▶", display::View_Button::X_Right);
  Add_Hold("BasicXMag_Up", "X×", display::View_Button::X_Mag_Up);
  Add_Hold("BasicXMag_Down", "X÷", display::View_Button::X_Mag_Down);
  Add_Hold("BasicYLevel_Up", "▲", display::View_Button::Y_Level_Up);
  Add_Hold("BasicYLevel_Down", "▼", display::View_Button::Y_Level_Down);
  Add_Hold("BasicYMag_Up", "Y×", display::View_Button::Y_Mag_Up);
  Add_Hold("BasicYMag_Down", "Y÷", display::View_Button::Y_Mag_Down);
  row->addSpacing(8);
  const std::pair<const char*, const char*> texts[] = {
      {"BasicText1", "Y倍率"}, {"BasicText2", "レベル"}, {"BasicText3", "X倍率"}, {"DataText", "Row"}};
  for (const auto& [name, caption] : texts) {
    row->addWidget(new QLabel(QString::fromUtf8(caption), this));
    auto* field = new QLineEdit(this);
    field->setObjectName(name);
    // Wide enough for a value such as "1234.56" without cutting it.
    field->setMinimumWidth(field->fontMetrics().horizontalAdvance(QStringLiteral("00000.000")) + 12);
    field->setMaximumWidth(100);
    row->addWidget(field);
    fields_[name] = field;
  }
  Typed("BasicText1", display::Type_Y_Mag);
  Typed("BasicText2", display::Type_Y_Level);
  Typed("BasicText3", display::Type_X_Mag);
  Typed("DataText", display::Type_Array_Row);
  // UpDown1: the next or former row of an array data set.
  for (const auto& [name, text, step] : {std::tuple<const char*, const char*, int>{"UpDown1_Up", "▲", 1},
                                         {"UpDown1_Down", "▼", -1}}) {
    auto* b = new QPushButton(QString::fromUtf8(text), this);
    b->setObjectName(name);
    b->setAutoDefault(false);
    b->setMaximumWidth(b->fontMetrics().horizontalAdvance(QStringLiteral("▲")) + 16);
    connect(b, &QPushButton::clicked, this, [this, step = step] {
      if (display::Set_Array_Row(session_, session_.Array_Row + step)) emit view_changed();
      Refresh();
    });
    row->addWidget(b);
    row_steps_.push_back(b);
  }
  row->addStretch();
  Refresh();
}

void Basic_Toolbar::Add_Hold(const char* name, const QString& text, display::View_Button b) {
  auto* button = new Hold_Button(
      text, [this, b] { held_ = display::View_Press(session_, b); },
      [this] { return display::View_Repeat(session_, held_); }, this);
  button->setObjectName(name);
  connect(button, &Hold_Button::stepped, this, [this] {
    Refresh();
    emit view_changed();
  });
  // The arrows and signs need little room; the fields beside them need it more.
  button->setMinimumWidth(0);
  button->setMaximumWidth(button->fontMetrics().horizontalAdvance(QStringLiteral("Y×")) + 24);
  layout()->addWidget(button);
}

void Basic_Toolbar::Typed(const std::string& name, display::Typed_Result (*apply)(Session&, const std::string&)) {
  QLineEdit* field = fields_.at(name);
  On_Typed(field, this, [this, field, apply] {
    const display::Typed_Result r = apply(session_, field->text().toStdString());
    field->setText(Q(r.text));
    if (r.taken) emit view_changed();
  });
}

void Basic_Toolbar::Refresh() {
  buttons_.at(4)->setEnabled(display::Back_Enabled(session_));
  for (int index : {1, 2, 3, 10}) {
    const int16_t tool = index == 10 ? display::Tool_Cursor_Pair : int16_t(index);
    buttons_.at(index)->setChecked(session_.Mouse_Tool == tool);
  }
  fields_.at("BasicText1")->setText(QString::number(session_.Y_Mag, 'g', 6));
  fields_.at("BasicText2")->setText(QString::number(session_.Y_Offset, 'g', 6));
  fields_.at("BasicText3")->setText(Q(display::X_Mag_Text(session_)));
  fields_.at("DataText")->setText(QString::number(session_.Array_Row + 1));
  const bool array = session_.Array_Rows > 1;
  fields_.at("DataText")->setEnabled(array);
  for (QPushButton* b : row_steps_) b->setEnabled(array);
}

}  // namespace tevo::app
