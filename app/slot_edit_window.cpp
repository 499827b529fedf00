#include "slot_edit_window.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QRadioButton>
#include <QSpinBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "dialog_parts.h"
#include "display/view_commands.h"
#include "editing/undo.h"
#include "menu_tree.h"
#include "overlay/slot_edit.h"
#include "plot_widget.h"
#include "session/command_flow.h"
#include "signal/phase_mode.h"
#include "spectrum_view.h"

namespace tevo::app {

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

// The caption of a main window item the editor shares.
QString Main_Caption(const std::string& id) {
  for (const Menu_Item& item : Menu_Tree())
    if (id == item.id) return QString::fromUtf8(item.caption);
  return {};
}

// The editor has no insets: every mode command of the main window but m26.
bool Editor_Mode(const Spectrum_View::Mode_Command& c) { return c.mode != session::Mode_Inset; }

}  // namespace

Slot_Edit_Window::Slot_Edit_Window(Session& main, int slot, QWidget* parent)
    : QDialog(parent),
      main_(main),
      slot_(slot),
      row_(main.Overlay[static_cast<std::size_t>(slot)]),
      working_(overlay::Session_From_Slot(main, slot)),
      ui_(this) {
  setObjectName("SMulti_Form1");
  setModal(true);
  working_.ui = &ui_;
  ui_.Set_Session(&working_);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  view_ = new Spectrum_View(working_, this);
  layout->addWidget(view_, 1);
  cursor_label_ = new QLabel(this);
  layout->addWidget(cursor_label_);
  connect(view_, &Spectrum_View::view_changed, this, &Slot_Edit_Window::Refresh_View);
  connect(view_, &Spectrum_View::finished, this, &Slot_Edit_Window::Refresh_State);
  connect(view_, &Spectrum_View::edited, this, &Slot_Edit_Window::Refresh_State);
  connect(view_->Plot(), &Plot_Widget::cursor_moved, this, [this](double ppm, double height) {
    cursor_label_->setText(QString::asprintf("%.4f ppm   %.4g", ppm, height));
  });
  Build_Menus();
  layout->setMenuBar(menu_bar_);
  resize(1000, 680);
  Refresh_State();
}

QAction* Slot_Edit_Window::Action(const std::string& id) const {
  auto it = actions_.find(id);
  return it == actions_.end() ? nullptr : it->second;
}

void Slot_Edit_Window::Build_Menus() {
  menu_bar_ = new QMenuBar(this);
  const auto add = [this](QMenu* menu, const std::string& id, const QString& caption) {
    QAction* a = menu->addAction(caption);
    a->setObjectName(Q(id));
    actions_[id] = a;
    return a;
  };
  QMenu* file = menu_bar_->addMenu(Main_Caption("NM1D_m1"));
  connect(add(file, "m11", QStringLiteral("データの置き換え (&O)")), &QAction::triggered, this,
          &Slot_Edit_Window::On_Replace);
  connect(add(file, "Comment", QStringLiteral("コメントの編集")), &QAction::triggered, this,
          &Slot_Edit_Window::On_Comment);
  file->addSeparator();
  connect(add(file, "BasicCommand1", QStringLiteral("閉じる (&X)")), &QAction::triggered, this,
          &QDialog::accept);

  QMenu* edit = menu_bar_->addMenu(Main_Caption("m2"));
  connect(add(edit, "m20", Main_Caption("m20")), &QAction::triggered, this, [this] {
    editing::Undo_Step(working_);
    Refresh_State();
  });
  for (const Spectrum_View::Mode_Command& c : Spectrum_View::Mode_Commands()) {
    if (!Editor_Mode(c)) continue;
    QAction* a = add(edit, c.id, Main_Caption(c.id));
    a->setCheckable(true);
    connect(a, &QAction::triggered, this, [this, id = std::string(c.id)] {
      view_->Enter_Mode(id);
      Refresh_State();
    });
  }
  QMenu* view = menu_bar_->addMenu(Main_Caption("m3"));
  connect(add(view, "Display", QStringLiteral("表示/表示範囲の変更")), &QAction::triggered, this, [this] {
    Slot_Display_Dialog form(working_, this);
    if (form.exec() == QDialog::Accepted) Refresh_View();
  });
  QAction* power = add(view, "m34", Main_Caption("m34"));
  power->setCheckable(true);
  connect(power, &QAction::triggered, this, [this] {
    signal::m34_Click(working_);
    Refresh_State();
  });
  connect(add(view, "m35", Main_Caption("m35")), &QAction::triggered, this, [this] {
    display::Save_Mag(working_);
    display::View_After_Load(working_);
    Refresh_View();
  });
}

void Slot_Edit_Window::Refresh_State() {
  const auto enabled = session::Menu_Enabled(working_);
  for (const Spectrum_View::Mode_Command& c : Spectrum_View::Mode_Commands()) {
    if (!Editor_Mode(c)) continue;
    Action(c.id)->setEnabled(enabled.at(c.id));
    Action(c.id)->setChecked(working_.Mode.Edit_Mode == c.mode);
  }
  Action("m34")->setChecked(working_.Show_Magnitude != 0);
  Action("m20")->setText(Q(editing::Undo_Caption(working_).caption));
  Action("m20")->setEnabled(enabled.at("m20"));
  setWindowTitle(Q(overlay::Slot_Edit_Title(slot_, row_.Slot_File)));
  view_->Show_Mode();
  view_->Refresh_Panels();
  Refresh_View();
}

void Slot_Edit_Window::Refresh_View() { view_->Refresh_View(); }

