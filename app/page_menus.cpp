#include "page_menus.h"

#include <QBoxLayout>
#include <QMenu>
#include <QToolButton>

#include "bitmap_panel.h"
#include "dialog_parts.h"
#include "display/style_forms.h"
#include "page/page_model.h"
#include "parameter_list_dialog.h"
#include "style_dialog.h"

namespace tevo::app {

namespace {

QMenu* Menu_Button(QWidget* form, QBoxLayout* row, const char* name, const QString& caption) {
  QToolButton* b = Named_Tool(form, name, caption, false);
  b->setPopupMode(QToolButton::InstantPopup);
  auto* menu = new QMenu(b);
  b->setMenu(menu);
  row->addWidget(b);
  return menu;
}

}  // namespace

void Add_Page_Menus(Session& s, QWidget* form, QBoxLayout* row, std::function<void()> repaint, double preview_dpi,
                    std::function<page::Copy_Range()> range) {
  QMenu* settings = Menu_Button(form, row, "Menu_Settings", QStringLiteral("設定"));
  for (const auto& [name, caption] : {std::pair{"NMR1D_Form84", "枠の大きさ・色..."},
                                      std::pair{"NMR1D_Form82", "ピークリスト..."},
                                      std::pair{"NMR1D_Form88", "パラメータ..."}}) {
    QAction* a = settings->addAction(QString::fromUtf8(caption));
    a->setObjectName(QString::fromUtf8(name));
    QObject::connect(a, &QAction::triggered, form, [&s, form, repaint, name = name] {
      Style_Dialog dialog(s, *display::Find_Style_Form(name), form);
      QObject::connect(&dialog, &Style_Dialog::changed, form, repaint);
      dialog.exec();
      repaint();
    });
  }
  QAction* list = settings->addAction(QStringLiteral("パラメータリストの編集..."));
  list->setObjectName("NMR1D_Form15");
  QObject::connect(list, &QAction::triggered, form, [&s, form, repaint] {
    Parameter_List_Dialog dialog(s, form);
    if (dialog.exec() == QDialog::Accepted) repaint();
  });
  settings->addSeparator();
  QAction* standard = settings->addAction(QStringLiteral("ﾊﾟﾗﾒｰﾀ/ﾋﾟｰｸﾘｽﾄ配置を標準にする"));
  standard->setObjectName("Standard_Places");
  QObject::connect(standard, &QAction::triggered, form, [&s, repaint] {
    page::Standard_Page_Places(s);
    repaint();
  });

  QMenu* picture = Menu_Button(form, row, "Menu_Picture", QStringLiteral("画像"));
  const auto copy_range = [range] { return range ? range() : page::Copy_Range{}; };
  for (const auto& [name, caption, kind] :
       {std::tuple{"f03", "範囲をコピー(クリップボード/BMP)...", page::Export_Kind::Bmp},
        std::tuple{"f03_PNG", "範囲をPNG形式で保存...", page::Export_Kind::Png}}) {
    QAction* a = picture->addAction(QString::fromUtf8(caption));
    a->setObjectName(QString::fromUtf8(name));
    QObject::connect(a, &QAction::triggered, form, [&s, form, copy_range, preview_dpi, kind = kind] {
      Bitmap_Panel::Open(s, copy_range(), preview_dpi, kind, form);
    });
  }
}

}  // namespace tevo::app
