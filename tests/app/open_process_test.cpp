// The application's main path on real data, offscreen: a Bruker FID named on
// the command line opens the processing window; 完 了 puts the spectrum into
// the main plot; phase mode, zoom and back, save and reopen, a damaged file
// and the recent list; the style window of the edit view.
#include <gtest/gtest.h>

#include <QAction>
#include <QCheckBox>
#include <QApplication>
#include <QDir>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QImage>
#include <QLabel>
#include <QRegularExpression>
#include <QMenu>
#include <QWheelEvent>
#include <QTest>
#include <QLineEdit>
#include <QFileDialog>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QDoubleSpinBox>
#include <QTabWidget>
#include <QComboBox>
#include <QToolButton>
#include <QTimer>
#include <cmath>
#include <filesystem>
#include <memory>
#include <sstream>
#include <vector>

#include "baseline_panel.h"
#include "basic_toolbar.h"
#include "editing/integrals.h"
#include "editing/peaks.h"
#include "session/number_text.h"
#include "display/plot_geometry.h"
#include "hold_button.h"
#include "integral_panel.h"
#include "list_window.h"
#include "multiview_panel.h"
#include "display/inset_mode.h"
#include "display/insets.h"
#include "peak_panel.h"
#include <QTableWidget>
#include "display/view_commands.h"
#include "fid_window.h"
#include "main_window.h"
#include "session/command_flow.h"
#include "menu_tree.h"
#include "overlay/overlay_set.h"
#include "overlay_window.h"
#include "phase_panel.h"
#include "plot_widget.h"
#include "qt_ui.h"
#include "line_dialogs.h"
#include "line_window.h"
#include "reference_panel.h"
#include "relax_window.h"
#include "slot_edit_window.h"
#include "window_page_form.h"
#include <QPageSize>
#include <QPrinter>
#include <QPrinterInfo>
#include "spectrum_view.h"
#include <QTreeWidget>
#include "relaxation/array_data.h"
#include "signal/fid_processing.h"
#include "session/settings_files.h"
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

// Prints a window's page on a printer writing a PDF file of A4 paper, as
// "印刷実行" does after its dialog; what the print returned.
int Print_To_Pdf(tevo::app::Window_Page_Form& form, const fs::path& pdf) {
  QPrinter printer(QPrinter::HighResolution);
  printer.setOutputFormat(QPrinter::PdfFormat);
  printer.setOutputFileName(QString::fromStdString(pdf.string()));
  printer.setPageSize(QPageSize(QPageSize::A4));
  return form.Print_On(printer);
}

// Count of pixels of an image in red ink.
int Red(const QImage& image) {
  int red = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) {
      const QRgb c = image.pixel(x, y);
      red += qRed(c) > 200 && qGreen(c) < 90 && qBlue(c) < 90;
    }
  return red;
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

// A main window started on a fresh program folder with the common
// settings (no user window), shown; `path` as its command line.
struct Started_Window {
  bool app = (App(), true);
  tevo::test::Temp_Dir home;
  tevo::Session s;
  tevo::app::Main_Window window{s};
  explicit Started_Window(const std::string& path = "") {
    tevo::test::Write_Text(home / "1DCommon.ini", "1D Common Setting\r\nUSER MODE           1\r\n");
    window.resize(1000, 700);
    window.Start(home.path().string(), "", path);
    window.show();
  }
  // Opens the file of the command line, presses 完 了 in the processing
  // window, and says whether a spectrum came of it.
  bool Process_Command_Line() {
    Click_When_Shown<tevo::app::Fid_Window>("Command3");
    window.Open_Command_Line();
    return s.Spec_Points > 0;
  }
};

TEST(Application, BrukerFidToSpectrumPhaseZoomSaveReopen) {
  App();
  const fs::path fid =
      tevo::test::Test_Data_File("bruker-data-test@1.0.0/data/unzipped/aspirin-1h/1/fid");
  Started_Window started(fid.string());
  ASSERT_TRUE(started.window.Started());
  tevo::Session& s = started.s;
  tevo::app::Main_Window& window = started.window;
  const fs::path& home = started.home.path();
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

  // Everything saved: the end goes without a question.
  s.Data_Saved = 1;
  EXPECT_TRUE(window.Try_Exit());
}

// Columns of the plot frame that carry ink between the frame's top and the
// axis: a trace drawn across the whole view has ink in every one of them.
int Empty_Columns(tevo::app::Plot_Widget* plot) {
  const QImage image = plot->grab().toImage();
  const auto& f = plot->Frame();
  int empty = 0;
  for (int x = f.Frame_Left + 1; x < f.Frame_Right - 1; ++x) {
    bool ink = false;
    for (int y = f.Frame_Top + 1; y < f.Axis_Y - 1 && !ink; ++y) ink = (image.pixel(x, y) & 0xffffff) != 0xffffff;
    empty += !ink;
  }
  return empty;
}

TEST(Road, NothingLostNothingBlank) {
  App();
  const auto data = [](const char* name) { return tevo::test::Test_Data_File(name).string(); };
  const std::string aspirin = data("bruker-data-test@1.0.0/data/unzipped/aspirin-1h/1/fid");
  const std::string cyclosporin = data("bruker-data-test@1.0.0/data/unzipped/cyclosporin_1h/cyclosporin_1h/1/fid");
  Started_Window started;
  ASSERT_TRUE(started.window.Started());
  tevo::Session& s = started.s;
  tevo::app::Main_Window& window = started.window;
  const fs::path& home = started.home.path();

  // A native file to start from.
  Click_When_Shown<tevo::app::Fid_Window>("Command3");
  ASSERT_EQ(window.Open(aspirin), 0);
  const fs::path native = home / "start.tv1";
  ASSERT_EQ(window.Save(native.string()), 0);
  ASSERT_EQ(window.Open(native.string()), 0);
  const std::vector<float> start = Row0(s);
  EXPECT_EQ(Empty_Columns(window.Plot()), 0);
  Save_Shot(&window, "road_tv1");

  // Another FID, its processing window discarded (現データの破棄, はい) or
  // closed: the native data set is back, shown, with its name.
  for (bool by_button : {true, false}) {
    tevo::test::When_Window_Shown(
        [](QWidget* w) { return qobject_cast<tevo::app::Fid_Window*>(w) != nullptr; },
        [by_button](QWidget& w) {
          Click_When_Shown<tevo::app::FormMsg>("Command1");  // このデータを破棄しますか: はい
          if (by_button) w.findChild<QPushButton*>("m19")->click();
          else w.close();
        });
    EXPECT_EQ(window.Open(cyclosporin), 1);
    EXPECT_EQ(Row0(s), start);
    EXPECT_EQ(s.Open_Name, native.string());
    EXPECT_TRUE(window.windowTitle().endsWith("START.TV1")) << window.windowTitle().toStdString();
    EXPECT_EQ(Empty_Columns(window.Plot()), 0);
  }

  // Enter in the LB field applies LB and nothing else: the phase is the
  // automatic one for it, not a step away from it.
  tevo::test::When_Window_Shown(
      [](QWidget* w) { return qobject_cast<tevo::app::Fid_Window*>(w) != nullptr; },
      [&s](QWidget& w) {
        auto& fw = static_cast<tevo::app::Fid_Window&>(w);
        QLineEdit* lb = fw.Field("Text3");
        lb->setFocus();
        lb->selectAll();
        QTest::keyClicks(lb, "1");
        QTest::keyClick(lb, Qt::Key_Return);
        const float phase0 = s.Phase0;
        auto state = fw.State();
        tevo::signal::Run_Preview(s, state);
        EXPECT_EQ(s.Phase0, phase0);
        EXPECT_FLOAT_EQ(s.Line_Broadening, 1.0f);
        // Toolbar3's "p2" arms; a click a quarter in from the left of the
        // spectrum (high points on the left) places p2 there and disarms.
        QPushButton* p2 = fw.Button("Toolbar3_3");
        p2->click();
        QWidget* plot = fw.findChild<QWidget*>("SpectrumPlot");
        QTest::mouseClick(plot, Qt::LeftButton, {}, QPoint((plot->width() - 1) / 4, plot->height() / 2));
        const bool whole = state.Plot_Left == state.Plot_Right;
        const double lo = whole ? 0 : std::min(state.Plot_Left, state.Plot_Right);
        const double hi = whole ? s.Spec_Points - 1 : std::max(state.Plot_Left, state.Plot_Right);
        EXPECT_NEAR(s.Pivot_P2, hi - 0.25 * (hi - lo), (hi - lo) / 200.0 + 1);
        EXPECT_FALSE(p2->isChecked());
        Save_Shot(&w, "road_processing_window");
        fw.Button("Command3")->click();
      });
  ASSERT_EQ(window.Open(cyclosporin), 0);
  Save_Shot(&window, "road_bruker_fid");

  // A confirmed phase step is a change: the next open asks; 保存する and
  // then a cancelled save dialog open nothing.
  window.Action("m22")->trigger();
  window.Phase()->findChild<QPushButton*>("PhaseStep1_13")->click();
  window.Phase()->findChild<QPushButton*>("PhaseCommand1")->click();
  EXPECT_EQ(s.Data_Saved, 0);
  const std::vector<float> phased = Row0(s);
  tevo::test::When_Window_Shown([](QWidget* w) { return qobject_cast<tevo::app::FormMsg*>(w) != nullptr; },
                                [](QWidget& w) {
                                  tevo::test::When_Window_Shown(
                                      [](QWidget* d) { return qobject_cast<QFileDialog*>(d) != nullptr; },
                                      [](QWidget& d) { static_cast<QDialog&>(d).reject(); });
                                  w.findChild<QPushButton*>("Command1")->click();
                                });
  EXPECT_EQ(window.Open(native.string()), 1);
  EXPECT_EQ(Row0(s), phased);
  EXPECT_EQ(s.Data_Saved, 0);

  // Processed spectra open to a trace across the whole frame.
  s.Data_Saved = 1;
  for (const auto& [file, shot] :
       {std::pair{data("bruker-data-test@1.0.0/data/unzipped/aspirin-1h-processed/1/pdata/1/1r"), "road_bruker_1r"},
        std::pair{data("jcamp-data-test@0.2.1/data/aspirin-1h.dx"), "road_jcamp"},
        std::pair{data("jeol-data-test@0.5.2/data/PM032220_3000U200U_Bin_180218_qH-1-1.jdf"), "road_jdf_fid"}}) {
    SCOPED_TRACE(file);
    if (file.ends_with(".jdf")) Click_When_Shown<tevo::app::Fid_Window>("Command3");
    ASSERT_EQ(window.Open(file), 0);
    EXPECT_NE(s.X_Left, s.X_Right);
    EXPECT_EQ(Empty_Columns(window.Plot()), 0);
    Save_Shot(&window, shot);
  }

  // m35 shows the whole spectrum again after a zoom.
  tevo::display::Set_X_Mag(s, 4.0);
  window.Refresh_View();
  window.Action("m35")->trigger();
  EXPECT_FLOAT_EQ(std::abs(s.X_Left - s.X_Right), std::abs(s.Spec_Axis[s.Spec_Points - 1] - s.Spec_Axis[0]));
  s.Data_Saved = 1;
  EXPECT_TRUE(window.Try_Exit());
}

