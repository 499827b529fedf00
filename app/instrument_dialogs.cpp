#include "instrument_dialogs.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include "dialog_parts.h"
#include "editing/instrument_table.h"
#include "session/number_text.h"

namespace tevo::app {

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

}  // namespace

// ---- the table window ----

Instrument_Table_Dialog::Instrument_Table_Dialog(Session& session, QWidget* parent)
    : QDialog(parent), session_(session) {
  setObjectName("Form108");
  setWindowTitle(QStringLiteral("装置データ"));
  table_ = new QTableWidget(this);
  table_->setObjectName("Grid1");
  table_->setColumnCount(static_cast<int>(editing::Instr_Table_Columns.size()));
  QStringList captions;
  for (const char* c : editing::Instr_Table_Columns) captions << QString::fromUtf8(c);
  table_->setHorizontalHeaderLabels(captions);
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->setSelectionMode(QAbstractItemView::SingleSelection);
  table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  ids_ = new QListWidget(this);
  ids_->setObjectName("List1");

  auto* delete_id = Named_Button(this, "Command3", QStringLiteral("装置IDの削除"));
  auto* delete_row = Named_Button(this, "Command4", QStringLiteral("装置 Dataの削除"));
  auto* close = Named_Button(this, "Command1", QStringLiteral("閉じる"));
  connect(delete_id, &QPushButton::clicked, this, [this] {
    QListWidgetItem* item = ids_->currentItem();
    if (item && editing::Delete_Instr_Id(session_, item->text().toStdString())) Refresh();
  });
  connect(delete_row, &QPushButton::clicked, this, [this] {
    const int row = table_->currentRow();
    if (row >= 0 && editing::Delete_Instr_Row(session_, row)) Refresh();
  });
  connect(close, &QPushButton::clicked, this, &QDialog::accept);

  auto* side = new QVBoxLayout;
  side->addWidget(ids_);
  side->addWidget(delete_id);
  side->addWidget(delete_row);
  side->addStretch();
  side->addWidget(close);
  auto* layout = new QHBoxLayout(this);
  layout->addWidget(table_, 1);
  layout->addLayout(side);
  resize(900, 400);
  Refresh();
}

void Instrument_Table_Dialog::Refresh() {
  const auto& tab = session_.Instr_Tab;
  table_->setRowCount(static_cast<int>(tab.size()));
  for (int i = 0; i < static_cast<int>(tab.size()); ++i) {
    const Instr_Row& r = tab[static_cast<std::size_t>(i)];
    const std::string cells[7] = {r.Id,
                                  r.Solvent,
                                  r.Nucleus,
                                  Format_Number(r.Zero_Freq, "####.##########"),
                                  Format_Number(r.Obs_Freq, "###0.00"),
                                  r.Used_Date,
                                  r.Updated_Date};
    for (int c = 0; c < 7; ++c) table_->setItem(i, c, new QTableWidgetItem(Q(cells[c])));
  }
  table_->resizeColumnsToContents();
  ids_->clear();
  for (const std::string& id : session_.settings.Instrument_Ids) ids_->addItem(Q(id));
}

// ---- the ID entry ----

Instrument_Id_Dialog::Instrument_Id_Dialog(Session& session, QWidget* parent, const std::string& initial)
    : QDialog(parent), session_(session) {
  setObjectName("Form107");
  setWindowTitle(QStringLiteral("装置ID"));
  known_ = new QComboBox(this);
  known_->setObjectName("Combo1");
  for (const std::string& id : session_.settings.Instrument_Ids) known_->addItem(Q(id));
  text_ = Named_Field(this, "Text1");
  text_->setText(Q(initial.empty() ? session_.Param.Instrument_Id : initial));
  connect(known_, &QComboBox::textActivated, text_, &QLineEdit::setText);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(known_);
  layout->addWidget(text_);
  connect(Ok_Cancel_Row(this, layout), &QPushButton::clicked, this, [this] {
    editing::Form107_OK(session_, text_->text().trimmed().toStdString());
    accept();
  });
}

// ---- the pick of a row ----

Instrument_Pick_Dialog::Instrument_Pick_Dialog(Session& session, QWidget* parent)
    : QDialog(parent), session_(session) {
  setObjectName("Form109");
  setWindowTitle(QStringLiteral("装置データを使ってReferenceを変更"));
  const Data_Param& p = session_.Param;
  auto* data = new QLabel(Q(p.Instrument_Id + "  " + Format_Number(session_.Observe_Frequency, "###0.00") + " MHz  " +
                            p.OBNUC + "  " + p.SLVNT),
                          this);
  data->setObjectName("Label1");
  rows_ = new QListWidget(this);
  rows_->setObjectName("List1");
  QFont fixed(QStringLiteral("Monospace"));
  fixed.setStyleHint(QFont::TypeWriter);
  rows_->setFont(fixed);
  for (const Instr_Row& r : session_.Instr_Tab) rows_->addItem(Q(editing::Instr_List_Text(r)));
  rows_->setCurrentRow(editing::Form109_Preselect(session_));
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(data);
  layout->addWidget(rows_);
  connect(Ok_Cancel_Row(this, layout), &QPushButton::clicked, this, [this] {
    const int row = rows_->currentRow();
    if (row >= 0 && editing::Form109_OK(session_, row) == 0) accept();
  });
  resize(700, 360);
}

}  // namespace tevo::app
