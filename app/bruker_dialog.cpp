#include "bruker_dialog.h"

#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "dialog_parts.h"

namespace tevo::app {

const char* const Bruker_Dialog::Title = "Bruker補正";

Bruker_Dialog::Bruker_Dialog(int initial, QWidget* parent) : QDialog(parent) {
  setObjectName("NMR1D_Form14");
  setWindowTitle(QString::fromUtf8(Title));
  auto* text = new QLabel(
      QStringLiteral("BrukerのQD検出システムで,Single AD コンバーターモードで測定したときは特別な補正フーリエ変換が必要で"
                     "す。測定モードにより選んでください。通常は自動設定ですので変更しないでください。"),
      this);
  text->setObjectName("Label1");
  text->setWordWrap(true);
  single_ = new QRadioButton(QStringLiteral("Single AD-Converter"), this);
  single_->setObjectName("Option1");
  dual_ = new QRadioButton(QStringLiteral("Dual AD-Converter"), this);
  dual_->setObjectName("Option2");
  (initial == 1 ? dual_ : single_)->setChecked(true);

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(text);
  layout->addWidget(single_);
  layout->addWidget(dual_);
  connect(Ok_Cancel_Row(this, layout), &QPushButton::clicked, this, &QDialog::accept);
}

int Bruker_Dialog::Choice() const { return single_->isChecked() ? 0 : 1; }

}  // namespace tevo::app