TEST(Road, OpenDialogShowsBrukerFilesAndTheWheelMovesTheView) {
  App();
  const fs::path folder = tevo::test::Test_Data_File("bruker-data-test@1.0.0/data/unzipped/aspirin-1h/1");
  Started_Window started;
  ASSERT_TRUE(started.window.Started());
  tevo::Session& s = started.s;
  tevo::app::Main_Window& window = started.window;

  // The open dialog: no empty entries, every file under the all-files
  // filter, the vendor filters; in an experiment folder "fid" is listed and
  // opens into the processing window.
  tevo::test::When_Window_Shown(
      [](QWidget* w) { return qobject_cast<QFileDialog*>(w) != nullptr; },
      [&folder](QWidget& w) {
        auto& d = static_cast<QFileDialog&>(w);
        const QStringList filters = d.nameFilters();
        EXPECT_TRUE(filters.contains("すべてのﾌｧｲﾙ (*)")) << filters.join('|').toStdString();
        EXPECT_TRUE(filters.contains("Bruker (fid 1r acqus)"));
        EXPECT_TRUE(filters.contains("JEOL (*.jdf)"));
        for (const QString& f : filters) EXPECT_FALSE(f.contains("()")) << f.toStdString();
        EXPECT_TRUE(d.selectedFiles().isEmpty() || !d.selectedFiles().front().contains('*'));
        d.setDirectory(QString::fromStdString(folder.string()));
        d.selectNameFilter("Bruker (fid 1r acqus)");
        QTest::qWait(300);
        Save_Shot(&w, "road_open_dialog");
        d.reject();
      });
  window.Action("NM1D_m11")->trigger();
  // The experiment folder itself opens its FID.
  Click_When_Shown<tevo::app::Fid_Window>("Command3");
  ASSERT_EQ(window.Open(folder.string()), 0);
  ASSERT_EQ(s.Is_Spectrum, 1);
  EXPECT_EQ(fs::path(s.Param.Data_File).filename(), "fid");
  EXPECT_EQ(window.Action("NM1D_m11")->shortcut(), QKeySequence(QKeySequence::Open));

  // The wheel scrolls a zoomed view; Ctrl+wheel zooms about the cursor.
  tevo::display::Set_X_Mag(s, 4.0);
  window.Refresh_View();
  const float width = s.X_Left - s.X_Right, left = s.X_Left;
  auto* plot = window.Plot();
  const QPointF at(plot->width() / 2.0, plot->height() / 2.0);
  QWheelEvent up(at, plot->mapToGlobal(at), {}, {0, 120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(plot, &up);
  EXPECT_NEAR(s.X_Left - left, 0.1 * width, 1e-3 * width);
  QWheelEvent zoom(at, plot->mapToGlobal(at), {}, {0, 120}, Qt::NoButton, Qt::ControlModifier, Qt::NoScrollPhase,
                   false);
  QApplication::sendEvent(plot, &zoom);
  EXPECT_NEAR(s.X_Left - s.X_Right, width / 1.25, 1e-3 * width);

  // The distance tool: a drag sets the two cursors and Picture3 tells their
  // distance, which agrees with the positions it shows.
  window.Basic()->findChild<QAbstractButton*>("BasicToolbar_10")->click();
  QTest::mousePress(plot, Qt::LeftButton, {}, QPoint(plot->width() / 3, plot->height() / 2));
  QTest::mouseMove(plot, QPoint(plot->width() / 2, plot->height() / 2));
  QTest::mouseRelease(plot, Qt::LeftButton, {}, QPoint(plot->width() / 2, plot->height() / 2));
  auto* distance = window.findChild<QLabel*>("Picture3");
  ASSERT_TRUE(distance->isVisible());
  // "δ1= 8.43 ppm    δ2= 7.90 ppm    Δ= 159.64 Hz      (0.53 ppm)"
  std::vector<double> values;
  auto numbers = QRegularExpression("= *([-0-9.]+)").globalMatch(distance->text());
  while (numbers.hasNext()) values.push_back(numbers.next().captured(1).toDouble());
  ASSERT_EQ(values.size(), 3u) << distance->text().toStdString();
  const double d1 = values[0], d2 = values[1], hz = values[2];
  EXPECT_GT(d1, d2);  // the left cursor is the higher shift
  EXPECT_NEAR(hz, (d1 - d2) * s.Spectrum_Frequency, 0.02 * s.Spectrum_Frequency);
  Save_Shot(&window, "road_distance");
  s.Data_Saved = 1;
  EXPECT_TRUE(window.Try_Exit());
}

// Pixels of the plot in a colour 0xBBGGRR.
int Ink_Of(tevo::app::Plot_Widget* plot, int32_t bgr) {
  const QImage image = plot->grab().toImage();
  const QRgb want = qRgb(bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF);
  int n = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) n += (image.pixel(x, y) & 0xffffff) == (want & 0xffffff);
  return n;
}

TEST(Arrays, ReadQuestionKeepsTheRowsAndThePlacementWindowTakesOnlyValuesInsideItsLimits) {
  App();
  const std::string ser =
      tevo::test::Test_Data_File("bruker-data-test@1.0.0/data/unzipped/t1rho-1H/189/ser").string();
  Started_Window started(ser);
  tevo::Session& s = started.s;
  tevo::app::Main_Window& window = started.window;
  // "Multi(Array) データ" offers the read order first; then the processing window.
  tevo::test::When_Window_Shown([](QWidget* w) { return w->objectName() == "NMR1D_Form20"; },
                                [](QWidget& w) {
                                  Save_Shot(&w, "NMR1D_Form20");
                                  EXPECT_TRUE(w.findChild<QRadioButton*>("Option4")->isChecked());
                                  w.findChild<QPushButton*>("Command1")->click();
                                });
  Click_When_Shown<tevo::app::Fid_Window>("Command3");
  window.Open_Command_Line();
  ASSERT_EQ(s.Is_Spectrum, 1);
  ASSERT_EQ(s.Array_Rows, 22);

  // The stack leans right by 0.3 of the width; a rise of 1 is refused and 0 stays.
  window.Action("m341")->trigger();
  ASSERT_TRUE(window.Action("m342")->isEnabled());
  s.X_Left = s.X_Right + 1;  // a zoomed view, reset by OK
  tevo::test::When_Window_Shown([](QWidget* w) { return w->objectName() == "NMR1D_Form32"; },
                                [](QWidget& w) {
                                  auto* x = w.findChild<QLineEdit*>("Text1");
                                  auto* y = w.findChild<QLineEdit*>("Text2");
                                  x->setText("0.3");
                                  y->setText("1");
                                  w.findChild<QPushButton*>("Command1")->click();
                                });
  window.Action("m342")->trigger();
  EXPECT_FLOAT_EQ(static_cast<float>(s.settings.Real("X AXIS RATIO")), 0.3f);
  EXPECT_EQ(s.settings.Real("Y AXIS RATIO"), 0);
  EXPECT_FLOAT_EQ(s.X_Left, s.Spec_Axis[static_cast<std::size_t>(s.Spec_Points - 1)]);
  window.Plot()->repaint();
  const tevo::display::Plot_Frame& f = window.Plot()->Frame();
  EXPECT_NEAR(f.Frame_Left_Last - f.Frame_Left, 0.3 * (f.Frame_Right_Last - f.Frame_Left), 2);
  Save_Shot(window.Plot(), "array_stack_placement");
}

// NMR1D_Form6 loads, scales, exchanges; a slot is edited in SMulti_Form1 and
// the main plot shows it after.
TEST(Overlays, MultiSpectrumWindowLoadsScalesAndTheMainPlotShowsTheSlots) {
  App();
  const std::string fid =
      tevo::test::Test_Data_File("bruker-data-test@1.0.0/data/unzipped/aspirin-1h/1/fid").string();
  Started_Window started(fid);
  tevo::Session& s = started.s;
  tevo::app::Main_Window& window = started.window;
  Click_When_Shown<tevo::app::Fid_Window>("Command3");
  window.Open_Command_Line();
  ASSERT_EQ(s.Is_Spectrum, 1);
  ASSERT_TRUE(window.Action("m27")->isEnabled());
  window.Action("m27")->trigger();
  tevo::app::Overlay_Window* form = window.Overlays();
  ASSERT_NE(form, nullptr);
  EXPECT_TRUE(form->isVisible());
  EXPECT_FALSE(form->isModal());

  // Two loads through the core, NMR1D_Form12 answered with its default, "CHEM".
  for (const auto& [slot, path] :
       {std::pair{1, tevo::test::Test_Data_File("jcamp-data-test@0.2.1/data/aspirin-1h.dx").string()},
        std::pair{2, fid}}) {
    const bool shot = slot == 1;
    tevo::test::When_Window_Shown([](QWidget* w) { return w->objectName() == "NMR1D_Form12"; },
                                  [shot](QWidget& w) {
                                    if (shot) Save_Shot(&w, "NMR1D_Form12");
                                    w.findChild<QPushButton*>("Command1")->click();
                                  });
    ASSERT_EQ(tevo::overlay::Load_Slot(s, slot, path), 0);
  }
  form->Refresh();
  window.Refresh_State();
  // The ASCII rows of the slots in use, and only those, are enabled.
  EXPECT_TRUE(window.Action("m182_1")->isEnabled());
  EXPECT_TRUE(window.Action("m182_2")->isEnabled());
  EXPECT_FALSE(window.Action("m182_3")->isEnabled());
  const int red = tevo::overlay::Slot_Colour(s, 1), blue = tevo::overlay::Slot_Colour(s, 2);
  EXPECT_GT(Ink_Of(window.Plot(), red), 100);
  EXPECT_GT(Ink_Of(window.Plot(), blue), 100);

  // SMulti_Form1 on spectrum (2), the aspirin JCAMP of slot 1: the slot's
  // trace alone in its colour, the peak panel of the main window finding its
  // peaks; after closing the slot holds them and the main plot shows it.
  const tevo::Overlay_Slot before = s.Overlay[1];
  EXPECT_TRUE(window.Action("m2731_9")->isEnabled());  // spectrum (2): slot 1
  EXPECT_FALSE(window.Action("m2731_7")->isEnabled());  // spectrum (4): slot 3, empty
  bool edited = false;
  tevo::test::When_Window_Shown(
      [](QWidget* w) { return w->objectName() == "SMulti_Form1"; },
      [&](QWidget& w) {
        edited = true;
        auto& editor = static_cast<tevo::app::Slot_Edit_Window&>(w);
        EXPECT_TRUE(editor.isModal());
        EXPECT_EQ(editor.windowTitle().toStdString(), "重書き(2) データ編集: aspirin-1h.dx");
        editor.Action("m24")->trigger();
        EXPECT_EQ(editor.Working().Mode.Edit_Mode, 4);
        EXPECT_EQ(s.Mode.Edit_Mode, 0);
        tevo::app::Peak_Panel* panel = editor.View()->Peaks();
        EXPECT_TRUE(panel->isVisible());
        panel->Button(3)->click();  // 全体検索
        EXPECT_FALSE(editor.Working().Peaks.empty());
        QApplication::processEvents();
        EXPECT_GT(Ink_Of(editor.View()->Plot(), red), 100);
        EXPECT_EQ(Ink_Of(editor.View()->Plot(), blue), 0);
        Save_Shot(&editor, "slot_edit_window");
        panel->findChild<QPushButton*>("PeakCommand1")->click();  // 閉じる
        editor.Action("BasicCommand1")->trigger();
      });
  window.Action("m2731_9")->trigger();
  ASSERT_TRUE(edited);
  EXPECT_FALSE(s.Overlay[1].Slot_Peaks.empty());
  EXPECT_EQ(s.Overlay[1].Slot_Y, before.Slot_Y);
  EXPECT_EQ(s.Overlay[1].Slot_Y_Offset, before.Slot_Y_Offset);
  EXPECT_EQ(s.Overlay[1].Slot_File, before.Slot_File);
  EXPECT_GT(Ink_Of(window.Plot(), red), 100);

  // m28's row opens it in the reference mode; the comment (SMulti_Form4)
  // reaches the slot, the display options (SMulti_Form33) stay in the window.
  const int peak_values = s.settings.Int("PEAK PICK DISP");
  edited = false;
  tevo::test::When_Window_Shown(
      [](QWidget* w) { return w->objectName() == "SMulti_Form1"; },
      [&](QWidget& w) {
        edited = true;
        auto& editor = static_cast<tevo::app::Slot_Edit_Window&>(w);
        EXPECT_EQ(editor.Working().Mode.Edit_Mode, 1);
        EXPECT_TRUE(editor.View()->Reference()->isVisible());
        editor.View()->Reference()->findChild<QPushButton*>("RefCommand2")->click();
        tevo::test::When_Window_Shown([](QWidget* c) { return c->objectName() == "SMulti_Form4"; },
                                      [](QWidget& c) {
                                        c.findChild<QLineEdit*>("Text1")->setText("acetylsalicylic acid in CDCl3, 400 MHz");
                                        c.findChild<QPushButton*>("Command1")->click();
                                      });
        editor.Action("Comment")->trigger();
        tevo::test::When_Window_Shown([](QWidget* c) { return c->objectName() == "SMulti_Form33"; },
                                      [peak_values](QWidget& c) {
                                        Save_Shot(&c, "SMulti_Form33");
                                        c.findChild<QCheckBox*>("Check3")->setChecked(peak_values == 0);
                                        c.findChild<QLineEdit*>("Text3")->setText("9");
                                        c.findChild<QLineEdit*>("Text4")->setText("6");
                                        c.findChild<QPushButton*>("Command1")->click();
                                      });
        editor.Action("Display")->trigger();
        EXPECT_EQ(editor.Working().settings.Int("PEAK PICK DISP"), peak_values == 0 ? 1 : 0);
        EXPECT_FLOAT_EQ(editor.Working().X_Left, 9.0f);
        EXPECT_FLOAT_EQ(editor.Working().X_Right, 6.0f);
        editor.reject();
      });
  ASSERT_TRUE(window.Action("m2101_9")->isEnabled());
  window.Action("m2101_9")->trigger();
  ASSERT_TRUE(edited);
  EXPECT_EQ(s.Overlay[1].Slot_Comment, "acetylsalicylic acid in CDCl3,");  // 30 bytes
  EXPECT_EQ(s.settings.Int("PEAK PICK DISP"), peak_values);
  EXPECT_NE(s.X_Right, 6.0f);

  // Slot 2's magnification typed, slot 3's raised by one press of its button.
  auto* mag = form->findChild<QLineEdit*>("Text1_1");
  ASSERT_NE(mag, nullptr);
  mag->selectAll();
  QTest::keyClicks(mag, "3");
  QTest::keyClick(mag, Qt::Key_Return);
  EXPECT_FLOAT_EQ(s.Overlay[1].Slot_Y_Mag, 3.0f);
  auto* up = form->findChild<tevo::app::Hold_Button*>("Ymag_Up_2");
  ASSERT_NE(up, nullptr);
  QTest::mousePress(up, Qt::LeftButton);
  QTest::mouseRelease(up, Qt::LeftButton);
  EXPECT_FLOAT_EQ(s.Overlay[2].Slot_Y_Mag, 0.95f * 1.1f);
  EXPECT_EQ(form->findChild<QLineEdit*>("Text1_2")->text(), "1.045");

  // Compared intensities: every slot at the main scale, their own greyed.
  form->findChild<QCheckBox*>("Check2")->click();
  EXPECT_EQ(s.Overlay_Compare, 1);
  EXPECT_FALSE(form->findChild<QLineEdit*>("Text1_1")->isEnabled());
  EXPECT_FALSE(form->findChild<QPushButton*>("Ymag_Up_1")->isEnabled());
  EXPECT_TRUE(form->findChild<QLineEdit*>("Text1_0")->isEnabled());
  form->findChild<QCheckBox*>("Check2")->click();

  // NMR1D_Form19 moves spectrum 3 to the empty row 5; 取り消し swaps back.
  tevo::test::When_Window_Shown([](QWidget* w) { return w->objectName() == "NMR1D_Form19"; },
                                [](QWidget& w) {
                                  w.findChild<QSpinBox*>("Text1")->setValue(3);
                                  w.findChild<QSpinBox*>("Text2")->setValue(5);
                                  w.findChild<QPushButton*>("Command1")->click();
                                });
  form->findChild<QPushButton*>("Command5")->click();
  EXPECT_EQ(s.Overlay[2].Slot_Points, 0);
  EXPECT_EQ(s.Overlay[4].Slot_File, fid);
  EXPECT_EQ(form->findChild<QLabel*>("Label_File_4")->text(), "fid");
  form->findChild<QPushButton*>("Command6")->click();
  EXPECT_EQ(s.Overlay[2].Slot_File, fid);

  // A new open with slots in use asks in NMR1D_Form23; "残す" keeps them.
  s.Data_Saved = 1;
  tevo::test::When_Window_Shown([](QWidget* w) { return w->objectName() == "NMR1D_Form23"; },
                                [](QWidget& w) {
                                  Save_Shot(&w, "NMR1D_Form23");
                                  w.findChild<QRadioButton*>("Option2")->setChecked(true);
                                  w.findChild<QPushButton*>("Command1")->click();
                                });
  Click_When_Shown<tevo::app::Fid_Window>("Command3");
  ASSERT_EQ(window.Open(fid), 0);
  EXPECT_EQ(s.Overlay[1].Slot_File.substr(s.Overlay[1].Slot_File.size() - 3), ".dx");

  QApplication::processEvents();
  Save_Shot(form, "NMR1D_Form6");
  Save_Shot(&window, "main_window_overlays");
  form->close();
  s.Data_Saved = 1;
  EXPECT_TRUE(window.Try_Exit());
}

TEST(MainWindow, EveryEnabledMenuItemDoesSomething) {
  App();
  Started_Window started;
  ASSERT_TRUE(started.window.Started());
  tevo::Session& s = started.s;
  tevo::app::Main_Window& window = started.window;
  Click_When_Shown<tevo::app::Fid_Window>("Command3");
  ASSERT_EQ(window.Open(tevo::test::Test_Data_File("bruker-data-test@1.0.0/data/unzipped/aspirin-1h/1/fid").string()), 0);
  tevo::session::Set_RecentFile_Menu(s, s.Open_Name);
  ASSERT_TRUE(tevo::overlay::Copy_Slot(s, 0, 1));  // a slot in use enables its rows
  window.Refresh_State();

  // What an item may change: the mode, the view, the data, the lists.
  const auto state = [&s] {
    std::ostringstream o;
    o << s.Mode.Edit_Mode << ' ' << s.Show_Distance << ' ' << s.Show_Magnitude << ' ' << s.X_Left << ' ' << s.X_Right << ' ' << s.Data_Saved
      << ' ' << s.Spec_Re(100) << ' ' << s.settings.Recent_Files.size() << ' ' << s.Param.COMNT;
    for (const auto& l : tevo::session::Layer_Switches()) o << ' ' << s.settings.Int(l.key);
    return o.str();
  };
  int walked = 0;
  for (const tevo::app::Menu_Item& item : tevo::app::Menu_Tree()) {
    QAction* a = window.Action(item.id);
    if (std::string(item.caption) == "-" || !a || a->menu() || !a->isEnabled() || !a->isVisible()) continue;
    if (std::string(item.id) == "m19") continue;  // the end: its own test
    // Choosing the place of the peak labels that is already chosen keeps it.
    if (std::string(item.id).rfind("m37", 0) == 0 && a->isChecked()) continue;
    SCOPED_TRACE(item.id);
    ++walked;
    // Zoomed in, so that a whole-view command changes the view.
    tevo::display::Set_X_Mag(s, 2.0);
    window.Refresh_View();
    const std::string before = state();
    auto windows = std::make_shared<int>(0);
    auto questions = std::make_shared<int>(0);
    auto cancelling = std::make_shared<bool>(false);
    // Every window the item opens is counted and closed (cancelled). A
    // question is answered by its last button (the cancelling one), and the
    // next by its first, so that a window whose cancel asks "go back?"
    // closes in the end; while a cancel waits for its question, only the
    // question is answered.
    std::function<void()> close_windows = [&, windows, questions, cancelling] {
      for (QWidget* w : QApplication::topLevelWidgets())
        if (w != &window && w->isVisible() && qobject_cast<QDialog*>(w)) {
          if (auto* msg = qobject_cast<tevo::app::FormMsg*>(w)) {
            ++*windows;
            const auto buttons = msg->findChildren<QPushButton*>();
            (*questions)++ % 2 == 0 ? buttons.back()->click() : buttons.front()->click();
          } else if (!*cancelling) {
            // From the event loop, not inside this timer's slot: a timer
            // does not fire again while its slot runs, and the question
            // the cancel may ask needs it.
            ++*windows;
            *cancelling = true;
            QTimer::singleShot(0, w, [w, cancelling] {
              static_cast<QDialog*>(w)->reject();
              *cancelling = false;
            });
          }
        }
    };
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, close_windows);
    poll.start(30);
    a->trigger();
    QTest::qWait(60);
    // A loaded machine may show the window later: give it up to two seconds.
    QTest::qWaitFor([&] { return *windows > 0 || state() != before; }, 2000);
    poll.stop();
    EXPECT_TRUE(*windows > 0 || state() != before) << item.id << " is enabled and silent";
    // Back to the basic mode for the next item.
    if (s.Mode.Edit_Mode != 0) {
      tevo::session::Finish_Mode(s, false);
      window.Refresh_State();
    }
  }
  EXPECT_GE(walked, 15);
  s.Data_Saved = 1;
  EXPECT_TRUE(window.Try_Exit());
}

