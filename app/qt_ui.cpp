#include "qt_ui.h"

#include <QApplication>
#include <QButtonGroup>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <QVBoxLayout>

#include <map>
#include "bruker_dialog.h"
#include "dialog_parts.h"
#include "instrument_dialogs.h"
#include "parameter_table_dialog.h"
#include "user_dialog.h"
#include "relaxation/array_data.h"
#include "session/messages.h"

namespace tevo::app {

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

QStyle::StandardPixmap Icon_Pixmap(int icon) {
  switch (icon) {
    case 1: return QStyle::SP_MessageBoxCritical;
    case 2: return QStyle::SP_MessageBoxQuestion;
    case 3: return QStyle::SP_MessageBoxWarning;
    default: return QStyle::SP_MessageBoxInformation;
  }
}

}  // namespace

FormMsg::FormMsg(const platform::Message_Box_Request& box, QWidget* parent) : QDialog(parent), box_(box) {
  setObjectName("FormMsg");
  setWindowTitle(Q(box.title));
  QFont font(QStringLiteral("IPAPGothic"));
  font.setPointSize(10);
  setFont(font);
  auto* outer = new QVBoxLayout(this);
  auto* top = new QHBoxLayout;
  if (box.icon != 0) {
    auto* icon = new QLabel(this);
    icon->setObjectName("Image1");
    icon->setPixmap(style()->standardIcon(Icon_Pixmap(box.icon)).pixmap(32, 32));
    top->addWidget(icon, 0, Qt::AlignTop);
  }
  auto* label = new QLabel(Q(box.text), this);
  label->setObjectName("Label1");
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  top->addWidget(label, 1);
  outer->addLayout(top);
  auto* row = new QHBoxLayout;
  row->addStretch();
  for (std::size_t i = 0; i < box.buttons.size(); ++i) {
    auto* b = new QPushButton(Q(box.buttons[i]), this);
    b->setObjectName(QStringLiteral("Command%1").arg(i + 1));
    const int index = static_cast<int>(i) + 1;
    connect(b, &QPushButton::clicked, this, [this, index] {
      pressed_ = index;
      accept();
    });
    if (index == box.default_button) {
      b->setDefault(true);
      b->setFocus();
    }
    row->addWidget(b);
  }
  row->addStretch();
  outer->addLayout(row);
}

void FormMsg::keyPressEvent(QKeyEvent* event) {
  const QString text = event->text();
  if (text.size() == 1) {
    if (auto r = Message_Key_Result(box_.style, text[0].toLatin1())) {
      for (int b = 1; b <= 3; ++b)
        if (Message_Button_Result(box_.style, b) == *r) {
          pressed_ = b;
          accept();
          return;
        }
    }
  }
  QDialog::keyPressEvent(event);
}

int Qt_Ui::Message_Box(const platform::Message_Box_Request& box) {
  FormMsg form(box, parent_);
  form.exec();
  return form.pressed();
}

void Qt_Ui::Beep() { QApplication::beep(); }

void Qt_Ui::Wait_Cursor(bool on) {
  if (on) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
    ++wait_depth_;
  } else {
    while (wait_depth_ > 0) {
      QApplication::restoreOverrideCursor();
      --wait_depth_;
    }
  }
}

void Qt_Ui::Do_Events() { QApplication::processEvents(); }

QStringList Qt_Filters(const std::string& filter) {
  QStringList parts = Q(filter).split('|');
  QStringList out;
  for (int i = 0; i + 1 < parts.size(); i += 2) {
    // The dialog reads the patterns from the last parentheses: the caption's
    // own copy of them goes. "*.*" is every file, those without an
    // extension too (a Bruker "fid", "acqus", "1r"); a bare ".EXT" of the
    // user filters is "*.EXT". An empty user filter shows every file.
    QString caption = parts[i];
    if (caption.endsWith(')') && caption.contains('(')) caption = caption.left(caption.lastIndexOf('('));
    QStringList patterns;
    for (QString p : parts[i + 1].split(';', Qt::SkipEmptyParts)) {
      p = p.trimmed();
      if (p == "*.*") p = "*";
      else if (p.startsWith('.')) p.prepend('*');
      if (!p.isEmpty()) patterns << p;
    }
    if (patterns.isEmpty()) patterns << "*";
    out << caption.trimmed() + " (" + patterns.join(' ') + ")";
  }
  return out;
}

