#include "style_dialog.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPixmap>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>
#include <tuple>

#include "dialog_parts.h"
#include "page/fonts.h"
#include "platform/ui.h"

namespace tevo::app {

namespace {

using display::Style_Kind;

QString Q(std::string_view s) { return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size())); }

// 0xBBGGRR and back.
QColor To_QColor(double v) {
  const auto c = static_cast<uint32_t>(v);
  return QColor(c & 0xFF, (c >> 8) & 0xFF, (c >> 16) & 0xFF);
}
double From_QColor(const QColor& c) { return c.red() | (c.green() << 8) | (c.blue() << 16); }

void Paint_Swatch(QPushButton* b, double colour) {
  QPixmap swatch(40, 14);
  swatch.fill(To_QColor(colour));
  b->setIcon(swatch);
  b->setIconSize(swatch.size());
}

// Whole numbers for whole-number keys, else three decimals.
int Decimals_Of(std::string_view key) {
  const int i = session::Setting_Index(key);
  if (i < 0) return 0;
  const auto type = session::Setting_Def_Of(i).type;
  return type == session::Setting_Type::Int16 || type == session::Setting_Type::Int32 ? 0 : 3;
}

}  // namespace

Style_Dialog::Style_Dialog(Session& session, const display::Style_Form& form, QWidget* parent,
                           std::function<QImage()> preview)
    : QDialog(parent), session_(session), form_(form), saved_(display::Style_Open(session, form)),
      preview_(std::move(preview)) {
  setObjectName(form.name);
  setWindowTitle(Q(form.title));
  auto* tabs = new QTabWidget(this);
  tabs->setObjectName("SSTab1");
  QFormLayout* page = nullptr;
  for (const display::Style_Row& row : form.rows) {
    if (row.kind == Style_Kind::Page || page == nullptr) {
      auto* holder = new QWidget(tabs);
      page = new QFormLayout(holder);
      tabs->addTab(holder, Q(row.kind == Style_Kind::Page ? row.caption : ""));
      if (row.kind == Style_Kind::Page) continue;
    }
    page->addRow(Q(row.caption), Field(row));
  }
  auto* body = new QHBoxLayout;
  body->addWidget(tabs, 1);
  if (preview_) {
    picture_ = new QLabel(this);
    picture_->setObjectName("Picture1");
    picture_->setAlignment(Qt::AlignCenter);
    body->addWidget(picture_);
    Show_Preview();
  }
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(body);
  connect(Ok_Cancel_Row(this, layout), &QPushButton::clicked, this, &Style_Dialog::Ok);
}