TEST(LineWindow, TwoClicksOnADoubletFitOntoItsLines) {
  App();
  Started_Window started(tevo::test::Test_Data_File("bruker-data-test@1.0.0/data/unzipped/aspirin-1h/1/fid").string());
  tevo::Session& s = started.s;
  tevo::app::Main_Window& window = started.window;
  ASSERT_TRUE(started.Process_Command_Line());
  // The doublet of lines at 7.0521 and 7.0806 ppm (the peak search's), in view.
  s.X_Left = 7.10f;
  s.X_Right = 7.03f;
  window.Refresh_View();
  ASSERT_TRUE(window.Action("m51")->isEnabled());
  window.Action("m51")->trigger();
  tevo::app::Line_Window* lines = window.Lines();
  ASSERT_NE(lines, nullptr);
  lines->resize(900, 600);
  QApplication::processEvents();
  auto* plot = lines->Plot();
  const auto at = [plot](double ppm) { return QPoint(static_cast<int>(std::lround(plot->Pixel_Of_Ppm(ppm))), plot->height() * 3 / 4); };
  // Two clicks beside the tops, a third line deleted by the right button and back by undo.
  for (double ppm : {7.0571, 7.0756, 7.066}) QTest::mouseClick(plot, Qt::LeftButton, {}, at(ppm));
  tevo::deconvolution::Sim_State& st = lines->State();
  ASSERT_EQ(st.Peaks.Sim_Peak_Count, 3);
  QTest::mouseClick(plot, Qt::RightButton, {}, at(7.0662));
  EXPECT_EQ(st.Peaks.Sim_Peak_Count, 2);
  QAction* undo = lines->Action("m34");
  EXPECT_EQ(undo->text(), "UnDo(ピークの削除)");
  undo->trigger();
  EXPECT_EQ(st.Peaks.Sim_Peak_Count, 3);
  QTest::mouseClick(plot, Qt::RightButton, {}, at(7.0662));
  EXPECT_GT(st.Peaks.Peak_Height[0], 0.0f);  // from the slope under the click
  // The display and print styles and the printer set-up open from the menus.
  for (const auto& [id, form] : {std::pair{"m311", "SpecSim_Form3_0"}, std::pair{"m312", "SpecSim_Form3_1"},
                                 std::pair{"m42", "Form501"}}) {
    auto opened = std::make_shared<bool>(false);
    tevo::test::When_Window_Shown([form = form](QWidget* w) { return w->objectName() == form; },
                                  [opened](QWidget& w) {
                                    *opened = true;
                                    static_cast<QDialog&>(w).reject();
                                  });
    lines->Action(id)->trigger();
    EXPECT_TRUE(*opened) << id;
  }
  // SpecSim_Form9: a press of WidthInc widens line 1 by 5 %, one undo record.
  const float width = st.Peaks.Peak_Width[0];
  tevo::test::When_Window_Shown([](QWidget* w) { return w->objectName() == "SpecSim_Form9"; },
                                [](QWidget& w) {
                                  auto* inc = w.findChild<QPushButton*>("WidthInc");
                                  QTest::mousePress(inc, Qt::LeftButton);
                                  QTest::mouseRelease(inc, Qt::LeftButton);
                                  Save_Shot(&w, "line_manual");
                                  w.findChild<QPushButton*>("Command1")->click();
                                });
  lines->findChild<QToolButton*>("Button11")->click();
  EXPECT_FLOAT_EQ(st.Peaks.Peak_Width[0], width * 1.05f);
  EXPECT_EQ(undo->text(), "UnDo(ピークの変更)");

  // The fit (SpecSim_Form4): start, then OK.
  tevo::test::When_Window_Shown([](QWidget* w) { return w->objectName() == "SpecSim_Form4"; },
                                [](QWidget& w) {
                                  w.findChild<QPushButton*>("Command1")->click();
                                  Save_Shot(&w, "line_fit_dialog");
                                  w.findChild<QPushButton*>("Command2")->click();
                                });
  lines->Action("m21")->trigger();
  const float axis0 = tevo::deconvolution::Sim_Axis0(s);
  ASSERT_EQ(st.Peaks.Sim_Peak_Count, 2);
  // Onto the tops the peak search finds (higher ppm first), within 3/4 of a
  // point, from clicks 2.5 points (5e-3 ppm) away on the inner slopes.
  const double point = std::fabs(s.Spec_Axis[1] - s.Spec_Axis[0]);
  EXPECT_NEAR(st.Peaks.Peak_Pos[0] + axis0, 7.0806, 0.75 * point);
  EXPECT_NEAR(st.Peaks.Peak_Pos[1] + axis0, 7.0521, 0.75 * point);
  EXPECT_TRUE(lines->findChild<QLabel*>("Labelcr")->text().startsWith("Criterion="));
  EXPECT_FALSE(undo->isEnabled());  // a fit empties the undo list
  EXPECT_LT(lines->Curve().limit, 20.0f);  // the residual, percent of the tallest point

  // The list (SpecSim_Form10) shows both lines.
  int rows = 0;
  QString first;
  tevo::test::When_Window_Shown([](QWidget* w) { return w->objectName() == "SpecSim_Form10"; },
                                [&](QWidget& w) {
                                  auto* list = w.findChild<QTreeWidget*>("ListView1");
                                  rows = list->topLevelItemCount();
                                  first = list->topLevelItem(0)->text(1);
                                  Save_Shot(&w, "line_list");
                                  w.findChild<QPushButton*>("Command1")->click();
                                });
  lines->findChild<QPushButton*>("Command3")->click();
  EXPECT_EQ(rows, 2);
  EXPECT_EQ(first, QString::fromStdString(tevo::Format_Number(st.Peaks.Peak_Pos[0] + axis0, "##0.0000")));
  Save_Shot(lines, "line_window");
  // m41_1: the window's page (SpecSim_Form8) on the paper of the settings,
  // the model in red on it; printed on an A4 PDF printer.
  tevo::test::Temp_Dir dir;
  const fs::path pdf = dir / "lines.pdf";
  int printed = -2, red = 0;
  QString title;
  tevo::test::When_Window_Shown([](QWidget* w) { return w->objectName() == "SpecSim_Form8"; }, [&](QWidget& w) {
    auto& form = static_cast<tevo::app::Window_Page_Form&>(w);
    title = w.windowTitle();
    red = Red(form.Preview());
    Save_Shot(&w, "SpecSim_Form8");
    printed = Print_To_Pdf(form, pdf);
    form.reject();
  });
  lines->Action("m41_1")->trigger();
  EXPECT_EQ(title, "印刷プレビュー(ピーク分離)  A4 縦置");
  EXPECT_GT(red, 100);
  EXPECT_EQ(printed, 0);
  const QSizeF page = tevo::test::Pdf_Page_Mm(pdf);
  EXPECT_NEAR(page.width(), 210, 1);
  EXPECT_NEAR(page.height(), 297, 1);
  // One press of the vertical zoom: 10 % taller.
  auto* up = lines->findChild<tevo::app::Hold_Button*>("Command1");
  QTest::mousePress(up, Qt::LeftButton);
  QTest::mouseRelease(up, Qt::LeftButton);
  EXPECT_FLOAT_EQ(lines->Y_Mag(), 1.1f);
  lines->close();
  s.Data_Saved = 1;
  EXPECT_TRUE(window.Try_Exit());
}

