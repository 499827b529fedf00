#include "end_dialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace tevo::app {

End_Dialog::End_Dialog(QWidget* parent) : QDialog(parent) {
  setObjectName("NMR1D_Form9");
  setWindowTitle(QString::fromUtf8("1D NMRの終了"));
  auto* outer = new QVBoxLayout(this);
  outer->addWidget(new QLabel(QString::fromUtf8("終了前にデータを"), this));
  auto* row = new QHBoxLayout;
  const std::pair<const char*, Choice> buttons[] = {
      {"保存しない", End}, {"保存する", Save}, {"終了をｷｬﾝｾﾙ", Cancel}};
  int n = 1;
  for (const auto& [caption, choice] : buttons) {
    auto* b = new QPushButton(QString::fromUtf8(caption), this);
    b->setObjectName(QStringLiteral("Command%1").arg(n++));
    connect(b, &QPushButton::clicked, this, [this, c = choice] {
      choice_ = c;
      accept();
    });
    row->addWidget(b);
  }
  outer->addLayout(row);
}

}  // namespace tevo::app