QWidget* Style_Dialog::Field(const display::Style_Row& row) {
  const std::string key = row.keys[0];
  const auto set = [this, &row](std::string_view k, double v) {
    if (display::Style_Set_Number(session_, row, k, v)) Applied();
  };
  switch (row.kind) {
    case Style_Kind::Colour: {
      auto* b = new QPushButton(QStringLiteral("変更..."), this);
      b->setObjectName(Q(key));
      Paint_Swatch(b, display::Style_Number(session_, key));
      connect(b, &QPushButton::clicked, this, [this, b, key, set, caption = Q(row.caption)] {
        const QColor c = QColorDialog::getColor(To_QColor(display::Style_Number(session_, key)), this, caption);
        if (!c.isValid()) return;
        set(key, From_QColor(c));
        Paint_Swatch(b, display::Style_Number(session_, key));
      });
      return b;
    }
    case Style_Kind::Width:
    case Style_Kind::Number: {
      auto* spin = new QDoubleSpinBox(this);
      spin->setObjectName(Q(key));
      spin->setDecimals(row.kind == Style_Kind::Width ? 1 : Decimals_Of(key));
      spin->setRange(row.lo, row.hi);
      spin->setValue(display::Style_Number(session_, key));
      connect(spin, &QDoubleSpinBox::valueChanged, this, [set, key](double v) { set(key, v); });
      return spin;
    }
    case Style_Kind::Switch: {
      auto* box = new QCheckBox(this);
      box->setObjectName(Q(key));
      box->setChecked(display::Style_Number(session_, key) != 0);
      connect(box, &QCheckBox::toggled, this, [set, key](bool on) { set(key, on ? 1 : 0); });
      return box;
    }
    case Style_Kind::Choice: {
      auto* combo = new QComboBox(this);
      combo->setObjectName(Q(key));
      for (const std::string& c : display::Row_Choices(row)) combo->addItem(Q(c));
      combo->setCurrentIndex(static_cast<int>(display::Style_Number(session_, key) - row.lo));
      connect(combo, &QComboBox::currentIndexChanged, this, [set, key, first = row.lo](int i) { set(key, first + i); });
      return combo;
    }
    case Style_Kind::Text:
    case Style_Kind::File: {
      auto* edit = Named_Field(this, key.c_str());
      edit->setText(Q(display::Style_Text(session_, key)));
      connect(edit, &QLineEdit::editingFinished, this, [this, edit, key, &row] {
        if (display::Style_Set_Text(session_, row, key, edit->text().toStdString())) Applied();
      });
      if (row.kind == Style_Kind::Text) return edit;
      // A file is typed or chosen with "参照...".
      auto* holder = new QWidget(this);
      auto* line = new QHBoxLayout(holder);
      line->setContentsMargins(0, 0, 0, 0);
      edit->setParent(holder);
      line->addWidget(edit, 1);
      auto* browse = Named_Button(holder, (key + " BROWSE").c_str(), QStringLiteral("参照..."));
      line->addWidget(browse);
      connect(browse, &QPushButton::clicked, this, [this, edit, key, &row] {
        platform::File_Request req;
        req.title = row.caption;
        req.filter = row.choices;
        req.initial_name = edit->text().toStdString();
        const auto answer = session_.ui->Open_File(req);
        if (!answer || answer->path.empty()) return;
        edit->setText(Q(answer->path));
        if (display::Style_Set_Text(session_, row, key, answer->path)) Applied();
      });
      return holder;
    }
    case Style_Kind::Font: {
      auto* holder = new QWidget(this);
      auto* line = new QHBoxLayout(holder);
      line->setContentsMargins(0, 0, 0, 0);
      // The faces the drawing knows; one it lacks would fall back at the
      // next start, so it is offered only while it is the face in use.
      auto* face = new QComboBox(holder);
      face->setObjectName(Q(key));
      for (const page::Font_Face& f : page::Fonts().Font_Table) face->addItem(Q(f.Name));
      const QString current = Q(display::Style_Text(session_, key));
      if (face->findText(current) < 0) face->addItem(current);
      face->setCurrentText(current);
      connect(face, &QComboBox::textActivated, this, [this, key, &row](const QString& name) {
        if (display::Style_Set_Text(session_, row, key, name.toStdString())) Applied();
      });
      auto* size = new QDoubleSpinBox(holder);
      size->setObjectName(Q(row.keys[1]));
      size->setDecimals(1);
      size->setRange(1, 200);
      size->setSuffix(QStringLiteral(" pt"));
      size->setValue(display::Style_Number(session_, row.keys[1]));
      connect(size, &QDoubleSpinBox::valueChanged, this, [set, k = std::string(row.keys[1])](double v) { set(k, v); });
      line->addWidget(face, 1);
      line->addWidget(size);
      const char* marks[] = {"太字", "斜体"};
      for (int m = 0; m < 2; ++m) {
        const std::string k = row.keys[2 + m];
        auto* box = new QCheckBox(QString::fromUtf8(marks[m]), holder);
        box->setObjectName(Q(k));
        box->setChecked(display::Style_Number(session_, k) != 0);
        connect(box, &QCheckBox::toggled, this, [set, k](bool on) { set(k, on ? 1 : 0); });
        line->addWidget(box);
      }
      return holder;
    }
    case Style_Kind::Page:
      break;
  }
  return new QWidget(this);
}

void Style_Dialog::Show_Preview() {
  const QImage image = preview_();
  picture_->setPixmap(QPixmap::fromImage(image));
  picture_->setMinimumSize(image.size());
}

void Style_Dialog::Applied() {
  if (picture_ != nullptr) Show_Preview();
  emit changed();
}

void Style_Dialog::Ok() {
  display::Style_OK(session_, form_);
  accept();
}

void Style_Dialog::reject() {
  display::Style_Cancel(session_, saved_);
  emit changed();
  QDialog::reject();
}

void Add_Style_Items(QMenu* menu, Session& session, QWidget* plot, const char* display_id,
                     const char* display_form, const char* print_id, const char* print_form,
                     std::function<QImage()> print_preview) {
  for (const auto& [id, name, preview] : {std::tuple{display_id, display_form, std::function<QImage()>{}},
                                          std::tuple{print_id, print_form, print_preview}}) {
    const display::Style_Form* form = display::Find_Style_Form(name);
    QAction* a = menu->addAction(form->title);
    a->setObjectName(id);
    QObject::connect(a, &QAction::triggered, plot, [&session, plot, form, preview = preview] {
      Style_Dialog dialog(session, *form, plot->window(), preview);
      QObject::connect(&dialog, &Style_Dialog::changed, plot, qOverload<>(&QWidget::update));
      dialog.exec();
    });
  }
}

}  // namespace tevo::app