TEST(LineWindow, StrychnineDoubletFitsAndTheStopEndsTwentyLines) {
  App();
  Started_Window started(
      tevo::test::Test_Data_File("bruker-data-test@1.0.0/data/unzipped/strychnine-1h/strychnine/10/fid").string());
  tevo::Session& s = started.s;
  tevo::app::Main_Window& window = started.window;
  ASSERT_TRUE(started.Process_Command_Line());
  // The doublet at 3.846 and 3.872 ppm, each line with a shoulder on its
  // inner side from a small further coupling.
  const float left = 3.895f, right = 3.825f;
  s.X_Left = left;
  s.X_Right = right;
  window.Refresh_View();
  window.Action("m51")->trigger();
  tevo::app::Line_Window* lines = window.Lines();
  ASSERT_NE(lines, nullptr);
  lines->resize(900, 600);
  tevo::deconvolution::Sim_State& st = lines->State();
  // The two shoulders, and the lines where the peak search finds them.
  for (double ppm : {3.8672, 3.8425}) tevo::deconvolution::Sim_Add_Peak(s, st, ppm);
  tevo::editing::Peak_Search_Shown(s);
  for (const tevo::Peak_Rec& p : s.Peaks)
    tevo::deconvolution::Sim_Add_Peak(s, st, s.Spec_Axis[static_cast<std::size_t>(p.Point)]);
  ASSERT_GE(st.Peaks.Sim_Peak_Count, 4);
  // 計算開始 three times, each run from where the last one stopped.
  tevo::test::When_Window_Shown([](QWidget* w) { return w->objectName() == "SpecSim_Form4"; },
                                [](QWidget& w) {
                                  for (int run = 0; run < 3; ++run) w.findChild<QPushButton*>("Command1")->click();
                                  w.findChild<QPushButton*>("Command2")->click();
                                });
  lines->Action("m21")->trigger();
  lines->Refresh();
  EXPECT_LT(lines->Curve().limit, 2.0f);  // percent of the doublet's top
  Save_Shot(lines, "line_window_strychnine");

  // Twenty lines in range: 計算中止 pressed while the fit runs ends it within
  // one iteration, and a timer kept firing meanwhile.
  for (int k = st.Peaks.Sim_Peak_Count; k < 20; ++k)
    tevo::deconvolution::Sim_Add_Peak(s, st, right + (left - right) * (k + 0.5) / 20);
  int32_t at_press = -1, at_end = -1, ticks = 0;
  std::size_t fitted = 0;
  QTimer tick;
  QObject::connect(&tick, &QTimer::timeout, [&ticks] { ++ticks; });
  tevo::test::When_Window_Shown([](QWidget* w) { return w->objectName() == "SpecSim_Form4"; },
                                [&](QWidget& w) {
                                  auto& form = static_cast<tevo::app::Line_Fit_Dialog&>(w);
                                  fitted = form.Fit().Fit_Peak_Index.size();
                                  QTimer::singleShot(300, [&] {
                                    at_press = form.Fit().State.Iterations;
                                    w.findChild<QPushButton*>("Command3")->click();
                                  });
                                  tick.start(10);
                                  w.findChild<QPushButton*>("Command1")->click();
                                  tick.stop();
                                  at_end = form.Fit().State.Iterations;
                                  EXPECT_NE(form.Fit().Outcome, tevo::relaxation::Simplex_Step::Converged);
                                  w.findChild<QPushButton*>("Command5")->click();
                                });
  lines->Action("m21")->trigger();
  EXPECT_EQ(fitted, 20u);
  ASSERT_GT(at_press, 0);
  EXPECT_LE(at_end - at_press, 1);
  EXPECT_GE(ticks, 2);  // more than one: the loop kept turning, not just once at the press
  lines->close();
  s.Data_Saved = 1;
  EXPECT_TRUE(window.Try_Exit());
}

