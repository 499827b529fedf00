#include "bruker_dialog.h"

#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "dialog_parts.h"
#include "signal/qd_correct.h"

namespace tevo::app {

Bruker_Dialog::Bruker_Dialog(Session& session, QWidget* parent) : QDialog(parent), session_(session) {
  setObjectName("NMR1D_Form14");
  setWindowTitle(QStringLiteral("Bruker補正"));
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
  (session_.Acq_Mode == 1 ? single_ : dual_)->setChecked(true);

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(text);
  layout->addWidget(single_);
  layout->addWidget(dual_);
  QPushButton* ok = Ok_Cancel_Row(this, layout);
  connect(ok, &QPushButton::clicked, this, [this] {
    signal::Form14_OK(session_, single_->isChecked());
    accept();
  });
}

}  // namespace tevo::app