namespace {

std::optional<platform::File_Answer> Run_File_Dialog(QWidget* parent, const platform::File_Request& r,
                                                     bool save) {
  QFileDialog dlg(parent, Q(r.title), Q(r.initial_dir));
  dlg.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dlg.setFileMode(save ? QFileDialog::AnyFile : r.multiple ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile);
  const QStringList filters = Qt_Filters(r.filter);
  dlg.setNameFilters(filters);
  if (r.filter_index >= 1 && r.filter_index <= filters.size()) dlg.selectNameFilter(filters[r.filter_index - 1]);
  if (!r.default_ext.empty()) dlg.setDefaultSuffix(Q(r.default_ext));
  // A pattern as the suggested name would filter the list again ("*.*"
  // hides every file without an extension): only a real name is put there.
  if (!r.initial_name.empty() && r.initial_name.find_first_of("*?;") == std::string::npos)
    dlg.selectFile(Q(r.initial_name));
  if (dlg.exec() != QDialog::Accepted || dlg.selectedFiles().isEmpty()) return std::nullopt;
  platform::File_Answer a;
  a.path = dlg.selectedFiles().front().toStdString();
  if (r.multiple && dlg.selectedFiles().size() > 1) {
    std::vector<std::string> paths;
    for (const QString& f : dlg.selectedFiles()) paths.push_back(f.toStdString());
    a.path = relaxation::Join_Individual_Paths(paths);
  }
  a.filter_index = static_cast<int>(filters.indexOf(dlg.selectedNameFilter())) + 1;
  return a;
}

}  // namespace

std::optional<platform::File_Answer> Qt_Ui::Open_File(const platform::File_Request& request) {
  return Run_File_Dialog(parent_, request, false);
}

std::optional<platform::File_Answer> Qt_Ui::Save_File(const platform::File_Request& request) {
  return Run_File_Dialog(parent_, request, true);
}

int Qt_Ui::Choose(const std::string& title, const std::string& prompt, const std::vector<std::string>& options,
                  int initial) {
  if (title == Bruker_Dialog::Title && options.size() == 2) {
    Bruker_Dialog form(initial, parent_);
    return form.exec() == QDialog::Accepted ? form.Choice() : -1;
  }
  // The small choice windows that have names of their own: the alignment
  // of an overlay load, the question about the overlays at a new load, and
  // how the rows of an array FID are kept.
  static const std::map<std::string, std::pair<const char*, const char*>> forms = {
      {"重ね書き指定", {"NMR1D_Form12", "重ね書き指定"}},
      {"重ね書きの削除", {"NMR1D_Form23", "「重ね書き」の削除の確認"}},
      {"Multi(Array) データ", {"NMR1D_Form20", "Multi(Array) データ"}},
      {"T1/T2個別データ", {"NMR1D_Form21", "T1/T2個別データ"}}};
  QDialog dlg(parent_);
  dlg.setWindowTitle(Q(title));
  if (const auto it = forms.find(title); it != forms.end()) {
    dlg.setObjectName(it->second.first);
    dlg.setWindowTitle(QString::fromUtf8(it->second.second));
  }
  auto* layout = new QVBoxLayout(&dlg);
  if (!prompt.empty()) layout->addWidget(new QLabel(Q(prompt), &dlg));
  auto* group = new QButtonGroup(&dlg);
  for (std::size_t i = 0; i < options.size(); ++i) {
    auto* b = new QRadioButton(Q(options[i]), &dlg);
    b->setObjectName(QStringLiteral("Option%1").arg(i + 1));
    group->addButton(b, static_cast<int>(i));
    if (static_cast<int>(i) == initial) b->setChecked(true);
    layout->addWidget(b);
  }
  QObject::connect(Ok_Cancel_Row(&dlg, layout), &QPushButton::clicked, &dlg, &QDialog::accept);
  if (dlg.exec() != QDialog::Accepted) return -1;
  return group->checkedId();
}

std::optional<std::string> Qt_Ui::Ask_Text(const std::string& title, const std::string& prompt,
                                           const std::string& initial) {
  if (title == "Instrument ID" && session_) {
    Instrument_Id_Dialog form(*session_, parent_, initial);
    if (form.exec() != QDialog::Accepted) return std::nullopt;
    return session_->Param.Instrument_Id;
  }
  bool ok = false;
  QString t = QInputDialog::getText(parent_, Q(title), Q(prompt), QLineEdit::Normal, Q(initial), &ok);
  if (!ok) return std::nullopt;
  return t.toStdString();
}

std::optional<std::string> Qt_Ui::Ask_User(const std::vector<std::string>& users, const std::string& initial) {
  User_Dialog form(users, initial, parent_);
  if (form.exec() != QDialog::Accepted) return std::nullopt;
  return form.Name();
}

std::optional<std::vector<platform::Param_Row>> Qt_Ui::Edit_Parameters(const std::string& form,
                                                                       const std::string& title,
                                                                       const std::vector<platform::Param_Row>& rows,
                                                                       const platform::Param_Check& check) {
  Parameter_Table_Dialog dialog(form, title, rows, check, parent_);
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  return dialog.Rows();
}

}  // namespace tevo::app