// Pixels of the plot, laid out anew first (the panel of a mode changes the
// plot's height).
QPoint At_Ppm(tevo::app::Plot_Widget* plot, double ppm, int y) {
  QApplication::processEvents();
  plot->repaint();
  return {static_cast<int>(std::lround(plot->Pixel_Of_Ppm(ppm))), y};
}

void Drag(tevo::app::Plot_Widget* plot, QPoint from, QPoint to) {
  QTest::mousePress(plot, Qt::LeftButton, {}, from);
  QTest::mouseMove(plot, to);
  QTest::mouseRelease(plot, Qt::LeftButton, {}, to);
}

TEST(EditModes, BaselinePeaksIntegralsThroughTheirPanelsWithUndo) {
  App();
  Started_Window started(
      tevo::test::Test_Data_File("bruker-data-test@1.0.0/data/unzipped/aspirin-1h/1/fid").string());
  tevo::Session& s = started.s;
  tevo::app::Main_Window& window = started.window;
  ASSERT_TRUE(started.Process_Command_Line());
  auto* plot = window.Plot();
  QAction* undo = window.Action("m20");
  const int mid_y = plot->height() / 2;
  const auto button = [](QWidget* panel, const char* name) { return panel->findChild<QPushButton*>(name); };

  // Baseline: automatic points correct the spectrum; a point added and
  // deleted by the mouse; the delete undone; the preview caption; O K.
  window.Action("m23")->trigger();
  ASSERT_EQ(s.Mode.Edit_Mode, 3);
  EXPECT_FALSE(undo->isEnabled());
  auto* base = window.Baseline();
  const std::vector<float> raw = Row0(s);
  base->Button(2)->click();
  const std::size_t automatic = s.Base_Point.size();
  ASSERT_GT(automatic, 2u);
  EXPECT_NE(Row0(s), raw);
  base->Button(3)->click();
  QTest::mouseClick(plot, Qt::LeftButton, {}, At_Ppm(plot, 5.0, mid_y));
  ASSERT_EQ(s.Base_Point.size(), automatic + 1);
  base->Button(4)->click();
  EXPECT_FALSE(base->Button(3)->isChecked());
  QTest::mouseClick(plot, Qt::LeftButton, {}, At_Ppm(plot, 5.0, mid_y));
  EXPECT_EQ(s.Base_Point.size(), automatic);
  EXPECT_EQ(undo->text().toStdString(), "取り消し(補正点の削除)");
  QPushButton* preview = button(base, "BaseCorCommand1");
  preview->click();
  EXPECT_EQ(preview->text().toStdString(), "Preview解除");
  undo->trigger();
  EXPECT_EQ(s.Base_Point.size(), automatic + 1);
  Save_Shot(&window, "mode_baseline");
  button(base, "BaseCorCommand2")->click();
  EXPECT_EQ(s.Mode.Edit_Mode, 0);
  EXPECT_EQ(s.Base_Corrected, 1);
  EXPECT_NE(Row0(s), raw);
  EXPECT_FALSE(undo->isEnabled());
  // ｷｬﾝｾﾙ puts back the spectrum the mode started from.
  const std::vector<float> corrected = Row0(s);
  window.Action("m23")->trigger();
  base->Button(2)->click();
  button(base, "BaseCorCommand3")->click();
  EXPECT_EQ(s.Mode.Edit_Mode, 0);
  EXPECT_EQ(Row0(s), corrected);

  // Peaks: the shown range (the whole view) finds them, 全削除 empties the
  // list, the whole spectrum finds them again; a peak deleted by the mouse
  // comes back by add nearest, a point at the cursor is added; a level line
  // dragged; the list window; undo; close keeps the list.
  window.Action("m24")->trigger();
  ASSERT_EQ(s.Mode.Edit_Mode, 4);
  auto* peaks = window.Peaks();
  peaks->Button(2)->click();
  const std::size_t found = s.Peaks.size();
  ASSERT_GT(found, 3u);
  button(peaks, "PeakCommand3")->click();
  EXPECT_TRUE(s.Peaks.empty());
  peaks->Button(3)->click();
  ASSERT_EQ(s.Peaks.size(), found);
  // The list by frequency (the label places are the plot's business).
  const auto freqs = [&s] {
    std::vector<float> v;
    for (const auto& p : s.Peaks) v.push_back(p.Freq_Hz);
    return v;
  };
  const std::vector<float> all = freqs();
  // Zoomed in on the strongest peak (a pixel is then less than a display
  // point, which add nearest needs), by the list's own heights.
  const auto rows = tevo::editing::Peak_List_Rows(s, false);
  const auto top = std::max_element(rows.begin(), rows.end(), [](auto& a, auto& b) { return a.height < b.height; });
  const float left = s.X_Left, right = s.X_Right;
  s.X_Left = static_cast<float>(top->ppm + 0.05);
  s.X_Right = static_cast<float>(top->ppm - 0.05);
  window.Refresh_View();
  const QPoint peak = At_Ppm(plot, top->ppm, mid_y);
  peaks->Button(6)->click();
  QTest::mouseClick(plot, Qt::LeftButton, {}, peak);
  EXPECT_EQ(s.Peaks.size(), found - 1);
  peaks->Button(4)->click();
  QTest::mouseClick(plot, Qt::LeftButton, {}, peak + QPoint(6, 0));
  EXPECT_EQ(freqs(), all);
  peaks->Button(5)->click();
  QTest::mouseClick(plot, Qt::LeftButton, {}, At_Ppm(plot, top->ppm + 0.03, mid_y));
  EXPECT_EQ(s.Peaks.size(), found + 1);
  EXPECT_EQ(undo->text().toStdString(), "取り消し(ピーク位置の追加)");
  undo->trigger();
  EXPECT_EQ(freqs(), all);
  s.X_Left = left;
  s.X_Right = right;
  window.Refresh_View();
  QApplication::processEvents();
  plot->repaint();
  const auto& f = plot->Frame();
  const int level_y = static_cast<int>(std::lround(tevo::display::Y_To_Pixel(
      s.Max_Abs * s.Peak_Level, f.Frame_Base, f.Frame_Top, s.Y_Full_Scale, s.Y_Offset)));
  Drag(plot, QPoint(plot->width() / 3, level_y), QPoint(plot->width() / 3, level_y - 40));
  EXPECT_GT(s.Peak_Level, 0.01f);
  EXPECT_EQ(peaks->findChild<QLineEdit*>("PeakText1")->text().toStdString(),
            tevo::Format_Number(s.Peak_Level, "##0.0###"));
  button(peaks, "PeakCommand2")->click();
  ASSERT_TRUE(peaks->List()->isVisible());
  EXPECT_EQ(peaks->List()->Table()->rowCount(), static_cast<int>(found));
  EXPECT_EQ(peaks->List()->Table()->horizontalHeaderItem(1)->text().toStdString(), "ppm");
  Save_Shot(peaks->List(), "peak_list");
  peaks->List()->close();
  Save_Shot(&window, "mode_peaks");
  button(peaks, "PeakCommand1")->click();
  EXPECT_EQ(s.Mode.Edit_Mode, 0);
  EXPECT_EQ(freqs(), all);

  // Integrals: two regions dragged (the methyl singlet and the aromatic
  // lines), one selected and trimmed, a boundary moved, the reference set,
  // re-scaled, one deleted and the delete undone, the list window.
  window.Action("m25")->trigger();
  ASSERT_EQ(s.Mode.Edit_Mode, 5);
  auto* integ = window.Integrals();
  integ->Button(3)->click();
  Drag(plot, At_Ppm(plot, 2.45, mid_y), At_Ppm(plot, 2.2, mid_y));
  Drag(plot, At_Ppm(plot, 7.7, mid_y), At_Ppm(plot, 6.95, mid_y));
  ASSERT_EQ(s.Integrals.size(), 2u);
  EXPECT_GT(s.Integrals[0].Value, 0);
  integ->Button(9)->click();
  QTest::mouseClick(plot, Qt::LeftButton, {}, At_Ppm(plot, 7.3, mid_y));
  EXPECT_EQ(s.Integ_Cur, 1);
  const float b0 = s.Integrals[1].B0, value = s.Integrals[1].Value;
  tevo::app::Hold_Button* trim = integ->Trim("Integ_B0_UpCoarse");
  QTest::mousePress(trim, Qt::LeftButton);
  QTest::mouseRelease(trim, Qt::LeftButton);
  EXPECT_FLOAT_EQ(s.Integrals[1].B0, static_cast<float>(b0 + 2e-5 / s.Integ_Scale));
  EXPECT_NE(s.Integrals[1].Value, value);
  EXPECT_EQ(undo->text().toStdString(), "取り消し(B0,B1の変更)");
  trim = integ->Trim("Integ_B0_DownCoarse");
  QTest::mousePress(trim, Qt::LeftButton);
  QTest::mouseRelease(trim, Qt::LeftButton);
  EXPECT_NEAR(s.Integrals[1].B0, b0, 1e-6);
  const int32_t start = s.Integrals[1].Start_Point;
  integ->Button(10)->click();
  Drag(plot, At_Ppm(plot, 6.96, mid_y), At_Ppm(plot, 6.85, mid_y));
  EXPECT_LT(s.Integrals[1].Start_Point, start);
  integ->Button(13)->click();
  QLineEdit* ref = integ->findChild<QLineEdit*>("IntegralText1");
  ref->setText("3");
  QTest::mouseClick(plot, Qt::LeftButton, {}, At_Ppm(plot, 2.3, mid_y));
  EXPECT_EQ(s.Integ_Ref_Index, 0);
  EXPECT_FLOAT_EQ(tevo::editing::Integ_Shown_Value(s, 0), 3.0f);
  integ->Button(15)->click();
  EXPECT_LE(s.Integ_Scale, 100.0f);
  const std::vector<tevo::Integ_Rec> regions = s.Integrals;
  integ->Button(7)->click();
  QTest::mouseClick(plot, Qt::LeftButton, {}, At_Ppm(plot, 7.3, mid_y));
  EXPECT_EQ(s.Integrals.size(), 1u);
  undo->trigger();
  EXPECT_EQ(s.Integrals, regions);
  // 積分の分割 at a click (5) and 積分の拡大 by a drag from an end (11),
  // each undone. The two parts of a split sum to the whole.
  integ->Button(5)->click();
  QTest::mouseClick(plot, Qt::LeftButton, {}, At_Ppm(plot, 7.3, mid_y));
  ASSERT_EQ(s.Integrals.size(), 3u);
  EXPECT_NEAR(s.Integrals[1].Value + s.Integrals[2].Value, regions[1].Value, 1e-4 * std::fabs(regions[1].Value));
  EXPECT_EQ(undo->text().toStdString(), "取り消し(積分の分割)");
  undo->trigger();
  EXPECT_EQ(s.Integrals, regions);
  integ->Button(11)->click();
  Drag(plot, At_Ppm(plot, 2.22, mid_y), At_Ppm(plot, 2.1, mid_y));
  EXPECT_LT(s.Integrals[0].Start_Point, regions[0].Start_Point);
  EXPECT_EQ(s.Integrals[0].End_Point, regions[0].End_Point);
  EXPECT_EQ(undo->text().toStdString(), "取り消し(積分の拡大)");
  undo->trigger();
  EXPECT_EQ(s.Integrals, regions);
  button(integ, "IntegralCommand3")->click();
  EXPECT_EQ(integ->List()->Table()->rowCount(), 2);
  Save_Shot(integ->List(), "integral_list");
  integ->List()->close();
  Save_Shot(&window, "mode_integrals");
  button(integ, "IntegralCommand2")->click();
  EXPECT_TRUE(s.Integrals.empty());
  EXPECT_EQ(undo->text().toStdString(), "取り消し(積分の全削除)");
  undo->trigger();
  EXPECT_EQ(s.Integrals, regions);
  button(integ, "IntegralCommand1")->click();
  EXPECT_EQ(s.Mode.Edit_Mode, 0);
  EXPECT_EQ(s.Integrals.size(), 2u);
  EXPECT_FALSE(undo->isEnabled());

  // Insets: entering the mode leaves the peak mode and checks m26 alone.
  // After 新規 a window dragged over the spectrum makes an inset; a step of
  // its X magnification and a drag inside it are undone exactly; 閉じる
  // leaves the mode.
  window.Action("m24")->trigger();
  ASSERT_EQ(s.Mode.Edit_Mode, 4);
  window.Action("m26")->trigger();
  ASSERT_EQ(s.Mode.Edit_Mode, 6);
  EXPECT_TRUE(window.Action("m26")->isChecked());
  EXPECT_FALSE(window.Action("m24")->isChecked());
  tevo::app::MultiView_Panel* insets = window.Insets();
  EXPECT_TRUE(insets->isVisible());
  insets->Button(1)->click();
  Drag(plot, At_Ppm(plot, 8.3, mid_y), At_Ppm(plot, 6.8, mid_y));
  ASSERT_EQ(s.Insets.size(), 1u);
  EXPECT_EQ(s.Mouse_Tool, 0);
  EXPECT_EQ(undo->text().toStdString(), "取り消し(拡大図の追加)");
  const tevo::Inset_Rec made = s.Insets[0];
  button(insets, "MultiViewUpDown1_Up")->click();
  const double stepped = tevo::display::Inset_Mag_Step(tevo::display::Inset_X_Magnification(s, made), true);
  EXPECT_NEAR(tevo::display::Inset_X_Magnification(s, s.Insets[0]), stepped, 1e-4);
  EXPECT_EQ(insets->findChild<QLineEdit*>("MultiViewText1")->text().toStdString(),
            tevo::Format_Number(stepped, "###0.0##"));
  EXPECT_EQ(undo->text().toStdString(), "取り消し(拡大図の横拡大)");
  undo->trigger();
  EXPECT_EQ(s.Insets[0], made);
  const tevo::display::Inset_Box box = tevo::display::Inset_Rectangle(plot->Frame(), made);
  const QPoint inside((box.left + box.right) / 2, (box.top + box.bottom) / 2);
  Drag(plot, inside, inside + QPoint(120, -10));
  EXPECT_EQ(tevo::display::Inset_Rectangle(plot->Frame(), s.Insets[0]).left, box.left + 120);
  EXPECT_EQ(undo->text().toStdString(), "取り消し(拡大図の移動)");
  Save_Shot(&window, "mode_insets");
  undo->trigger();
  EXPECT_EQ(s.Insets[0], made);
  // Its context menu: "拡大図の大きさ変更" arms the resize tool, named beside
  // the panel, for one drag; "拡大図の削除" asks, removes, and undo restores.
  insets->Context_Chosen(0, tevo::display::Tool_Inset_Resize);
  EXPECT_EQ(insets->findChild<QLabel*>("MultiViewStatus")->text().toStdString(), "拡大図の大きさ変更");
  Drag(plot, inside, inside + QPoint(60, 20));
  EXPECT_EQ(tevo::display::Inset_Rectangle(plot->Frame(), s.Insets[0]).right, box.right + 60);
  EXPECT_EQ(s.Mouse_Tool, 0);
  undo->trigger();
  Click_When_Shown<tevo::app::FormMsg>("Command1");
  insets->Context_Chosen(0, tevo::display::Tool_Inset_Delete);
  EXPECT_TRUE(s.Insets.empty());
  EXPECT_EQ(undo->text().toStdString(), "取り消し(拡大図の削除)");
  undo->trigger();
  ASSERT_EQ(s.Insets.size(), 1u);
  EXPECT_EQ(s.Insets[0], made);
  button(insets, "MultiViewCommand1")->click();
  EXPECT_EQ(s.Mode.Edit_Mode, 0);
  EXPECT_FALSE(window.Action("m26")->isChecked());
  EXPECT_FALSE(undo->isEnabled());

  // The history: measured by the acquisition's owner at its ##$DATE
  // (1138699492 s after 1970 in UTC), transformed here, never saved.
  window.Action("m209")->trigger();
  auto* history = window.findChild<tevo::app::List_Window*>("Form111");
  ASSERT_TRUE(history != nullptr && history->isVisible());
  const auto cell = [&](int r, int c) { return history->Table()->item(r, c)->text().toStdString(); };
  ASSERT_EQ(history->Table()->rowCount(), 2);
  EXPECT_EQ(cell(0, 0) + "|" + cell(0, 1) + "|" + cell(0, 2), "Measured|root|2006-01-31  09:24:52");
  EXPECT_EQ(cell(1, 0) + "|" + cell(1, 1), "FFT|" + s.User_Name);
  Save_Shot(history, "data_history");
  history->close();
  s.Data_Saved = 1;
  EXPECT_TRUE(window.Try_Exit());
}

}  // namespace

