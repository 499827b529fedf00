#include "parameter_list_dialog.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include "dialog_parts.h"
#include "page/parameter_block.h"
#include "session/settings_files.h"

namespace tevo::app {

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

QComboBox* Choice_Cell(QWidget* parent, const std::vector<std::string>& items, const std::string& current) {
  auto* c = new QComboBox(parent);
  c->setEditable(true);
  c->addItem(QString());
  for (const std::string& i : items) c->addItem(Q(i));
  c->setCurrentText(Q(current));
  return c;
}

}  // namespace

Parameter_List_Dialog::Parameter_List_Dialog(Session& session, QWidget* parent)
    : QDialog(parent), session_(session) {
  setObjectName("NMR1D_Form15");
  setWindowTitle(QStringLiteral("パラメータリストの編集"));
  grid_ = new QTableWidget(0, 3, this);
  grid_->setObjectName("Grid1");
  grid_->setHorizontalHeaderLabels({QStringLiteral("パラメータ"), QStringLiteral("表示名"), QStringLiteral("単位")});
  grid_->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
  grid_->setSelectionBehavior(QAbstractItemView::SelectRows);
  // The list in force is what the operator edits, whichever source gave it.
  const std::string& table = session_.settings.Para_Table;
  for (const page::Parameter_Line& l : page::Parameter_Lines(table.empty() ? page::Parameter_Text(session_) : table))
    Add_Row(grid_->rowCount(), l.tag, l.caption, l.unit);
  auto* buttons = new QHBoxLayout;
  const auto button = [&](const char* name, const char* caption, auto act) {
    auto* b = Named_Button(this, name, QString::fromUtf8(caption));
    connect(b, &QPushButton::clicked, this, act);
    buttons->addWidget(b);
  };
  button("Command3", "追加", [this] {
    const int at = grid_->currentRow() < 0 ? grid_->rowCount() : grid_->currentRow() + 1;
    Add_Row(at, {}, {}, {});
    grid_->setCurrentCell(at, 0);
  });
  button("Command4", "削除", [this] {
    if (grid_->currentRow() >= 0) grid_->removeRow(grid_->currentRow());
  });
  button("Command5", "上へ", [this] { Move_Row(-1); });
  button("Command6", "下へ", [this] { Move_Row(1); });
  buttons->addStretch();
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(grid_, 1);
  layout->addLayout(buttons);
  connect(Ok_Cancel_Row(this, layout), &QPushButton::clicked, this, &Parameter_List_Dialog::Ok);
  resize(520, 420);
}

void Parameter_List_Dialog::Add_Row(int at, const std::string& tag, const std::string& caption,
                                    const std::string& unit) {
  grid_->insertRow(at);
  grid_->setCellWidget(at, 0, Choice_Cell(grid_, page::Parameter_Tags(), tag));
  grid_->setItem(at, 1, new QTableWidgetItem(Q(caption)));
  grid_->setCellWidget(at, 2, Choice_Cell(grid_, page::Parameter_Units(), unit));
}

void Parameter_List_Dialog::Move_Row(int by) {
  const int from = grid_->currentRow(), to = from + by;
  if (from < 0 || to < 0 || to >= grid_->rowCount()) return;
  const page::Parameter_Line l = Row_Line(from);
  grid_->removeRow(from);
  Add_Row(to, l.tag, l.caption, l.unit);
  grid_->setCurrentCell(to, 0);
}

page::Parameter_Line Parameter_List_Dialog::Row_Line(int r) const {
  page::Parameter_Line l;
  l.tag = static_cast<QComboBox*>(grid_->cellWidget(r, 0))->currentText().trimmed().toStdString();
  l.caption = grid_->item(r, 1) ? grid_->item(r, 1)->text().trimmed().toStdString() : std::string();
  l.unit = static_cast<QComboBox*>(grid_->cellWidget(r, 2))->currentText().toStdString();
  return l;
}

void Parameter_List_Dialog::Ok() {
  std::vector<page::Parameter_Line> lines;
  for (int r = 0; r < grid_->rowCount(); ++r) lines.push_back(Row_Line(r));
  session_.settings.Para_Table = page::Parameter_Lines_Text(lines);
  session::Write_Settings(session_);
  accept();
}

}  // namespace tevo::app
