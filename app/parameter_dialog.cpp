#include "parameter_dialog.h"

#include <QHeaderView>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>
#include <map>

#include "dialog_parts.h"
#include "editing/parameter_edit.h"

namespace tevo::app {

namespace {
// The value as it was last accepted, kept in the value cell.
constexpr int Good_Text_Role = Qt::UserRole + 1;
}  // namespace

Parameter_Dialog::Parameter_Dialog(Session& session, QWidget* parent) : QDialog(parent), session_(session) {
  setObjectName("ParameterForm");
  setWindowTitle(QStringLiteral("パラメータの修正"));
  const auto& fields = editing::Param_Edit_Fields();
  table_ = new QTableWidget(static_cast<int>(fields.size()), 2, this);
  table_->setObjectName("Grid1");
  table_->setHorizontalHeaderLabels({QStringLiteral("パラメータ"), QStringLiteral("値")});
  table_->verticalHeader()->setVisible(false);
  table_->horizontalHeader()->setStretchLastSection(true);
  filling_ = true;
  for (int i = 0; i < static_cast<int>(fields.size()); ++i) {
    const char* tag = fields[static_cast<std::size_t>(i)].tag;
    auto* name = new QTableWidgetItem(QString::fromLatin1(tag));
    name->setFlags(name->flags() & ~Qt::ItemIsEditable);
    table_->setItem(i, 0, name);
    const QString text = QString::fromStdString(editing::Param_Edit_Text(session_, tag));
    auto* value = new QTableWidgetItem(text);
    value->setData(Good_Text_Role, text);
    table_->setItem(i, 1, value);
  }
  filling_ = false;
  connect(table_, &QTableWidget::itemChanged, this, &Parameter_Dialog::Value_Edited);

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(table_);
  connect(Ok_Cancel_Row(this, layout), &QPushButton::clicked, this, &Parameter_Dialog::Ok);
  resize(420, 480);
}

void Parameter_Dialog::Value_Edited(QTableWidgetItem* item) {
  if (filling_ || item->column() != 1) return;
  const std::string tag = table_->item(item->row(), 0)->text().toStdString();
  filling_ = true;
  if (editing::Param_Edit_Valid(tag, item->text().toStdString()))
    item->setData(Good_Text_Role, item->text());
  else
    item->setText(item->data(Good_Text_Role).toString());
  filling_ = false;
}

void Parameter_Dialog::Ok() {
  std::map<std::string, std::string> texts;
  for (int i = 0; i < table_->rowCount(); ++i)
    texts[table_->item(i, 0)->text().toStdString()] = table_->item(i, 1)->text().toStdString();
  editing::Param_Edit_OK(session_, texts);
  accept();
}

}  // namespace tevo::app