namespace {

TEST(RelaxWindow, InversionRecoveryFitsOnOpeningAChoiceAndAgainWithKHeld) {
  App();
  Started_Window started;
  tevo::Session& s = started.s;
  tevo::app::Main_Window& window = started.window;
  // Kept as an array in read order ("Multi(Array) データ"), then 完 了.
  tevo::test::When_Window_Shown([](QWidget* w) { return w->objectName() == "NMR1D_Form20"; },
                                [](QWidget& w) { w.findChild<QPushButton*>("Command1")->click(); });
  Click_When_Shown<tevo::app::Fid_Window>("Command3");
  ASSERT_EQ(window.Open(tevo::test::Test_Data_File(
                            "bruker-data-test@1.0.0/data/unzipped/inversionRecovery2D/inversionRecovery2D/1")
                            .string()),
            0);
  ASSERT_EQ(s.Array_Rows, 10);
  QAction* m52 = window.Action("m52");
  ASSERT_TRUE(m52->isEnabled());

  // Nothing to measure yet: the message, and no window.
  std::string said;
  tevo::test::When_Window_Shown([](QWidget* w) { return qobject_cast<tevo::app::FormMsg*>(w) != nullptr; },
                                [&said](QWidget& w) {
                                  for (QLabel* l : w.findChildren<QLabel*>()) said += l->text().toStdString();
                                  w.findChildren<QPushButton*>().front()->click();
                                });
  m52->trigger();
  EXPECT_NE(said.find("計算する範囲を決めるか、ピーク検出を行ってください"), std::string::npos) << said;
  EXPECT_EQ(window.Relaxation(), nullptr);

  // The peak list of the recovered row; the line at 0.857 ppm, whose T1
  // the command line finds as 0.873 s.
  tevo::editing::Peak_Search_All(s);
  window.Refresh_State();
  ASSERT_FALSE(s.Peaks.empty());
  const auto off = [&s](const tevo::Peak_Rec& p) { return std::fabs(s.Spec_Axis[static_cast<std::size_t>(p.Point)] - 0.857); };
  const auto line = static_cast<std::size_t>(
      std::min_element(s.Peaks.begin(), s.Peaks.end(), [&](const auto& a, const auto& b) { return off(a) < off(b); }) -
      s.Peaks.begin());
  EXPECT_LT(off(s.Peaks[line]), 0.005);
  m52->trigger();
  tevo::app::Relax_Window* relax = window.Relaxation();
  ASSERT_NE(relax, nullptr);
  auto* combo = relax->findChild<QComboBox*>("Combo1");
  ASSERT_EQ(combo->count(), static_cast<int>(s.Peaks.size()) + 1);
  EXPECT_EQ(relax->Fit().State.Iterations, 0);  // no region: the area is 0 and nothing is fitted

  // The choice runs the fit: T = 1/k about 0.873 s, the field holding vertex 0.
  const auto field = [relax](int i) { return relax->findChild<QLineEdit*>(QString("Text%1").arg(i)); };
  combo->setCurrentIndex(static_cast<int>(line) + 1);
  emit combo->activated(static_cast<int>(line) + 1);
  EXPECT_EQ(relax->Fit().Outcome, tevo::relaxation::Simplex_Step::Converged);
  EXPECT_NEAR(1.0 / field(3)->text().toDouble(), 0.873, 0.01);
  EXPECT_LT(field(0)->text().toDouble(), 0);  // inverted at the shortest delay
  EXPECT_GT(relax->findChild<QLabel*>("Label20")->text().toInt(), 10);
  EXPECT_TRUE(relax->findChild<QLabel*>("Labelcr")->text().startsWith("Criterion="));

  // The mouse sets the range: left near 0.2 s takes 0.25 s, right near 4.6 s
  // takes 5 s. Then k held at 1.2 s-1 stays while A0 and B move.
  auto* plot = relax->findChild<tevo::app::Relax_Plot*>("Picture1");
  float x0, x1, y0, y1;
  relax->Limits(x0, x1, y0, y1);
  const auto at = [&](float t) {
    return QPoint(60 + static_cast<int>((t - x0) / (x1 - x0) * static_cast<float>(plot->width() - 260)), plot->height() / 2);
  };
  QTest::mouseClick(plot, Qt::LeftButton, {}, at(0.2f));
  QTest::mouseClick(plot, Qt::RightButton, {}, at(4.6f));
  EXPECT_EQ(relax->Fit().First_Point, 2);
  EXPECT_EQ(relax->Fit().Last_Point, 8);
  EXPECT_EQ(relax->findChild<QLabel*>("Labelstart")->text(), "Start=0.25 s  End=5.0 s");
  field(3)->setText("1.2");
  relax->findChild<QCheckBox*>("Check11")->setChecked(true);
  const std::string a0 = field(0)->text().toStdString();
  relax->findChild<QPushButton*>("Command1")->click();
  EXPECT_EQ(field(3)->text(), "1.2");
  EXPECT_FLOAT_EQ(relax->Fit().State.Trial[tevo::relaxation::Relax_K], 1.2f);
  EXPECT_NE(field(0)->text().toStdString(), a0);
  // 表示範囲の変更 (T1Cal_Form2): the plot from 0.2 to 3 s and -1 to 1.
  tevo::test::When_Window_Shown([](QWidget* w) { return w->objectName() == "T1Cal_Form2"; }, [](QWidget& w) {
    const char* values[] = {"0.2", "3", "-1", "1"};
    for (int i = 0; i < 4; ++i) w.findChild<QLineEdit*>(QString("Text%1").arg(i + 1))->setText(values[i]);
    Save_Shot(&w, "T1Cal_Form2");
    w.findChild<QPushButton*>("Command1")->click();
  });
  relax->findChild<QAction*>("m30")->trigger();
  relax->Limits(x0, x1, y0, y1);
  EXPECT_EQ(std::vector<float>({x0, x1, y0, y1}), std::vector<float>({0.2f, 3.0f, -1.0f, 1.0f}));
  // The series as a printed list: one page.
  QString list_caption;
  tevo::test::When_Window_Shown([](QWidget* w) { return w->objectName() == "NMR1D_Form8List"; }, [&](QWidget& w) {
    list_caption = w.windowTitle();
    w.findChild<QPushButton*>("f00")->click();
  });
  relax->findChild<QAction*>("Print_List")->trigger();
  EXPECT_EQ(list_caption, "プレビュー（T1/T2 Intensity List） (1/1)");
  // m41: the page of plot and fit (T1Cal_Form8), the fit's text in its
  // block, the curve in red; without a printer "印刷実行" says so, and an
  // A4 PDF printer takes the page.
  std::vector<std::string> block;
  for (const tevo::page::Parameter_Row& row : relax->Window_Page().rows) block.push_back(row.caption);
  EXPECT_NE(std::find(block.begin(), block.end(), "k = 1.2 s-1"), block.end());
  EXPECT_NE(std::find(block.begin(), block.end(), "Start=0.25 s"), block.end());
  tevo::test::Temp_Dir dir;
  const fs::path pdf = dir / "relax.pdf";
  int printed = -2, red = 0;
  std::string said_print;
  tevo::test::When_Window_Shown([](QWidget* w) { return w->objectName() == "T1Cal_Form8"; }, [&](QWidget& w) {
    auto& form = static_cast<tevo::app::Window_Page_Form&>(w);
    red = Red(form.Preview());
    Save_Shot(&w, "T1Cal_Form8");
    if (QPrinterInfo::availablePrinterNames().isEmpty()) {
      tevo::test::When_Window_Shown([](QWidget* m) { return qobject_cast<tevo::app::FormMsg*>(m) != nullptr; },
                                    [&](QWidget& m) {
                                      said_print = m.windowTitle().toStdString();
                                      for (QLabel* l : m.findChildren<QLabel*>()) said_print += l->text().toStdString();
                                      m.findChildren<QPushButton*>().front()->click();
                                    });
      w.findChild<QPushButton*>("Command4")->click();
      EXPECT_NE(said_print.find("プリンターエラー"), std::string::npos) << said_print;
      EXPECT_NE(said_print.find("使用出来るプリンターがありません"), std::string::npos) << said_print;
    }
    printed = Print_To_Pdf(form, pdf);
    form.reject();
  });
  relax->findChild<QAction*>("m41")->trigger();
  EXPECT_GT(red, 100);
  EXPECT_EQ(printed, 0);
  EXPECT_NEAR(tevo::test::Pdf_Page_Mm(pdf).height(), 297, 1);
  Save_Shot(relax, "relax_window");
  relax->close();
}

TEST(RelaxWindow, FilesDroppedTogetherOpenAsOneSeriesAndComeBackFromTheRecentList) {
  App();
  Started_Window started;
  tevo::Session& s = started.s;
  tevo::app::Main_Window& window = started.window;
  s.settings.Set("T1 INDIV FILE", 1);
  window.Refresh_State();
  EXPECT_TRUE(window.Action("NM1D_m111")->isVisible());
  const std::string fid =
      tevo::test::Test_Data_File("bruker-data-test@1.0.0/data/unzipped/aspirin-1h/1/fid").string();
  // NMR1D_Form21 answered with the last row, then 完 了 in the FID window.
  const auto answer = [] {
    tevo::test::When_Window_Shown([](QWidget* w) { return w->objectName() == "NMR1D_Form21"; }, [](QWidget& w) {
      Save_Shot(&w, "NMR1D_Form21");
      w.findChild<QRadioButton*>("Option2")->setChecked(true);
      w.findChild<QPushButton*>("Command1")->click();
    });
    Click_When_Shown<tevo::app::Fid_Window>("Command3");
  };
  answer();
  QMimeData mime;
  mime.setUrls({QUrl::fromLocalFile(QString::fromStdString(fid)), QUrl::fromLocalFile(QString::fromStdString(fid))});
  QDropEvent drop(QPointF(200, 200), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
  // Straight to the window's handler: outside a real drag the application
  // does not deliver a drop.
  static_cast<QObject&>(window).event(&drop);
  ASSERT_EQ(s.Array_Rows, 2);
  EXPECT_EQ(s.Is_Spectrum, 1);
  const std::string joined = s.settings.Recent_Files.front();
  EXPECT_EQ(joined, tevo::relaxation::Join_Individual_Paths({fid, fid}));

  // One file, then the series again from its entry, now the second.
  s.Data_Saved = 1;
  Click_When_Shown<tevo::app::Fid_Window>("Command3");
  ASSERT_EQ(window.Open(fid), 0);
  ASSERT_EQ(s.Array_Rows, 1);
  s.Data_Saved = 1;
  answer();
  window.findChild<QAction*>("RecentFile1")->trigger();
  EXPECT_EQ(s.Array_Rows, 2);
  EXPECT_EQ(s.settings.Recent_Files.front(), joined);
  s.Data_Saved = 1;
  EXPECT_TRUE(window.Try_Exit());
}

}  // namespace

TEST(StyleDialog, EditViewLineWidthRepaintsAtOnceAndOkOutlivesARestart) {
  App();
  Started_Window started(tevo::test::Test_Data_File("bruker-data-test@1.0.0/data/unzipped/aspirin-1h/1/fid").string());
  tevo::Session& s = started.s;
  tevo::app::Main_Window& window = started.window;
  ASSERT_TRUE(started.Process_Command_Line());
  const int thin = Ink(window.Plot());

  // A wider spectrum line inks more of the plot while the window is open; OK
  // keeps it. A second visit's change is undone by キャンセル.
  int wide = 0;
  const auto drive = [&](double width, const char* button, const char* shot) {
    tevo::test::When_Window_Shown([](QWidget* w) { return w->objectName() == "NMR1D_Form7_0"; },
                                  [&, width, button, shot](QWidget& w) {
                                    auto* spin = w.findChild<QDoubleSpinBox*>("DISP SPEC WIDTH");
                                    ASSERT_NE(spin, nullptr);
                                    w.findChild<QTabWidget*>()->setCurrentIndex(1);
                                    spin->setValue(width);
                                    QApplication::processEvents();
                                    if (shot) Save_Shot(&w, shot);
                                    wide = Ink(window.Plot());
                                    w.findChild<QPushButton*>(button)->click();
                                  });
    window.Action("m331")->trigger();
  };
  ASSERT_TRUE(window.Action("m331")->isEnabled());
  drive(4, "Command1", "NMR1D_Form7_0");
  EXPECT_GT(wide, thin * 3 / 2);
  EXPECT_EQ(s.settings.Real("DISP SPEC WIDTH"), 4);
  drive(1, "Command2", nullptr);
  EXPECT_LT(wide, thin * 11 / 10);
  EXPECT_EQ(s.settings.Real("DISP SPEC WIDTH"), 4);
  Save_Shot(&window, "NMR1D_Form7_0_plot");
  // The print styles and the environment open on their values; キャンセル.
  for (const auto& [id, form] : {std::pair{"m332", "NMR1D_Form7_1"}, std::pair{"m32", "NMR1D_Form3"}}) {
    tevo::test::When_Window_Shown([form = form](QWidget* w) { return w->objectName() == form; },
                                  [form = form](QWidget& w) {
                                    Save_Shot(&w, form);
                                    w.findChild<QPushButton*>("Command2")->click();
                                  });
    window.Action(id)->trigger();
  }

  tevo::Session restarted;
  restarted.App_Path = s.App_Path;
  tevo::session::Read_Settings(restarted);
  EXPECT_EQ(restarted.settings.Real("DISP SPEC WIDTH"), 4);
  s.Data_Saved = 1;
  EXPECT_TRUE(window.Try_Exit());
}
