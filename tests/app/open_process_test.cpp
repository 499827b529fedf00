// The application's main path on real data, offscreen: a Bruker FID named on
// the command line opens the processing window; 完 了 puts the spectrum into
// the main plot; phase mode, zoom and back, save and reopen, a damaged file
// and the recent list.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QImage>
#include <QPushButton>
#include <QToolButton>
#include <QTimer>
#include <filesystem>
#include <vector>

#include "basic_toolbar.h"
#include "display/view_commands.h"
#include "fid_window.h"
#include "main_window.h"
#include "phase_panel.h"
#include "plot_widget.h"
#include "qt_ui.h"
#include "app_support.h"
#include "support/test_support.h"

namespace {

namespace fs = std::filesystem;

using tevo::test::App;

// Pictures of the windows go beside the test program, in "screenshots".
void Save_Shot(QWidget* w, const char* name) {
  const QString dir = QCoreApplication::applicationDirPath() + "/screenshots";
  QDir().mkpath(dir);
  w->grab().save(dir + "/" + name + ".png");
}

// Clicks a button of the next top-level window of type W once it is shown,
// after taking its picture when `shot` names one.
template <class W>
void Click_When_Shown(const char* button, const char* shot = nullptr) {
  tevo::test::When_Window_Shown([](QWidget* w) { return qobject_cast<W*>(w) != nullptr; },
                                [button, shot](QWidget& w) {
                                  if (shot) Save_Shot(&w, shot);
                                  if (auto* b = w.findChild<QPushButton*>(button)) b->click();
                                });
}

// Count of pixels of the plot that are not white.
int Ink(tevo::app::Plot_Widget* plot) {
  const QImage image = plot->grab().toImage();
  int ink = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) ink += (image.pixel(x, y) & 0xffffff) != 0xffffff;
  return ink;
}

std::vector<float> Row0(const tevo::Session& s) {
  std::vector<float> v(static_cast<std::size_t>(s.Spec_Points));
  for (int i = 0; i < s.Spec_Points; ++i) v[static_cast<std::size_t>(i)] = s.Spec_Re(i, 0);
  return v;
}

TEST(Application, BrukerFidToSpectrumPhaseZoomSaveReopen) {
  App();
  const fs::path fid =
      tevo::test::Test_Data_File("bruker-data-test@1.0.0/data/unzipped/aspirin-1h/1/fid");
  tevo::test::Temp_Dir home;
  tevo::test::Write_Text(home / "1DCommon.ini", "1D Common Setting\r\nUSER MODE           1\r\n");

  tevo::Session s;
  tevo::app::Main_Window window(s);
  window.resize(1000, 700);
  window.Start(home.path().string(), "", fid.string());
  ASSERT_TRUE(window.Started());
  window.show();
  const int empty_ink = Ink(window.Plot());

  // The FID opens the processing window with a previewed spectrum; 完 了.
  Click_When_Shown<tevo::app::Fid_Window>("Command3", "processing_window");
  window.Open_Command_Line();
  ASSERT_EQ(s.Is_Spectrum, 1);
  ASSERT_GT(s.Spec_Points, 0);
  EXPECT_EQ(s.Data_Saved, 0);
  EXPECT_GT(Ink(window.Plot()), empty_ink + 200);  // the main plot shows the spectrum
  EXPECT_TRUE(window.Action("m10")->isEnabled());
  const std::vector<float> committed = Row0(s);
  Save_Shot(&window, "main_window");

  // Phase mode: a step changes the spectrum, ｷｬﾝｾﾙ restores it.
  window.Action("m22")->trigger();
  ASSERT_EQ(s.Mode.Edit_Mode, 2);
  window.Phase()->findChild<QPushButton*>("PhaseStep1_13")->click();  // +10 degrees
  Save_Shot(&window, "phase_mode");
  EXPECT_NE(Row0(s), committed);
  window.Phase()->findChild<QPushButton*>("PhaseCommand2")->click();
  EXPECT_EQ(s.Mode.Edit_Mode, 0);
  EXPECT_EQ(Row0(s), committed);

  // 確定 keeps a changed phase.
  window.Action("m22")->trigger();
  window.Phase()->findChild<QPushButton*>("PhaseStep1_13")->click();
  const std::vector<float> rotated = Row0(s);
  window.Phase()->findChild<QPushButton*>("PhaseCommand1")->click();
  EXPECT_EQ(Row0(s), rotated);
  EXPECT_NE(rotated, committed);

  // Zoom by the typed magnification, then back restores the view.
  const float left = s.X_Left, right = s.X_Right;
  tevo::display::Save_Mag(s);
  tevo::display::Set_X_Mag(s, 4.0);
  window.Refresh_View();
  EXPECT_LT(std::abs(s.X_Left - s.X_Right), std::abs(left - right) / 3);
  window.Basic()->Button(4)->click();
  EXPECT_FLOAT_EQ(s.X_Left, left);
  EXPECT_FLOAT_EQ(s.X_Right, right);

  // Save as .tv1 and open it again: the same data.
  const fs::path saved = home / "aspirin.tv1";
  ASSERT_EQ(window.Save(saved.string()), 0);
  EXPECT_EQ(s.Data_Saved, 1);
  ASSERT_EQ(window.Open(saved.string()), 0);
  EXPECT_EQ(Row0(s), rotated);

  // A damaged file leaves the former data shown, with a message.
  const fs::path damaged = home / "damaged.tv1";
  auto bytes = tevo::test::Read_Bytes(saved);
  bytes.resize(bytes.size() / 3);
  tevo::test::Write_Bytes(damaged, bytes);
  Click_When_Shown<tevo::app::FormMsg>("Command1");
  EXPECT_NE(window.Open(damaged.string()), 0);
  EXPECT_EQ(Row0(s), rotated);
  EXPECT_GT(Ink(window.Plot()), empty_ink + 200);

  // The recent list holds the opened files, newest first.
  const auto& recent = s.settings.Recent_Files;
  ASSERT_GE(recent.size(), 2u);
  EXPECT_EQ(recent[0], saved.string());
  EXPECT_NE(std::find(recent.begin(), recent.end(), fid.string()), recent.end());

  // Leave without saving through the end question.
  s.Data_Saved = 1;
  Click_When_Shown<tevo::app::FormMsg>("Command1");
  EXPECT_TRUE(window.Try_Exit());
}

}  // namespace
