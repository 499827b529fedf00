#include "parameter_table_dialog.h"

#include <QApplication>
#include <QHeaderView>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include "dialog_parts.h"

namespace tevo::app {

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

}  // namespace

Parameter_Table_Dialog::Parameter_Table_Dialog(const std::string& form, const std::string& title,
                                               std::vector<platform::Param_Row> rows, platform::Param_Check check,
                                               QWidget* parent)
    : QDialog(parent), shown_(std::move(rows)), check_(std::move(check)) {
  setObjectName(Q(form));
  setWindowTitle(Q(title));
  grid_ = new QTableWidget(static_cast<int>(shown_.size()), 2, this);
  grid_->setObjectName("Grid1");
  grid_->setHorizontalHeaderLabels({QStringLiteral("Parameter Name"), QStringLiteral("Data")});
  grid_->verticalHeader()->setVisible(false);
  grid_->horizontalHeader()->setStretchLastSection(true);
  for (int i = 0; i < static_cast<int>(shown_.size()); ++i) {
    const platform::Param_Row& r = shown_[static_cast<std::size_t>(i)];
    auto* name = new QTableWidgetItem(Q(r.name));
    name->setFlags(Qt::ItemIsEnabled);
    grid_->setItem(i, 0, name);
    grid_->setItem(i, 1, new QTableWidgetItem(Q(r.value)));
  }
  grid_->resizeColumnToContents(0);
  // A typed value the check refuses goes back to the one before.
  connect(grid_, &QTableWidget::itemChanged, this, [this](QTableWidgetItem* item) {
    if (item->column() != 1) return;
    const auto row = static_cast<std::size_t>(item->row());
    const std::string typed = item->text().toStdString();
    if (typed == shown_[row].value) return;
    if (check_ && check_(row, typed)) {
      QApplication::beep();
      item->setText(Q(shown_[row].value));
    } else {
      shown_[row].value = typed;
    }
  });
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(grid_);
  QPushButton* ok = Ok_Cancel_Row(this, layout);
  connect(ok, &QPushButton::clicked, this, &Parameter_Table_Dialog::On_Ok);
  resize(420, 120 + 30 * static_cast<int>(shown_.size()));
}

void Parameter_Table_Dialog::On_Ok() {
  for (std::size_t row = 0; row < shown_.size(); ++row) {
    if (check_ && check_(row, shown_[row].value)) {
      // A required value still missing: its cell takes the cursor.
      QApplication::beep();
      grid_->setCurrentCell(static_cast<int>(row), 1);
      return;
    }
  }
  accept();
}

}  // namespace tevo::app