void Slot_Edit_Window::On_Replace() {
  if (!session::Confirm_Mode_Exit(working_)) return;
  overlay::Replace_Edit_Slot(main_, slot_, working_, row_);
  Refresh_State();
}

void Slot_Edit_Window::On_Comment() {
  Slot_Comment_Dialog form(row_.Slot_Comment, this);
  if (form.exec() == QDialog::Accepted) overlay::Set_Slot_Comment(row_, form.Text());
}

void Slot_Edit_Window::done(int result) {
  if (!session::Confirm_Mode_Exit(working_)) return;
  overlay::Slot_Back_From_Session(main_, slot_, working_, row_);
  QDialog::done(result);
}

Slot_Comment_Dialog::Slot_Comment_Dialog(const std::string& comment, QWidget* parent) : QDialog(parent) {
  setObjectName("SMulti_Form4");
  setWindowTitle(QStringLiteral("コメントの編集"));
  auto* layout = new QVBoxLayout(this);
  text_ = Named_Field(this, "Text1");
  text_->setText(Q(comment));
  text_->setMinimumWidth(320);
  layout->addWidget(text_);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch(1);
  QPushButton* ok = Named_Button(this, "Command1", QStringLiteral("確定"));
  QPushButton* cancel = Named_Button(this, "Command2", QStringLiteral("キャンセル"));
  ok->setDefault(true);
  buttons->addWidget(ok);
  buttons->addWidget(cancel);
  layout->addLayout(buttons);
  connect(ok, &QPushButton::clicked, this, &QDialog::accept);
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
}

std::string Slot_Comment_Dialog::Text() const { return text_->text().toStdString(); }

Slot_Display_Dialog::Slot_Display_Dialog(Session& working, QWidget* parent)
    : QDialog(parent), working_(working), values_(overlay::Slot_Display_Values(working)) {
  setObjectName("SMulti_Form33");
  setWindowTitle(QStringLiteral("表示/表示範囲の変更　印刷には反映されません"));
  auto* layout = new QVBoxLayout(this);
  const std::pair<const char*, bool overlay::Slot_Display::*> switches[] = {
      {"積分曲線", &overlay::Slot_Display::integrals},
      {"積分のベースライン", &overlay::Slot_Display::integ_base},
      {"ピーク位置", &overlay::Slot_Display::peak_values},
      {"ﾋﾟｰｸﾄｯﾌﾟにマーク", &overlay::Slot_Display::peak_tops},
      {"ピーク番号", &overlay::Slot_Display::peak_numbers}};
  int k = 0;
  for (const auto& [caption, field] : switches) {
    auto* box = new QCheckBox(QString::fromUtf8(caption), this);
    box->setObjectName(QStringLiteral("Check%1").arg(++k));
    box->setChecked(values_.*field);
    layout->addWidget(box);
    checks_.emplace_back(box, field);
  }
  auto* place = new QGroupBox(QStringLiteral("ピーク値の表示位置"), this);
  auto* place_row = new QHBoxLayout(place);
  above_ = new QRadioButton(QStringLiteral("上"), place);
  above_->setObjectName("Option1");
  auto* below = new QRadioButton(QStringLiteral("下"), place);
  below->setObjectName("Option2");
  (values_.peaks_above ? above_ : below)->setChecked(true);
  place_row->addWidget(above_);
  place_row->addWidget(below);
  layout->addWidget(place);

  auto* form = new QFormLayout;
  const auto digits = [this](const char* name, int value) {
    auto* box = new QSpinBox(this);
    box->setObjectName(name);
    box->setRange(0, 9);
    box->setValue(value);
    return box;
  };
  peak_digits_ = digits("Text1", values_.peak_digits);
  integ_digits_ = digits("Text2", values_.integ_digits);
  form->addRow(QStringLiteral("ピーク位置の小数点以下の桁数"), peak_digits_);
  form->addRow(QStringLiteral("積分値の小数点以下の桁数"), integ_digits_);
  unit_ = new QComboBox(this);
  unit_->setObjectName("Combo1");
  unit_->addItems({QStringLiteral("δppm"), QStringLiteral("Hz"), QStringLiteral("kHz")});
  unit_->setCurrentIndex(values_.peak_unit);
  form->addRow(QStringLiteral("ピーク位置の単位"), unit_);
  layout->addLayout(form);

  auto* range = new QGroupBox(QStringLiteral("表示範囲(印刷には反映されません)"), this);
  auto* range_row = new QHBoxLayout(range);
  upper_ = Named_Field(range, "Text3");
  lower_ = Named_Field(range, "Text4");
  upper_->setText(QString::number(values_.range.upper, 'f', 4));
  lower_->setText(QString::number(values_.range.lower, 'f', 4));
  range_row->addWidget(upper_);
  range_row->addWidget(new QLabel(QStringLiteral("～"), range));
  range_row->addWidget(lower_);
  layout->addWidget(range);
  connect(Ok_Cancel_Row(this, layout), &QPushButton::clicked, this, &QDialog::accept);
}

void Slot_Display_Dialog::accept() {
  for (const auto& [box, field] : checks_) values_.*field = box->isChecked();
  values_.peaks_above = above_->isChecked();
  values_.peak_digits = peak_digits_->value();
  values_.integ_digits = integ_digits_->value();
  values_.peak_unit = unit_->currentIndex();
  // A limit that is not a number keeps the one shown before.
  bool ok = false;
  if (const double v = upper_->text().toDouble(&ok); ok) values_.range.upper = v;
  if (const double v = lower_->text().toDouble(&ok); ok) values_.range.lower = v;
  overlay::Slot_Display_OK(working_, values_);
  QDialog::accept();
}

}  // namespace tevo::app
