#include "list_dialogs.h"

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QFontComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "dialog_parts.h"
#include "page/print_lists.h"

namespace tevo::app {

List_Setup_Dialog::List_Setup_Dialog(Session& session, bool with_paper, QWidget* parent)
    : QDialog(parent), session_(session) {
  setObjectName(with_paper ? "NMR1D_Form8_L_1" : "Form502");
  setWindowTitle(with_paper ? QStringLiteral("用紙の向き・Fontの設定") : QStringLiteral("List印刷時のFont"));
  auto* layout = new QVBoxLayout(this);
  if (with_paper) {
    auto* turn = new QHBoxLayout;
    landscape_ = new QRadioButton(QStringLiteral("横置き"), this);
    landscape_->setObjectName("Option1");
    auto* portrait = new QRadioButton(QStringLiteral("縦置き"), this);
    portrait->setObjectName("Option2");
    (page::List_Orient(session_) == 1 ? landscape_ : portrait)->setChecked(true);
    turn->addWidget(landscape_);
    turn->addWidget(portrait);
    layout->addLayout(turn);
  }
  const Font_Rec font = page::List_Font(session_);
  auto* fields = new QFormLayout;
  face_ = new QFontComboBox(this);
  face_->setObjectName("Font_Name");
  face_->setEditable(true);
  face_->setEditText(QString::fromStdString(font.Face));
  size_ = new QDoubleSpinBox(this);
  size_->setObjectName("Font_Size");
  size_->setRange(4, 72);
  size_->setDecimals(1);
  size_->setValue(font.Size);
  bold_ = new QCheckBox(QStringLiteral("Bold"), this);
  bold_->setChecked(font.Bold != 0);
  italic_ = new QCheckBox(QStringLiteral("Italic"), this);
  italic_->setChecked(font.Italic != 0);
  fields->addRow(QStringLiteral("Font"), face_);
  fields->addRow(QStringLiteral("Size"), size_);
  fields->addRow(bold_);
  fields->addRow(italic_);
  layout->addLayout(fields);
  QPushButton* ok = Ok_Cancel_Row(this, layout);
  // Form502 stores by Command5.
  if (!with_paper) ok->setObjectName("Command5");
  connect(ok, &QPushButton::clicked, this, [this] {
    Store();
    accept();
  });
}

void List_Setup_Dialog::Store() {
  Font_Rec font = page::List_Font(session_);
  font.Face = face_->currentText().toStdString();
  font.Size = static_cast<float>(size_->value());
  font.Bold = bold_->isChecked() ? 1 : 0;
  font.Italic = italic_->isChecked() ? 1 : 0;
  const int orient = landscape_ ? (landscape_->isChecked() ? 1 : 0)
                                : page::List_Orient(session_);
  page::Store_List_Setup(session_, orient, font);
}

}  // namespace tevo::app
