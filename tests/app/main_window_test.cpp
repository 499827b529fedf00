// The main window driven offscreen: menus, their enabled state, recent files
// and the way out.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QScrollBar>
#include <QListWidget>
#include <QLineEdit>
#include <QTimer>
#include <set>

#include "session/command_flow.h"

#include "qt_ui.h"
#include "app_support.h"
#include "support/test_support.h"
#include <filesystem>
#include <functional>
#include "image_window.h"
#include "main_window.h"
#include "menu_tree.h"
#include "support/picture_bytes.h"

#include <QClipboard>
#include <QDir>
#include <QMimeData>

namespace {

using tevo::test::App;

TEST(MainWindow, MenuTreeCaptionsAndEnablingFollowTheData) {
  App();
  tevo::Session session;
  tevo::app::Main_Window window(session);
  // Every item of the table has exactly one action, with its caption.
  std::set<std::string> ids;
  for (const auto& item : tevo::app::Menu_Tree()) {
    EXPECT_TRUE(ids.insert(item.id).second) << item.id;
    ASSERT_NE(window.Action(item.id), nullptr) << item.id;
  }
  EXPECT_EQ(window.Action("NM1D_m11")->text().toStdString(), "*読込 (&O)");
  EXPECT_EQ(window.Action("m19")->text().toStdString(), "*終了 (&X)");
  EXPECT_EQ(window.menuBar()->actions().size(), 6);

  // No data: open and end enabled, save and the edit menu not.
  EXPECT_TRUE(window.Action("NM1D_m11")->isEnabled());
  EXPECT_TRUE(window.Action("m19")->isEnabled());
  EXPECT_FALSE(window.Action("m10")->isEnabled());
  EXPECT_FALSE(window.Action("m2")->isEnabled());
  EXPECT_FALSE(window.Action("m102")->isVisible());

  // A loaded spectrum of two rows enables the edit menu and the array group.
  session.Is_Spectrum = 1;
  session.Spec_Points = 1024;
  session.Array_Rows = 2;
  tevo::session::Set_RecentFile_Menu(session, "/data/a.tv1");
  tevo::session::Set_RecentFile_Menu(session, "/data/b.tv1");
  window.Refresh_State();
  EXPECT_TRUE(window.Action("m10")->isEnabled());
  EXPECT_TRUE(window.Action("m2")->isEnabled());
  EXPECT_TRUE(window.Action("m341")->isEnabled());  // the array view, a check item
  window.Action("m341")->trigger();
  EXPECT_EQ(session.settings.Int("DISP ARRAY MODE"), 1);
  EXPECT_TRUE(window.Action("m341")->isChecked());
  EXPECT_TRUE(window.Action("m342")->isEnabled());  // the stack placement
  // Commands without their code stay disabled, whatever the data.
  for (const char* id : {"m20"})
    EXPECT_FALSE(window.Action(id)->isEnabled()) << id;
  EXPECT_TRUE(window.Action("m102")->isVisible());
  auto* file_menu = window.menuBar()->findChild<QMenu*>("NM1D_m1");
  ASSERT_NE(file_menu, nullptr);
  QStringList recent;
  for (QAction* a : file_menu->actions())
    if (a->objectName().startsWith("RecentFile") && a->isVisible()) recent << a->text();
  ASSERT_EQ(recent.size(), 2);
  EXPECT_TRUE(recent[0].startsWith("  &1. ")) << recent[0].toStdString();
  EXPECT_TRUE(recent[0].endsWith("b.tv1"));
}

// Presses a button of the next message window as soon as it shows.
void Press_In_Message(const char* button) {
  QTimer::singleShot(0, [button] {
    for (QWidget* w : QApplication::topLevelWidgets())
      if (auto* d = qobject_cast<tevo::app::FormMsg*>(w); d && d->isVisible())
        d->findChild<QPushButton*>(button)->click();
  });
}

TEST(MainWindow, EndAsksWithDataAndCancelKeepsTheWindow) {
  App();
  tevo::test::Temp_Dir home;
  tevo::Session session;
  tevo::app::Main_Window window(session);
  // "USER MODE" 1: the common settings, no user window.
  tevo::test::Write_Text(home / "1DCommon.ini", "1D Common Setting\r\nUSER MODE           1\r\n");
  window.Start(home.path().string(), "", "");
  ASSERT_TRUE(window.Started());
  ASSERT_FALSE(session.Work_File.empty());
  EXPECT_TRUE(std::filesystem::exists(session.Work_File));

  session.Is_Spectrum = 1;
  session.Spec_Points = 1024;
  session.Data_Saved = 0;  // unsaved changes: the end asks
  Press_In_Message("Command3");  // 終了をｷｬﾝｾﾙ
  EXPECT_FALSE(window.Try_Exit());
  EXPECT_TRUE(std::filesystem::exists(session.Work_File));
  Press_In_Message("Command1");  // 保存しない
  EXPECT_TRUE(window.Try_Exit());
  EXPECT_FALSE(std::filesystem::exists(session.Work_File));  // markers removed at the end
}

// The user window at start: a new name gets the first free settings file;
// 終了 ends before the program starts and leaves no marker behind.
TEST(MainWindow, UserWindowNamesTheSettingsFileOrEndsTheStart) {
  App();
  tevo::test::Temp_Dir home;
  tevo::test::Write_Text(home / "1DCommon.ini", "1D Common Setting\r\nUSER MODE           0\r\n");
  const auto in_user_window = [](std::function<void(QWidget&)> act) {
    tevo::test::When_Window_Shown([](QWidget* w) { return w->objectName() == "NMR1D_Form01"; }, act);
  };
  {
    tevo::Session session;
    tevo::app::Main_Window window(session);
    in_user_window([](QWidget& w) {
      auto* list = w.findChild<QListWidget*>("List1");
      EXPECT_EQ(list->item(0)->text(), QString::fromUtf8("共通"));
      w.findChild<QLineEdit*>("Text1")->setText(" hanako ");
      w.findChild<QPushButton*>("Command1")->click();
    });
    window.Start(home.path().string(), "", "");
    ASSERT_TRUE(window.Started());
    EXPECT_EQ(session.User_Name, "HANAKO");
    EXPECT_EQ(std::filesystem::path(session.Settings_Write_Name).filename(), "NMRCOL0001.ini");
    window.Shut_Down();
  }
  // A second file of the same user (a copy): the next start lists the name
  // once and offers it first; "終了" there ends the start.
  std::filesystem::copy_file(home / "NMRCOL0001.ini", home / "NMRCOL0002.ini");
  {
    tevo::Session session;
    tevo::app::Main_Window window(session);
    in_user_window([](QWidget& w) {
      auto* list = w.findChild<QListWidget*>("List1");
      EXPECT_EQ(list->findItems("HANAKO", Qt::MatchFixedString).size(), 1);
      ASSERT_NE(list->currentItem(), nullptr);
      EXPECT_EQ(list->currentItem()->text(), "HANAKO");
      w.findChild<QPushButton*>("Command2")->click();
    });
    window.Start(home.path().string(), "", "");
    EXPECT_FALSE(window.Started());
    for (const auto& e : std::filesystem::directory_iterator(home.path()))
      EXPECT_NE(e.path().extension(), ".wkf") << e.path();
  }
}

// The reader of the JEOL disk system (m12) is shown only when both of its
// helper programs stand beside the program.
TEST(MainWindow, DiskReaderItemNeedsBothHelperPrograms) {
  App();
  tevo::test::Temp_Dir home;
  tevo::test::Write_Text(home / "ALIDIR.EXE", "");
  for (const bool both : {false, true}) {
    if (both) tevo::test::Write_Text(home / "ALIDATA.EXE", "");
    tevo::Session session;
    tevo::app::Main_Window window(session);
    window.Start(home.path().string(), "", "", false);
    ASSERT_TRUE(window.Started());
    EXPECT_EQ(window.Action("m12")->isVisible(), both);
    window.Shut_Down();
  }
}

// The horizontal bar's thumb is the shown share of the spectrum, and moving
// it keeps the window's width: a page is one window.
TEST(MainWindow, ScrollBarThumbIsTheShownShareAndPagesByOneWindow) {
  App();
  tevo::Session session;
  constexpr int n = 1024;
  tevo::Alloc_Point_Arrays(session, n);
  session.Spec_Points = n;
  session.Is_Spectrum = 1;
  session.Spectrum_Frequency = 400;
  session.Param.FREQU = 4096;
  session.Param.RESOL = 4;
  for (int i = 0; i < n; ++i) session.Spec_Axis[static_cast<std::size_t>(i)] = static_cast<float>((i - 512) * 0.01);
  const double first = session.Spec_Axis[0], last = session.Spec_Axis[n - 1], S = last - first;
  session.X_Left = static_cast<float>(last);
  session.X_Right = static_cast<float>(first);
  tevo::app::Main_Window window(session);
  window.Refresh_View();
  auto* bar = window.findChild<QScrollBar*>("FlatScrollBar_H");
  ASSERT_NE(bar, nullptr);
  const auto thumb_share = [bar] {
    return static_cast<double>(bar->pageStep()) / (bar->maximum() - bar->minimum() + bar->pageStep());
  };
  // The whole spectrum: the thumb fills the bar, which is off.
  EXPECT_DOUBLE_EQ(thumb_share(), 1.0);
  EXPECT_FALSE(bar->isEnabled());

  // A quarter of the spectrum at its high end: a quarter thumb at the start.
  const double w = S / 4;
  session.X_Right = static_cast<float>(last - w);
  window.Refresh_View();
  EXPECT_TRUE(bar->isEnabled());
  EXPECT_NEAR(thumb_share(), 0.25, 1e-3);
  EXPECT_EQ(bar->value(), bar->minimum());

  // One page moves the window by its own width.
  bar->triggerAction(QAbstractSlider::SliderPageStepAdd);
  EXPECT_NEAR(session.X_Left, last - w, 2e-3);
  EXPECT_NEAR(session.X_Left - session.X_Right, w, 1e-3);
  // Half way along, and at the end the window reaches the low limit.
  bar->setValue(bar->maximum() / 2);
  EXPECT_NEAR(session.X_Left, last - 0.5 * (S - w), 2e-3);
  bar->setValue(bar->maximum());
  EXPECT_NEAR(session.X_Right, first, 1e-3);
  EXPECT_NEAR(session.X_Left - session.X_Right, w, 1e-3);
  EXPECT_EQ(bar->value(), bar->maximum());  // the repaint put the bar back where it was dragged
}

// Form110: shown at the start when "STRUCTURE DISP" is 1, on top; a
// metafile read from a file fills it, stretched; a file that is no picture
// is refused; the picture goes to the clipboard and comes back from it.
TEST(MainWindow, ImageWindowShowsLoadsCopiesAndPastesTheStructurePicture) {
  App();
  tevo::test::Temp_Dir home;
  tevo::test::Write_Text(home / "1DCommon.ini", "1D Common Setting\r\nUSER MODE           1\r\n");
  tevo::test::Write_Text(home / "NMRCOL.INI", "1D Initial setting\r\nSTRUCTURE DISP  ; 1\r\n");
  tevo::Session session;
  tevo::app::Main_Window window(session);
  window.Start(home.path().string(), "", "");
  ASSERT_TRUE(window.Started());
  window.show();
  QApplication::processEvents();
  tevo::app::Image_Window* images = window.Images();
  ASSERT_NE(images, nullptr);
  EXPECT_TRUE(images->isVisible());
  EXPECT_TRUE(images->windowFlags() & Qt::WindowStaysOnTopHint);
  EXPECT_EQ(images->Action("Menu_Load")->text(), QString::fromUtf8("メタファイルの読み込み"));

  const std::vector<uint8_t> emf = tevo::test::Emf_Picture(0x0000FF, 0xFF0000);
  tevo::test::Write_Bytes(home / "structure.emf", emf);
  session.Data_Saved = 1;
  ASSERT_TRUE(images->Load_File((home / "structure.emf").string()));
  EXPECT_EQ(session.Structure.Body, emf);
  EXPECT_EQ(session.Data_Saved, 0);
  // Stretched over Picture1: the rectangle's middle (50 %, 40 %) is red,
  // the line at 85 % blue, whatever the window's shape.
  images->resize(360, 200);
  QApplication::processEvents();
  QWidget* picture = images->Picture();
  const QImage shot = picture->grab().toImage();
  const QString dir = QCoreApplication::applicationDirPath() + "/screenshots";
  QDir().mkpath(dir);
  images->grab().save(dir + "/Form110.png");
  const int w = shot.width(), h = shot.height();
  EXPECT_EQ(shot.pixel(w / 2, h * 2 / 5) & 0xFFFFFF, 0xFF0000u);
  EXPECT_EQ(shot.pixel(w / 2, h * 85 / 100) & 0xFFFFFF, 0x0000FFu);
  EXPECT_EQ(shot.pixel(w / 10, h / 10) & 0xFFFFFF, 0xFFFFFFu);

  tevo::test::Write_Text(home / "broken.emf", "not a picture");
  Press_In_Message("Command1");
  EXPECT_FALSE(images->Load_File((home / "broken.emf").string()));
  EXPECT_EQ(session.Structure.Body, emf);

  // To the clipboard: the picture as an image and the metafile's bytes; an
  // image alone comes back as PNG, a Windows metafile as itself.
  images->Action("Menu_Copy")->trigger();
  const QMimeData* copied = QApplication::clipboard()->mimeData();
  ASSERT_NE(copied, nullptr);
  EXPECT_TRUE(copied->hasImage());
  EXPECT_EQ(copied->data("image/x-emf"), QByteArray(reinterpret_cast<const char*>(emf.data()), emf.size()));
  QImage green(4, 4, QImage::Format_RGB32);
  green.fill(Qt::green);
  QApplication::clipboard()->setImage(green);
  ASSERT_TRUE(images->Paste());
  ASSERT_GT(session.Structure.Body.size(), 8u);
  EXPECT_EQ(std::string(session.Structure.Body.begin(), session.Structure.Body.begin() + 4), "\x89PNG");
  const std::vector<uint8_t> wmf = tevo::test::Wmf_Picture(0x00FF00, 0, true);
  auto* data = new QMimeData;
  data->setData("image/x-wmf", QByteArray(reinterpret_cast<const char*>(wmf.data()), wmf.size()));
  QApplication::clipboard()->setMimeData(data);
  images->Action("Menu_Paste")->trigger();
  EXPECT_EQ(session.Structure.Body, wmf);

  // Closed, it stays closed at the next start.
  images->close();
  EXPECT_EQ(session.settings.Int("STRUCTURE DISP"), 0);
  window.Shut_Down();
}

}  // namespace
