#include "printer_dialog.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QPageSize>
#include <QPrinter>
#include <QPrintDialog>
#include <QPrinterInfo>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "dialog_parts.h"
#include "display/style.h"
#include "page/page_model.h"
#include "session/messages.h"

namespace tevo::app {

namespace {

// What the printer keeps between prints of the run: not settings keys.
struct Printer_State {
  int Copies = 1;
  int Duplex = 0;  // 0 one side, 1 bound left, 2 bound top
  int Bin = -1;    // row of the driver's paper sources; -1 the driver's choice
};
Printer_State& Kept() {
  static Printer_State state;
  return state;
}

// The driver's paper sources of a printer. Only some print systems name
// them; elsewhere the list is empty and the driver feeds its default.
QList<QPrinter::PaperSource> Sources_Of(const QString& name) {
#ifdef Q_OS_WIN
  QPrinter printer;
  if (!name.isEmpty()) printer.setPrinterName(name);
  return printer.supportedPaperSources();
#else
  (void)name;
  return {};
#endif
}

QString Source_Name(QPrinter::PaperSource source) {
  static const char* names[] = {"Upper", "Lower", "Middle", "Manual", "Envelope", "EnvelopeManual", "Auto",
                                "Tractor", "SmallFormat", "LargeFormat", "LargeCapacity", "Cassette",
                                "FormSource"};
  const int k = static_cast<int>(source);
  return k >= 0 && k < static_cast<int>(std::size(names)) ? QString(names[k]) : QStringLiteral("Custom %1").arg(k);
}

}  // namespace

Printer_Form::Printer_Form(Session& session, QWidget* parent, page::Printer_Group group)
    : QDialog(parent), session_(session), group_(group) {
  setObjectName("Form501");
  setWindowTitle(QStringLiteral("プリンタの設定"));
  const page::Printer_Dialog d = page::Read_Printer_Setup(session_, group_);
  const int duplex = group_ == page::Printer_Group::List ? d.Duplex : Kept().Duplex;
  auto* layout = new QVBoxLayout(this);
  auto* fields = new QFormLayout;

  printer_ = new QComboBox(this);
  printer_->setObjectName("Combo1");
  printer_->addItems(QPrinterInfo::availablePrinterNames());
  const QString chosen = d.Printer.empty() ? QPrinterInfo::defaultPrinterName() : QString::fromStdString(d.Printer);
  if (const int row = printer_->findText(chosen); row >= 0) printer_->setCurrentIndex(row);
  fields->addRow(QStringLiteral("プリンタ"), printer_);

  paper_ = new QComboBox(this);
  paper_->setObjectName("Combo2");
  for (int i = 0; i < 7; ++i) {
    double h = 0, w = 0;
    paper_->addItem(QString::fromStdString(page::Paper_Size(page::Paper_Code_Of_Index(i), 0, h, w, false)));
  }
  paper_->setCurrentIndex(d.Paper_Index);
  fields->addRow(QStringLiteral("用紙"), paper_);

  auto* turn = new QHBoxLayout;
  auto* portrait = new QRadioButton(QStringLiteral("縦置き"), this);
  portrait->setObjectName("Option1");
  landscape_ = new QRadioButton(QStringLiteral("横置き"), this);
  landscape_->setObjectName("Option2");
  // The turn and the binding are two choices: each pair is a group of its
  // own, not one group of the dialog's four radio buttons.
  auto* turn_group = new QButtonGroup(this);
  turn_group->addButton(portrait);
  turn_group->addButton(landscape_);
  (d.Orient == 1 ? landscape_ : portrait)->setChecked(true);
  turn->addWidget(portrait);
  turn->addWidget(landscape_);
  fields->addRow(QStringLiteral("印刷の向き"), turn);

  bin_ = new QComboBox(this);
  bin_->setObjectName("Combo3");
  fields->addRow(QStringLiteral("給紙方法"), bin_);
  Fill_Bins();
  connect(printer_, &QComboBox::currentIndexChanged, this, &Printer_Form::Fill_Bins);

  copies_ = new QSpinBox(this);
  copies_->setObjectName("Text1");
  copies_->setRange(0, 999);
  copies_->setValue(Kept().Copies);
  fields->addRow(QStringLiteral("部数"), copies_);
  layout->addLayout(fields);

  auto* sides = new QHBoxLayout;
  duplex_ = new QCheckBox(QStringLiteral("両面印刷をする"), this);
  duplex_->setObjectName("Check1");
  auto* bind_left = new QRadioButton(QStringLiteral("左"), this);
  bind_left->setObjectName("Option3");
  bind_top_ = new QRadioButton(QStringLiteral("上"), this);
  bind_top_->setObjectName("Option4");
  duplex_->setChecked(duplex != 0);
  auto* bind_group = new QButtonGroup(this);
  bind_group->addButton(bind_left);
  bind_group->addButton(bind_top_);
  (duplex == 2 ? bind_top_ : bind_left)->setChecked(true);
  for (QRadioButton* b : {bind_left, bind_top_}) {
    b->setEnabled(duplex_->isChecked());
    connect(duplex_, &QCheckBox::toggled, b, &QWidget::setEnabled);
  }
  sides->addWidget(duplex_);
  sides->addWidget(bind_left);
  sides->addWidget(bind_top_);
  sides->addStretch();
  layout->addLayout(sides);

  black_ = new QCheckBox(QStringLiteral("白黒で印刷する"), this);
  black_->setObjectName("Check2");
  black_->setChecked(d.Colour_Mode == 1);
  layout->addWidget(black_);

  QPushButton* ok = Ok_Cancel_Row(this, layout);
  connect(ok, &QPushButton::clicked, this, [this] {
    Store();
    accept();
  });
}

void Printer_Form::Fill_Bins() {
  bin_->clear();
  for (QPrinter::PaperSource s : Sources_Of(printer_->currentText())) bin_->addItem(Source_Name(s));
  bin_->setEnabled(bin_->count() > 0);
  const int stored = page::Read_Printer_Setup(session_, group_).Bin;
  if (stored < bin_->count()) bin_->setCurrentIndex(stored);
}

void Printer_Form::Store() {
  page::Printer_Dialog d;
  d.Printer = printer_->currentText().toStdString();
  d.Paper_Index = paper_->currentIndex();
  d.Orient = landscape_->isChecked() ? 1 : 0;
  d.Bin = std::max(0, bin_->currentIndex());
  d.Copies = copies_->value();
  d.Duplex = duplex_->isChecked() ? (bind_top_->isChecked() ? 2 : 1) : 0;
  d.Colour_Mode = black_->isChecked() ? 1 : 0;
  d = page::Store_Printer_Setup(session_, d, group_);
  // The lists keep their duplex and bin in the settings.
  if (group_ == page::Printer_Group::List)
    Kept().Copies = d.Copies;
  else
    Kept() = {d.Copies, d.Duplex, bin_->count() > 0 ? d.Bin : -1};
}

void Apply_Printer_Setup(const Session& session, QPrinter& printer, page::Printer_Group group) {
  if (display::Setting_Int(session, "CHANGE PRINTER", 1) == 0) return;
  const page::Printer_Dialog d = page::Read_Printer_Setup(session, group);
  const bool list = group == page::Printer_Group::List;
  const QString name = QString::fromStdString(d.Printer);
  if (!name.isEmpty() && QPrinterInfo::availablePrinterNames().contains(name)) printer.setPrinterName(name);
  double h = 0, w = 0;
  const std::string paper = page::Paper_Size(page::Paper_Code_Of_Index(d.Paper_Index), 0, h, w, false);
  printer.setPageSize(QPageSize(QSizeF(w, h), QPageSize::Millimeter, QString::fromStdString(paper),
                                QPageSize::FuzzyMatch));
  printer.setPageOrientation(d.Orient == 1 ? QPageLayout::Landscape : QPageLayout::Portrait);
  printer.setCopyCount(Kept().Copies);
  const int duplex = list ? d.Duplex : Kept().Duplex;
  printer.setDuplex(duplex == 0 ? QPrinter::DuplexNone
                    : duplex == 2 ? QPrinter::DuplexShortSide
                                  : QPrinter::DuplexLongSide);
  const int bin = list ? d.Bin : Kept().Bin;
  const QList<QPrinter::PaperSource> sources = Sources_Of(printer.printerName());
  if (bin >= 0 && bin < sources.size()) printer.setPaperSource(sources[bin]);
}

int Print_Through_Dialog(Session& session, QWidget* parent, page::Printer_Group group,
                         const std::function<int(QPrinter&)>& print_on) {
  if (QPrinterInfo::availablePrinterNames().isEmpty()) {
    Show_Message(session, "使用出来るプリンターがありません", Style_OK | Icon_Exclamation, "プリンターエラー");
    return 1;
  }
  QPrinter printer(QPrinter::HighResolution);
  Apply_Printer_Setup(session, printer, group);
  QPrintDialog dialog(&printer, parent);
  if (dialog.exec() != QDialog::Accepted) return 1;
  const int printed = print_on(printer);
  if (printed < 0)
    Show_Message(session, "印刷できませんでした", Style_OK | Icon_Exclamation, "プリンターエラー");
  return printed;
}

}  // namespace tevo::app
