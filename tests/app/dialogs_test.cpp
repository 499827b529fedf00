// The thin dialogs driven offscreen: fields typed, buttons pressed by their
// control names, and the session checked against what the core computes;
// then the windows that open them: the processing window's predictions, the
// questions of the readers, and the main window's reference mode and menus.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QDoubleSpinBox>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPrinter>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTableWidget>
#include <QStackedWidget>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <cmath>
#include <complex>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>

#include "basic_toolbar.h"
#include "bitmap_panel.h"
#include "datafiles/bruker.h"
#include "datafiles/csv_import.h"
#include "datafiles/native.h"
#include "datafiles/open_file.h"
#include "display/style.h"
#include "display/view_commands.h"
#include "editing/instrument_table.h"
#include "editing/reference.h"
#include "fid_window.h"
#include "grid_dialog.h"
#include "hold_button.h"
#include "instrument_dialogs.h"
#include "lp_dialog.h"
#include "main_window.h"
#include "list_form.h"
#include "page_form.h"
#include "parameter_dialog.h"
#include "plot_widget.h"
#include "printer_dialog.h"
#include "qt_ui.h"
#include "platform/ui.h"
#include "range_dialog.h"
#include "reference_panel.h"
#include "session/command_flow.h"
#include "session/session.h"
#include "signal/fid_processing.h"
#include "signal/synthetic.h"
#include "app_support.h"
#include "support/test_support.h"

namespace {

using tevo::test::App;

template <class W>
W* Child(QWidget& parent, const char* name) {
  W* w = parent.findChild<W*>(name);
  EXPECT_NE(w, nullptr) << name;
  return w;
}

// Types `text` into a field and leaves it with Return, as the operator does.
void Type(QWidget& parent, const char* name, const QString& text) {
  QLineEdit* e = Child<QLineEdit>(parent, name);
  e->selectAll();
  QTest::keyClicks(e, text);
  QTest::keyClick(e, Qt::Key_Return);
}

void Press(QWidget& parent, const char* name) { Child<QPushButton>(parent, name)->click(); }

QString Text(QWidget& parent, const char* name) { return Child<QLineEdit>(parent, name)->text().trimmed(); }

// Runs `act` on the top-level window `name` as soon as it is shown: a modal
// window is driven from inside its own event loop. The flag tells that it
// was shown at all.
std::shared_ptr<bool> When_Shown(const char* name, std::function<void(QWidget&)> act) {
  auto shown = std::make_shared<bool>(false);
  QTimer::singleShot(0, [name, act, shown] {
    for (QWidget* w : QApplication::topLevelWidgets()) {
      if (w->objectName() == name && w->isVisible()) {
        *shown = true;
        act(*w);
        return;
      }
    }
  });
  return shown;
}

constexpr int kN = 1024;
constexpr double kObs = 400.13;  // MHz, carrier at the centre
constexpr double kSw = 8000.0;  // Hz

// Two slowly decaying lines, so that the predicted tail is well above the noise.
const std::vector<tevo::test::Line> kLines = {{250, 1.0, 1.0}, {-520, 0.5, 0.8, 45}};

// A 1H spectrum of kN points with one Lorentzian at point `centre`, the
// centre point N/2 at 0 ppm.
void Make_Spectrum(tevo::Session& s, tevo::platform::Scripted_Ui& ui, int centre) {
  ui.quiet = true;
  s.ui = &ui;
  tevo::Alloc_Point_Arrays(s, kN);
  s.Spec_Points = kN;
  s.Is_Spectrum = 1;
  s.Observe_Frequency = kObs;
  s.Param.FREQU = static_cast<float>(kSw);
  s.Param.RESOL = static_cast<float>(kSw / kN);
  s.Param.OBNUC = "1H";
  s.Param.SLVNT = "CDCl3";
  s.Param.Instrument_Id = "JNM400";
  s.Param.SMTMS = kN / 2;
  s.Param.SMEXR = 0;
  s.Spectrum_Frequency = kObs;
  tevo::editing::Axis_From_Reference(s);
  for (int i = 0; i < kN; ++i) {
    const double d = i - centre;
    s.Spec_Re(i) = s.Ft_Re(i) = static_cast<float>(10.0 / (1.0 + d * d / 4.0));
  }
  tevo::Build_Disp_Arrays(s, 0);
  s.X_Left = s.Spec_Axis[kN - 1];
  s.X_Right = s.Spec_Axis[0];
}

TEST(Dialogs, LinearPredictionTakesValidValuesRestoresRefusedOnesAndCancels) {
  App();
  tevo::Session s;
  s.Base_Point_Count = 4096;
  {
    tevo::app::Lp_Dialog d(s);
    EXPECT_EQ(Text(d, "Text4"), "32");
    Type(d, "Text4", "19");  // below 20: the old order comes back
    EXPECT_EQ(Text(d, "Text4"), "32");
    EXPECT_EQ(s.LP_Order, 32);
    Type(d, "Text4", "40");
    Type(d, "Text2", "39");  // fewer rows than the order
    EXPECT_EQ(Text(d, "Text2"), "256");
    // The start may reach N + 1 - p - m = 4096 + 1 - 40 - 256 = 3801.
    Type(d, "Text3", "3802");
    EXPECT_EQ(Text(d, "Text3"), "1");
    Type(d, "Text3", "3801");
    Type(d, "Text1", "31");  // backward points below 31 only
    EXPECT_EQ(Text(d, "Text1"), "4");
    Type(d, "Text1", "abc");
    EXPECT_EQ(Text(d, "Text1"), "4");
    Child<QCheckBox>(d, "Check1")->setChecked(false);
    Press(d, "Command1");
    EXPECT_EQ(d.result(), QDialog::Accepted);
  }
  EXPECT_EQ(s.LP_Order, 40);
  EXPECT_EQ(s.LP_Points, 256);
  EXPECT_EQ(s.LP_Start, 3801);
  EXPECT_EQ(s.LP_Back_Points, 4);
  EXPECT_EQ(s.LP_Stability, 0);

  // Values taken while typing are given back by キャンセル.
  {
    tevo::app::Lp_Dialog d(s);
    Type(d, "Text4", "60");
    Type(d, "Text1", "10");
    Child<QCheckBox>(d, "Check1")->setChecked(true);
    EXPECT_EQ(s.LP_Order, 60);
    Press(d, "Command2");
    EXPECT_EQ(d.result(), QDialog::Rejected);
  }
  EXPECT_EQ(s.LP_Order, 40);
  EXPECT_EQ(s.LP_Back_Points, 4);
  EXPECT_EQ(s.LP_Stability, 0);
}

TEST(Dialogs, RangeDialogConvertsUnitsAndKeepsPresets) {
  App();
  tevo::Session s;
  tevo::platform::Scripted_Ui ui;
  Make_Spectrum(s, ui, 700);
  s.Spectrum_Frequency = 400;  // round numbers for the units
  s.X_Left = 10;
  s.X_Right = 0;
  {
    tevo::app::Range_Dialog d(s);
    EXPECT_TRUE(Child<QRadioButton>(d, "Option1")->isChecked());
    EXPECT_DOUBLE_EQ(Text(d, "Text1").toDouble(), 10.0);
    Child<QRadioButton>(d, "Option2")->setChecked(true);  // Hz = ppm x 400
    EXPECT_DOUBLE_EQ(Text(d, "Text1").toDouble(), 4000.0);
    EXPECT_DOUBLE_EQ(Text(d, "Text2").toDouble(), 0.0);
    Child<QRadioButton>(d, "Option3")->setChecked(true);
    EXPECT_DOUBLE_EQ(Text(d, "Text1").toDouble(), 4.0);
    Child<QRadioButton>(d, "Option2")->setChecked(true);
    Type(d, "Text1", "2000");
    Type(d, "Text2", "400");
    Press(d, "Command1");
    EXPECT_EQ(d.result(), QDialog::Accepted);
  }
  // The limits arrive in the core in the unit chosen; ordering and widening
  // are the core's and tested there.
  EXPECT_EQ(s.Axis_Unit, 1);
  EXPECT_NEAR(s.X_Left, 5.0, 1e-6);
  EXPECT_NEAR(s.X_Right, 1.0, 1e-6);
  ASSERT_FALSE(s.View_History.empty());  // the old view can be gone back to

  // キャンセル changes nothing.
  {
    tevo::app::Range_Dialog d(s);
    Type(d, "Text1", "3");
    Type(d, "Text2", "3");
    Press(d, "Command2");
  }
  EXPECT_NEAR(s.X_Left, 5.0, 1e-6);
  EXPECT_EQ(s.Axis_Unit, 1);

  // A preset stored in kHz lands in the 1H Hz pair as Hz and comes back.
  {
    tevo::app::Range_Dialog d(s);
    Child<QRadioButton>(d, "Option3")->setChecked(true);
    Type(d, "Text1", "2.5");
    Type(d, "Text2", "0.5");
    Press(d, "Command6");  // store as "Default値-2"
    EXPECT_DOUBLE_EQ(s.settings.Real("X-L PRESET 2 HZ"), 2500.0);
    EXPECT_DOUBLE_EQ(s.settings.Real("X-R PRESET 2 HZ"), 500.0);
    Child<QRadioButton>(d, "Option2")->setChecked(true);
    Type(d, "Text1", "0");
    Type(d, "Text2", "0");
    Press(d, "Command4");  // load "Default値-2" in Hz
    EXPECT_DOUBLE_EQ(Text(d, "Text1").toDouble(), 2500.0);
    EXPECT_DOUBLE_EQ(Text(d, "Text2").toDouble(), 500.0);
    Press(d, "Command1");
  }
  EXPECT_NEAR(s.X_Left, 2500.0 / 400, 1e-6);
  EXPECT_NEAR(s.X_Right, 500.0 / 400, 1e-6);
}

TEST(Dialogs, GridSettingsStoredAndBadStepRefused) {
  App();
  tevo::Session s;
  {
    tevo::app::Grid_Dialog d(s);
    Child<QRadioButton>(d, "Option1")->setChecked(true);
    Child<QCheckBox>(d, "Check1")->setChecked(false);
    EXPECT_TRUE(Child<QLineEdit>(d, "Text1")->isEnabled());
    Type(d, "Text1", "0.5");
    Type(d, "Text3", "2");
    Press(d, "Command1");
    EXPECT_EQ(d.result(), QDialog::Accepted);
  }
  EXPECT_EQ(s.settings.Int("DISPLAY GRID"), 1);
  EXPECT_EQ(s.settings.Int("GRID X AUTO"), 0);
  EXPECT_DOUBLE_EQ(s.settings.Real("GRID X INC"), 0.5);
  EXPECT_DOUBLE_EQ(s.settings.Real("DISP GRID WIDTH"), 2.0);
  {
    tevo::app::Grid_Dialog d(s);
    EXPECT_TRUE(Child<QRadioButton>(d, "Option1")->isChecked());
    Child<QRadioButton>(d, "Option2")->setChecked(true);
    Type(d, "Text1", "-1");  // a fixed step must be positive
    Press(d, "Command1");
    EXPECT_NE(d.result(), QDialog::Accepted);
  }
  EXPECT_EQ(s.settings.Int("DISPLAY GRID"), 1);
  EXPECT_DOUBLE_EQ(s.settings.Real("GRID X INC"), 0.5);
  {
    tevo::app::Grid_Dialog d(s);
    Child<QRadioButton>(d, "Option2")->setChecked(true);
    Press(d, "Command1");
  }
  EXPECT_EQ(s.settings.Int("DISPLAY GRID"), 0);
}

TEST(Dialogs, ReferencePanelMovesThePeakToTheTypedShiftAndCancelRestores) {
  App();
  tevo::Session s;
  tevo::platform::Scripted_Ui ui;
  Make_Spectrum(s, ui, 700);
  const std::vector<float> axis = s.Spec_Axis;
  ASSERT_TRUE(tevo::editing::m21_Click(s));
  tevo::app::Reference_Panel panel(s);
  QSignalSpy changed(&panel, &tevo::app::Reference_Panel::changed);
  QSignalSpy finished(&panel, &tevo::app::Reference_Panel::finished);
  Type(panel, "RefText1", "7.26");
  Type(panel, "RefText1", "x");  // not a number: the last value comes back
  EXPECT_NEAR(Text(panel, "RefText1").toDouble(), 7.26, 1e-9);
  panel.Range_Dragged(720, 680);
  EXPECT_EQ(changed.count(), 1);
  // The summit (point 700) reads 7.26 ppm, and the 0 ppm frequency follows
  // from the summit's offset from the carrier: 700/1024 - 0.5 of the width.
  EXPECT_NEAR(s.Spec_Axis[700], 7.26, 1e-4);
  const double f0 = ((700.0 / kN - 0.5) * kSw * 1e-6 + kObs) / (7.26e-6 + 1);
  EXPECT_NEAR(s.Spectrum_Frequency, f0, 1e-6);
  // A point 100 further lies 100 x RESOL Hz higher.
  EXPECT_NEAR(s.Spec_Axis[800] - s.Spec_Axis[700], 100 * kSw / kN / f0, 1e-4);

  Press(panel, "RefCommand2");
  EXPECT_EQ(finished.count(), 1);
  EXPECT_EQ(s.Spec_Axis, axis);
  EXPECT_DOUBLE_EQ(s.Spectrum_Frequency, kObs);
}

TEST(Dialogs, InstrumentTableDeletionsIdEntryAndReferenceFromARow) {
  App();
  tevo::Session s;
  tevo::platform::Scripted_Ui ui;
  Make_Spectrum(s, ui, 700);
  s.Instr_Tab = {{"JNM400", "CDCL3", "1H", 400.1302, 400.15, "", ""},
                 {"jnm400", "DMSO", "1H", 400.1310, 400.15, "", ""},
                 {"JNM500", "CDCL3", "1H", 500.1600, 500.15, "", ""}};
  s.settings.Instrument_Ids = {"JNM400", "JNM500"};

  // The pick: its own row (ID, solvent, nucleus in any case, 400.15 within
  // 0.05 MHz of 400.13) is pre-selected; OK takes its 0 ppm frequency.
  {
    tevo::app::Instrument_Pick_Dialog d(s);
    auto* list = Child<QListWidget>(d, "List1");
    ASSERT_EQ(list->count(), 3);
    EXPECT_EQ(list->currentRow(), 0);
    Press(d, "Command1");
    EXPECT_EQ(d.result(), QDialog::Accepted);
  }
  EXPECT_DOUBLE_EQ(s.Spectrum_Frequency, 400.1302);
  // Another solvent asks first; No keeps the window and the reference.
  {
    tevo::app::Instrument_Pick_Dialog d(s);
    Child<QListWidget>(d, "List1")->setCurrentRow(1);
    ui.button_answers = {2};
    Press(d, "Command1");
    EXPECT_NE(d.result(), QDialog::Accepted);
    EXPECT_DOUBLE_EQ(s.Spectrum_Frequency, 400.1302);
    ASSERT_FALSE(ui.shown.empty());
    EXPECT_EQ(ui.shown.back().title, "核種エラー");
    ui.button_answers = {1};
    Press(d, "Command1");
    EXPECT_EQ(d.result(), QDialog::Accepted);
  }
  EXPECT_DOUBLE_EQ(s.Spectrum_Frequency, 400.1310);

  // The table window: a row and an ID deleted after their questions.
  {
    tevo::app::Instrument_Table_Dialog d(s);
    auto* table = Child<QTableWidget>(d, "Grid1");
    ASSERT_EQ(table->rowCount(), 3);
    EXPECT_EQ(table->horizontalHeaderItem(3)->text().toStdString(), "0ppmの周波数");
    EXPECT_EQ(table->item(2, 3)->text().trimmed().toStdString(), "500.16");
    table->setCurrentCell(1, 0);
    ui.button_answers = {2};
    Press(d, "Command4");
    EXPECT_EQ(table->rowCount(), 3);
    ui.button_answers = {1};
    Press(d, "Command4");
    EXPECT_EQ(table->rowCount(), 2);
    EXPECT_EQ(ui.shown.back().title, "装置 Dataの削除");
    auto* ids = Child<QListWidget>(d, "List1");
    ids->setCurrentRow(1);
    ui.button_answers = {1};
    Press(d, "Command3");
    EXPECT_EQ(ids->count(), 1);
    EXPECT_EQ(ui.shown.back().title, "装置IDの削除");
  }
  ASSERT_EQ(s.Instr_Tab.size(), 2u);
  EXPECT_EQ(s.Instr_Tab[1].Id, "JNM500");
  EXPECT_EQ(s.settings.Instrument_Ids, std::vector<std::string>{"JNM400"});

  // The ID entry stores the typed ID in upper case; キャンセル leaves it.
  {
    tevo::app::Instrument_Id_Dialog d(s);
    EXPECT_EQ(Text(d, "Text1").toStdString(), "JNM400");
    Type(d, "Text1", " jnm600 ");
    Press(d, "Command2");
  }
  EXPECT_EQ(s.Param.Instrument_Id, "JNM400");
  {
    tevo::app::Instrument_Id_Dialog d(s);
    Type(d, "Text1", " jnm600 ");
    Press(d, "Command1");
  }
  EXPECT_EQ(s.Param.Instrument_Id, "JNM600");
}

// A FID of two damped lines with 1 % noise; the work file holds it as read.
void Make_Fid(tevo::Session& s, const tevo::test::Temp_Dir& dir) {
  tevo::test::Fill_Fid(s, 1024, 1024, 4096, 400, kLines, 1e-2, 5);
  s.Fid_Work_File = (dir / "fid.dat").string();
  ASSERT_EQ(tevo::signal::Save_Fid_Work_File(s), 0);
  s.Auto_Phase_Off = 1;
}

// The stored sample t of the noiseless lines (the FID is kept conjugated).
std::complex<double> True_Sample(int32_t t) { return std::conj(tevo::test::Line_Sample(kLines, 4096, t)); }

TEST(Wiring, ProcessingWindowPredictionsAskTheirParametersFirst) {
  App();
  tevo::test::Temp_Dir dir;
  tevo::Session s;
  Make_Fid(s, dir);
  for (int t = 0; t < 6; ++t) {  // a ringing start
    s.Fid_Re(t) = 5;
    s.Fid_Im(t) = -3;
  }
  tevo::app::Fid_Window w(s);
  const auto parameters = [](QWidget& d) {
    Type(d, "Text4", "20");
    Type(d, "Text2", "900");
    Type(d, "Text1", "6");
    Child<QCheckBox>(d, "Check1")->setChecked(false);
    Press(d, "Command1");
  };

  // キャンセル in the parameters runs nothing.
  auto shown = When_Shown("NMR1D_Form13", [](QWidget& d) { Press(d, "Command2"); });
  w.Button("Command6")->click();
  EXPECT_TRUE(*shown);
  EXPECT_EQ(s.Fid_Re(0), 5.0f);
  shown = When_Shown("NMR1D_Form13", [](QWidget& d) { Press(d, "Command2"); });
  w.Button("Command5")->click();
  EXPECT_TRUE(*shown);
  EXPECT_EQ(s.LP_Fill_Factor, 1);
  EXPECT_EQ(s.Spec_Points, 1024);

  // LP Back with order 20 over 900 rows rebuilds the six points within 3 %
  // of the noiseless lines; N stays.
  shown = When_Shown("NMR1D_Form13", parameters);
  w.Button("Command6")->click();
  ASSERT_TRUE(*shown);
  EXPECT_EQ(s.LP_Back_Points, 6);
  EXPECT_EQ(s.Spec_Points, 1024);
  for (int t = 0; t < 6; ++t) {
    const std::complex<double> want = True_Sample(t);
    EXPECT_LT(std::abs(std::complex<double>(s.Fid_Re(t), s.Fid_Im(t)) - want) / std::abs(want), 0.03) << t;
  }

  // LP Fill doubles N from the work file and predicts the tail; zero fill
  // is off afterwards.
  shown = When_Shown("NMR1D_Form13", parameters);
  w.Button("Command5")->click();
  ASSERT_TRUE(*shown);
  EXPECT_EQ(s.LP_Fill_Factor, 2);
  ASSERT_EQ(s.Spec_Points, 2048);
  EXPECT_FALSE(w.Button("Command1")->isEnabled());
  double err = 0, ref = 0;
  for (int32_t t = 1024; t < 2048; ++t) {
    err += std::norm(std::complex<double>(s.Fid_Re(t), s.Fid_Im(t)) - True_Sample(t));
    ref += std::norm(True_Sample(t));
  }
  EXPECT_LT(std::sqrt(err / ref), 0.08);  // 4 % when written
  RecordProperty("lp_fill_tail_error", std::to_string(std::sqrt(err / ref)));
}

TEST(Wiring, ReaderQuestionsShowTheirWindows) {
  App();
  namespace fs = std::filesystem;
  tevo::test::Temp_Dir dir;
  const fs::path source = tevo::test::Test_Data_File("bruker-data-test@1.0.0/data/unzipped/aspirin-1h/1");
  fs::copy(source, dir / "1", fs::copy_options::recursive);
  // The same FID as if recorded with one converter: ##$AQ_mod= 2.
  std::string acqus = tevo::test::Read_Text(dir / "1/acqus");
  const auto at = acqus.find("##$AQ_mod= 1");
  ASSERT_NE(at, std::string::npos);
  acqus.replace(at, 12, "##$AQ_mod= 2");
  tevo::test::Write_Text(dir / "1/acqus", acqus);

  tevo::app::Qt_Ui ui;
  const auto read = [&](std::function<void(QWidget&)> act, int& status) {
    tevo::Session s;
    s.ui = &ui;
    auto shown = When_Shown("NMR1D_Form14", act);
    status = tevo::datafiles::Read_Bruker_Fid(s, (dir / "1").string());
    EXPECT_TRUE(*shown);
    return s.Acq_Mode;
  };
  int status = -9;
  // Single preset; OK keeps it, the correction is wanted.
  EXPECT_EQ(read(
                [](QWidget& d) {
                  EXPECT_TRUE(Child<QRadioButton>(d, "Option1")->isChecked());
                  Press(d, "Command1");
                },
                status),
            1);
  EXPECT_EQ(status, 0);
  // The operator knows it was two converters.
  EXPECT_EQ(read(
                [](QWidget& d) {
                  Child<QRadioButton>(d, "Option2")->setChecked(true);
                  Press(d, "Command1");
                },
                status),
            0);
  EXPECT_EQ(status, 0);
  // キャンセル abandons the reading.
  read([](QWidget& d) { Press(d, "Command2"); }, status);
  EXPECT_EQ(status, 1);

  // The corrected FID: the processing window's 完 了 and the command line's
  // processing give the very same points, unlike the uncorrected reading.
  const auto spectrum = [&](int16_t acq_mode, bool window) {
    tevo::platform::Scripted_Ui quiet;
    quiet.quiet = true;
    tevo::Session s;
    s.ui = &quiet;
    EXPECT_EQ(tevo::datafiles::NM1D_m11_Click(s, {(dir / "1/fid").string(), {}}), 0);
    s.Acq_Mode = acq_mode;
    if (window) {
      tevo::app::Fid_Window w(s);
      w.Button("Command3")->click();
    } else {
      tevo::signal::Process_Report report;
      EXPECT_EQ(tevo::signal::Process_Fid(s, {}, report), 0);
    }
    return std::vector<float>(&s.Spec_Re(0), &s.Spec_Re(0) + s.Spec_Points);
  };
  const std::vector<float> in_window = spectrum(1, true);
  EXPECT_EQ(in_window, spectrum(1, false));
  EXPECT_NE(in_window, spectrum(0, false));

  // The instrument ID question is Form107: known IDs, the reader's name
  // preset, the answer in upper case.
  tevo::Session s;
  s.settings.Instrument_Ids = {"JNM400", "AV600"};
  ui.Set_Session(&s);
  auto shown = When_Shown("Form107", [](QWidget& d) {
    EXPECT_EQ(Text(d, "Text1").toStdString(), "ecz400s");
    Type(d, "Text1", " av600b ");
    Press(d, "Command1");
  });
  EXPECT_EQ(ui.Ask_Text("Instrument ID", "Instrument ID", "ecz400s"), std::optional<std::string>("AV600B"));
  EXPECT_TRUE(*shown);
  When_Shown("Form107", [](QWidget& d) { Press(d, "Command2"); });
  EXPECT_EQ(ui.Ask_Text("Instrument ID", "Instrument ID", "x"), std::nullopt);
}

TEST(Wiring, MainWindowReferenceModeRangeGridAndInstrumentMenus) {
  App();
  tevo::Session s;
  tevo::app::Main_Window w(s);
  EXPECT_FALSE(w.Action("m21")->isEnabled());  // no data
  EXPECT_FALSE(w.Action("m31")->isEnabled());
  EXPECT_FALSE(w.Action("m30")->isEnabled());
  EXPECT_TRUE(w.Action("m44")->isEnabled());
  tevo::platform::Scripted_Ui ui;
  Make_Spectrum(s, ui, 700);
  w.Refresh_State();
  EXPECT_TRUE(w.Action("m21")->isEnabled());
  EXPECT_TRUE(w.Action("m31")->isEnabled());
  EXPECT_TRUE(w.Action("m30")->isEnabled());

  // The mode: its panel, its check mark, "Ref値" from SMEXR.
  w.Action("m21")->trigger();
  EXPECT_EQ(s.Mode.Edit_Mode, tevo::session::Mode_Reference);
  EXPECT_TRUE(w.Action("m21")->isChecked());
  EXPECT_EQ(w.findChild<QStackedWidget*>("ToolPanels")->currentWidget()->objectName(), "RefToolbar");
  EXPECT_DOUBLE_EQ(Text(w, "RefText1").toDouble(), 0.0);

  // A click, then a drag over the peak with the mouse.
  w.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&w));
  tevo::app::Plot_Widget* plot = w.Plot();
  plot->repaint();
  const auto& f = plot->Frame();
  ASSERT_GT(f.Frame_Right, f.Frame_Left);
  const auto pixel = [&](double ppm) {
    return int(std::lround(f.Frame_Left + (ppm - s.X_Left) / (s.X_Right - s.X_Left) * (f.Frame_Right - f.Frame_Left)));
  };
  const int y = (f.Frame_Top + f.Frame_Base) / 2;
  // A click away from the peak: the display point under it, and no summit,
  // takes the typed value; the view stays on the same points.
  Type(w, "RefText1", "2");
  const int click_x = pixel(s.Spec_Axis[300]);
  const int32_t clicked = tevo::display::Pixel_To_Data(s, f, click_x, y).index;
  QTest::mouseClick(plot, Qt::LeftButton, {}, QPoint(click_x, y));
  EXPECT_NEAR(s.Disp_X[clicked], 2.0, 1e-5);
  EXPECT_EQ(s.Param.SMEXR, 2.0f);
  EXPECT_EQ(tevo::display::Pixel_To_Data(s, plot->Frame(), click_x, y).index, clicked);
  EXPECT_EQ(s.Mode.Mode_Unchanged, 0);
  // The plot shows the marks: lines rising from the axis at the clicked
  // column and at the old reference point N/2, and none between them.
  const QImage shot = plot->grab().toImage();
  const int mid_y = (f.Marker_Top + f.Frame_Base) / 2;
  const auto marked = [&](int x) {
    for (int dx = -1; dx <= 1; ++dx)
      if (shot.pixelColor(x + dx, mid_y) != QColor(Qt::white)) return true;
    return false;
  };
  EXPECT_TRUE(marked(click_x));
  EXPECT_TRUE(marked(pixel(s.Spec_Axis[kN / 2])));
  EXPECT_FALSE(marked(pixel(s.Spec_Axis[400])));

  Type(w, "RefText1", "7.26");
  QTest::mousePress(plot, Qt::LeftButton, {}, QPoint(pixel(s.Spec_Axis[680]), y));
  QTest::mouseMove(plot, QPoint(pixel(s.Spec_Axis[720]), y));
  QTest::mouseRelease(plot, Qt::LeftButton, {}, QPoint(pixel(s.Spec_Axis[720]), y));
  EXPECT_NEAR(s.Spec_Axis[700], 7.26, 1e-4);
  EXPECT_EQ(s.Mode.Mode_Unchanged, 0);

  // "装置データで設定": the data's own row is offered; its 0 ppm frequency
  // is taken and the summit, still the reference point, reads what the
  // relation of frequencies gives.
  s.Instr_Tab = {{"JNM500", "CDCL3", "1H", 500.16, 500.15, "", ""},
                 {"JNM400", "CDCL3", "1H", 400.1302, 400.15, "", ""}};
  auto shown = When_Shown("Form109", [](QWidget& d) {
    EXPECT_EQ(Child<QListWidget>(d, "List1")->currentRow(), 1);
    Press(d, "Command1");
  });
  Press(w, "RefCommand3");
  EXPECT_TRUE(*shown);
  EXPECT_DOUBLE_EQ(s.Spectrum_Frequency, 400.1302);
  const double summit = (((700.0 / kN - 0.5) * kSw * 1e-6 + kObs) / 400.1302 - 1) * 1e6;
  EXPECT_NEAR(s.Spec_Axis[700], summit, 1e-4);

  // Another mode asks first: Cancel stays, Yes confirms and goes on.
  ui.button_answers = {3};
  w.Action("m22")->trigger();
  EXPECT_EQ(s.Mode.Edit_Mode, tevo::session::Mode_Reference);
  ASSERT_FALSE(ui.shown.empty());
  EXPECT_EQ(ui.shown.back().text, "Reference設定を実行しますか");
  ui.button_answers = {1};
  w.Action("m22")->trigger();
  EXPECT_EQ(s.Mode.Edit_Mode, tevo::session::Mode_Phase);
  EXPECT_FALSE(w.Action("m21")->isChecked());
  EXPECT_NEAR(s.Spec_Axis[700], summit, 1e-4);
  EXPECT_NEAR(s.settings.Real("REF INITITAL"), summit, 1e-4);
  EXPECT_EQ(s.Data_Saved, 0);

  // The range window from the menu and from button 5 of the basic panel.
  shown = When_Shown("NMR1D_Form31", [](QWidget& d) {
    Child<QRadioButton>(d, "Option1")->setChecked(true);
    Type(d, "Text1", "9");
    Type(d, "Text2", "3");
    Press(d, "Command1");
  });
  w.Action("m31")->trigger();
  EXPECT_TRUE(*shown);
  EXPECT_NEAR(s.X_Left, 9.0, 1e-6);
  EXPECT_NEAR(s.X_Right, 3.0, 1e-6);
  shown = When_Shown("NMR1D_Form31", [](QWidget& d) { Press(d, "Command2"); });
  w.Basic()->Button(5)->click();
  EXPECT_TRUE(*shown);

  // The grid window stores its settings.
  shown = When_Shown("NMR1D_Form33", [](QWidget& d) {
    Child<QRadioButton>(d, "Option1")->setChecked(true);
    Type(d, "Text3", "1");
    Press(d, "Command1");
  });
  w.Action("m30")->trigger();
  EXPECT_TRUE(*shown);
  EXPECT_EQ(s.settings.Int("DISPLAY GRID"), 1);

  // The instrument table leaves the mode first (unchanged: quietly).
  shown = When_Shown("Form108", [](QWidget& d) {
    EXPECT_EQ(Child<QTableWidget>(d, "Grid1")->rowCount(), 2);
    Press(d, "Command1");
  });
  w.Action("m44")->trigger();
  EXPECT_TRUE(*shown);
  EXPECT_EQ(s.Mode.Edit_Mode, tevo::session::Mode_Basic);
  w.hide();
}

// A line of height 4 and half-width 20 points (about 0.39 ppm) at `ppm`.
double Broad_Line(double x, double ppm) {
  const double w = 20 * kSw / kN / kObs;
  return 4.0 / (1.0 + (x - ppm) * (x - ppm) / (w * w));
}

TEST(Wiring, DifferenceAndDeptWindowsRecomputeAtEachStepAndCancelRestores) {
  App();
  tevo::Session s;
  tevo::app::Main_Window w(s);
  tevo::platform::Scripted_Ui ui;
  Make_Spectrum(s, ui, 700);
  tevo::Update_Scale_Values(s);
  s.Y_Offset = 0.45f;  // room for the negative line of the difference
  w.Refresh_State();
  EXPECT_FALSE(w.Action("m271")->isEnabled());  // no slot holds data
  // Slots 1 .. 3: broad lines on the main axis, only slot 1 drawn.
  for (int k = 1; k <= 3; ++k) {
    tevo::Overlay_Slot& o = s.Overlay[static_cast<std::size_t>(k)];
    o.Slot_Points = kN;
    o.Slot_X = s.Spec_Axis;
    for (int i = 0; i < kN; ++i) o.Slot_Y.push_back(static_cast<float>(Broad_Line(s.Spec_Axis[i], s.Spec_Axis[560 + 20 * k])));
    o.Slot_Show = k == 1;
    o.Slot_Max_Abs = 4;
    o.Slot_Y_Full = s.Y_Full_Scale;
  }
  w.Refresh_State();
  ASSERT_TRUE(w.Action("m271")->isEnabled());
  ASSERT_TRUE(w.Action("m272")->isEnabled());
  w.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&w));
  const double centre = s.Spec_Axis[580];
  // The difference read at point i: the main spectrum less the slot's line
  // moved up by the shift and scaled.
  const auto expect_difference = [&](double shift, double mag) {
    for (int i : {540, 575, 580, 600, 700})
      EXPECT_NEAR(s.Spec_Re(i), s.Ft_Re(i) - mag * Broad_Line(s.Spec_Axis[i] - shift, centre), 4e-3) << i;
  };

  // Choosing slot 1 ("2") shows the difference; a click on a step button
  // moves the shift by 0.01 ppm, one on MagUP scales by 1.1, and 完了 keeps.
  auto shown = When_Shown("NMR1D_Form61", [&](QWidget& d) {
    auto* combo = Child<QComboBox>(d, "Combo1");
    ASSERT_EQ(combo->count(), 4);
    EXPECT_EQ(combo->currentText(), "なし");
    combo->setCurrentIndex(0);
    EXPECT_TRUE(Child<QCheckBox>(d, "Check1")->isChecked());
    expect_difference(0, 1);
    QTest::mouseClick(Child<tevo::app::Hold_Button>(d, "ShiftLeft"), Qt::LeftButton);
    QTest::mouseClick(Child<tevo::app::Hold_Button>(d, "MagUP"), Qt::LeftButton);
    EXPECT_FLOAT_EQ(s.Diff_Shift, 0.01f);
    EXPECT_FLOAT_EQ(s.Diff_Mag, 1.1f);
    EXPECT_EQ(Text(d, "Text1"), "0.0100");
    expect_difference(0.01, 1.1);
    w.repaint();
    QDir().mkpath(QCoreApplication::applicationDirPath() + "/screenshots");
    w.grab().save(QCoreApplication::applicationDirPath() + "/screenshots/Difference_Spectrum.png");
    Press(d, "Command1");
  });
  s.Data_Saved = 1;
  w.Action("m271")->trigger();
  ASSERT_TRUE(*shown);
  EXPECT_EQ(s.Data_Saved, 0);
  expect_difference(0.01, 1.1);

  // Opened again it shows the difference; キャンセル answered No stays,
  // answered Yes brings back the values it was opened with.
  shown = When_Shown("NMR1D_Form61", [&](QWidget& d) {
    EXPECT_EQ(Text(d, "Text2"), "1.1000");
    QTest::mouseClick(Child<tevo::app::Hold_Button>(d, "ShiftRightFine"), Qt::LeftButton);
    Child<QCheckBox>(d, "Check1")->click();
    EXPECT_FLOAT_EQ(s.Diff_Shift, 0.0099f);
    EXPECT_EQ(s.Spec_Re(580), s.Ft_Re(580));  // shown off
    ui.button_answers = {2, 1};
    Press(d, "Command2");
    EXPECT_TRUE(d.isVisible());
    Press(d, "Command2");
    EXPECT_EQ(ui.shown.back().text.rfind("差スペクトルの変更を元に", 0), 0u);
  });
  w.Action("m271")->trigger();
  ASSERT_TRUE(*shown);
  EXPECT_FLOAT_EQ(s.Diff_Shift, 0.01f);
  expect_difference(0.01, 1.1);

  // DEPT: a step of CH2_DEPT45_UP gives the CH2 sum (1.01·M − S3) / 2 at
  // once; キャンセル returns to 1.0 and to the plain display.
  s.Overlay[2].Slot_Show = s.Overlay[3].Slot_Show = 1;
  s.Overlay[2].Slot_Y_Offset = 0.2f;
  s.Overlay[3].Slot_Y_Offset = 0.75f;
  shown = When_Shown("NMR1D_Form62", [&](QWidget& d) {
    EXPECT_EQ(s.DEPT_Mode, 1);
    EXPECT_EQ(Text(d, "Text4"), "1.414");
    QTest::mouseClick(Child<tevo::app::Hold_Button>(d, "CH2_DEPT45_UP"), Qt::LeftButton);
    EXPECT_FLOAT_EQ(s.DEPT_CH2_45, 1.01f);
    EXPECT_EQ(Text(d, "Text3"), "1.010");
    for (int i : {560, 620, 700})
      EXPECT_NEAR(s.Overlay[3].Slot_Y_Im[static_cast<std::size_t>(i)],
                  (1.01 * s.Spec_Re(i) - s.Overlay[3].Slot_Y[static_cast<std::size_t>(i)]) / 2, 1e-5) << i;
    w.repaint();
    w.grab().save(QCoreApplication::applicationDirPath() + "/screenshots/DEPT_Display.png");
    Press(d, "Command2");
  });
  w.Action("m272")->trigger();
  ASSERT_TRUE(*shown);
  EXPECT_FLOAT_EQ(s.DEPT_CH2_45, 1.0f);
  EXPECT_EQ(s.DEPT_Mode, 0);
  w.hide();
}

TEST(Wiring, ParameterWindowAndMirrorFromTheEditMenu) {
  App();
  tevo::Session s;
  tevo::app::Main_Window w(s);
  EXPECT_FALSE(w.Action("m291")->isEnabled());
  EXPECT_FALSE(w.Action("m292")->isEnabled());
  tevo::platform::Scripted_Ui ui;
  Make_Spectrum(s, ui, 700);
  s.Param.SCANS = 16;
  s.Data_Saved = 1;
  w.Refresh_State();
  ASSERT_TRUE(w.Action("m292")->isEnabled());

  // A value that is not a whole number goes back; キャンセル takes nothing.
  auto shown = When_Shown("ParameterForm", [](QWidget& d) {
    auto* grid = Child<QTableWidget>(d, "Grid1");
    for (int i = 0; i < grid->rowCount(); ++i) {
      if (grid->item(i, 0)->text() != "SCANS") continue;
      EXPECT_EQ(grid->item(i, 1)->text(), "16");
      grid->item(i, 1)->setText("sixteen");
      EXPECT_EQ(grid->item(i, 1)->text(), "16");
      grid->item(i, 1)->setText("64");
    }
    Press(d, "Command2");
  });
  w.Action("m292")->trigger();
  EXPECT_TRUE(*shown);
  EXPECT_EQ(s.Param.SCANS, 16);
  shown = When_Shown("ParameterForm", [](QWidget& d) {
    auto* grid = Child<QTableWidget>(d, "Grid1");
    for (int i = 0; i < grid->rowCount(); ++i)
      if (grid->item(i, 0)->text() == "SCANS") grid->item(i, 1)->setText("64");
    Press(d, "Command1");
  });
  w.Action("m292")->trigger();
  EXPECT_TRUE(*shown);
  EXPECT_EQ(s.Param.SCANS, 64);
  EXPECT_EQ(s.Data_Saved, 0);

  // The mirror asks; Yes moves the peak from point 700 to 1023 - 700.
  ui.button_answers = {1};
  w.Action("m291")->trigger();
  ASSERT_FALSE(ui.shown.empty());
  EXPECT_EQ(ui.shown.back().text, "スペクトルの左右を反転しますか");
  EXPECT_FLOAT_EQ(s.Spec_Re(kN - 1 - 700), 10.0f);
}

TEST(Wiring, CsvParameterWindowAndTheListOfReadableFiles) {
  App();
  tevo::test::Temp_Dir dir;
  tevo::test::Write_Text(dir / "list.csv", "1\r\n2\r\n3\r\n4\r\n5\r\n6\r\n7\r\n8\r\n9\r\n10\r\n11\r\n12\r\n");
  tevo::app::Qt_Ui ui;
  tevo::Session s;
  s.ui = &ui;
  // A refused nucleus goes back; OK waits for every required value.
  auto shown = When_Shown("NMR1D_Form103_CSV", [](QWidget& d) {
    auto* grid = Child<QTableWidget>(d, "Grid1");
    ASSERT_EQ(grid->rowCount(), 5);
    EXPECT_EQ(grid->horizontalHeaderItem(0)->text(), "Parameter Name");
    EXPECT_EQ(grid->item(1, 0)->text(), "* FID or Spectrum");
    EXPECT_EQ(grid->item(1, 1)->text(), "S");
    EXPECT_EQ(grid->item(2, 0)->text(), "* ObNuc");
    grid->item(2, 1)->setText("??");
    EXPECT_EQ(grid->item(2, 1)->text(), "");
    Press(d, "Command1");
    EXPECT_TRUE(d.isVisible());
    grid->item(2, 1)->setText("13C");
    grid->item(3, 1)->setText("100.6");
    grid->item(4, 1)->setText("25000");
    QDir().mkpath(QCoreApplication::applicationDirPath() + "/screenshots");
    d.grab().save(QCoreApplication::applicationDirPath() + "/screenshots/NMR1D_Form103_CSV.png");
    Press(d, "Command1");
  });
  EXPECT_EQ(tevo::datafiles::Read_Csv(s, (dir / "list.csv").string()), 0);
  EXPECT_TRUE(*shown);
  EXPECT_EQ(s.Param.OBNUC, "13C");
  EXPECT_FLOAT_EQ(s.Param.FREQU, 25000);
  EXPECT_EQ(s.Spec_Points, 12);

  // m47 lists the formats of RequiredFile1D.txt and the files of the one chosen.
  s.Required_Files = {{"JEOL Delta", "jdf files", "a.jdf\r\nb.txt"}, {"Bruker", "raw", "fid\r\nacqus"}};
  tevo::app::Main_Window w(s);
  shown = When_Shown("m47", [](QWidget& d) {
    auto* list = Child<QListWidget>(d, "List1");
    ASSERT_EQ(list->count(), 2);
    EXPECT_EQ(list->item(0)->text(), "JEOL Delta  jdf files");
    list->setCurrentRow(1);
    EXPECT_EQ(Child<QPlainTextEdit>(d, "Text1")->toPlainText(), "fid\nacqus");
    Press(d, "Command1");
  });
  w.Action("m47")->trigger();
  EXPECT_TRUE(*shown);
}

TEST(Wiring, PageAndListPreviewsFromThePrintMenuPrintToAPdfPrinter) {
  App();
  tevo::Session s;
  tevo::platform::Scripted_Ui ui;
  Make_Spectrum(s, ui, 700);
  tevo::display::View_After_Load(s);
  s.Data_Saved = 1;
  tevo::app::Main_Window w(s);
  w.Refresh_State();
  ASSERT_TRUE(w.Action("m14_1")->isEnabled());
  // The printer set-up: A4 kept, black and white, no copies typed (one),
  // both sides bound at the top.
  auto set_up = When_Shown("Form501", [&](QWidget& d) {
    EXPECT_EQ(Child<QComboBox>(d, "Combo2")->count(), 7);
    Child<QComboBox>(d, "Combo2")->setCurrentIndex(1);
    Child<QSpinBox>(d, "Text1")->setValue(0);
    Child<QCheckBox>(d, "Check1")->setChecked(true);
    Child<QRadioButton>(d, "Option4")->setChecked(true);
    Child<QCheckBox>(d, "Check2")->setChecked(true);
    const QString dir_name = QCoreApplication::applicationDirPath() + "/screenshots";
    QDir().mkpath(dir_name);
    d.grab().save(dir_name + "/Form501.png");
    Press(d, "Command1");
  });
  w.Action("m16")->trigger();
  EXPECT_TRUE(*set_up);
  EXPECT_EQ(s.settings.Int("PRINTER TYPE"), 1);
  EXPECT_EQ(s.settings.Int("PAPER SIZE"), 9);
  QPrinter set_printer;
  tevo::app::Apply_Printer_Setup(s, set_printer);
  EXPECT_EQ(set_printer.copyCount(), 1);
  tevo::test::Temp_Dir dir;
  const std::filesystem::path pdf = dir / "printed.pdf";
  int printed = -2;
  auto shown = When_Shown("NMR1D_Form8", [&](QWidget& d) {
    auto& form = static_cast<tevo::app::Page_Form&>(d);
    // A4 portrait at 60 dpi, with ink on it.
    EXPECT_EQ(form.Preview().width(), 496);
    EXPECT_EQ(form.Preview().height(), 702);
    int ink = 0;
    for (int y = 0; y < form.Preview().height(); ++y)
      for (int x = 0; x < form.Preview().width(); ++x) ink += qGray(form.Preview().pixel(x, y)) < 128;
    EXPECT_GT(ink, 500);
    // Black and white: greys of the edges at most, no colour.
    int coloured = 0;
    for (int y = 0; y < form.Preview().height(); ++y)
      for (int x = 0; x < form.Preview().width(); ++x) {
        const QRgb c = form.Preview().pixel(x, y);
        coloured += qRed(c) != qGreen(c) || qGreen(c) != qBlue(c);
      }
    EXPECT_EQ(coloured, 0);
    const QString dir_name = QCoreApplication::applicationDirPath() + "/screenshots";
    QDir().mkpath(dir_name);
    d.grab().save(dir_name + "/NMR1D_Form8.png");
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(QString::fromStdString(pdf.string()));
    printer.setPageSize(QPageSize(QPageSize::A4));
    printed = form.Print_On(printer);
    form.reject();
  });
  w.Action("m14_1")->trigger();
  EXPECT_TRUE(*shown);
  EXPECT_EQ(printed, 0);
  EXPECT_EQ(tevo::test::Read_Text(pdf).rfind("%PDF-", 0), 0u);

  // 120 peaks: the list preview turns its pages, two on A4 portrait and
  // three once the set-up turns the paper.
  EXPECT_FALSE(w.Action("m15")->isEnabled());  // nothing to list yet
  for (int k = 0; k < 120; ++k) {
    tevo::Peak_Rec p;
    p.Point = 8 * k + 4;
    p.Freq_Hz = s.Spec_Axis[static_cast<std::size_t>(p.Point)] * static_cast<float>(s.Spectrum_Frequency);
    s.Peaks.push_back(p);
  }
  w.Refresh_State();
  ASSERT_TRUE(w.Action("m15")->isEnabled());
  EXPECT_FALSE(w.Action("m171")->isEnabled());  // not an array
  const std::filesystem::path list_pdf = dir / "list.pdf";
  printed = -2;
  auto listed = When_Shown("NMR1D_Form8List", [&](QWidget& d) {
    auto& form = static_cast<tevo::app::List_Form&>(d);
    const auto page_text = [&] { return Child<QLabel>(d, "f121")->text(); };
    EXPECT_EQ(page_text(), "1/2");
    EXPECT_EQ(d.windowTitle(), "プレビュー（Peak List） (1/2)");
    Press(d, "f13");
    EXPECT_EQ(page_text(), "2/2");
    Press(d, "f13");
    EXPECT_EQ(page_text(), "2/2");
    Press(d, "f11");
    When_Shown("NMR1D_Form8_L_1", [&](QWidget& setup) {
      Child<QRadioButton>(setup, "Option1")->setChecked(true);  // 横置き
      Press(setup, "Command1");
    });
    Press(d, "f31");
    EXPECT_EQ(s.settings.Text("PAPER ORIENTLIST"), "1");
    EXPECT_EQ(s.settings.Text("LISTS FONT NAME"), "");  // the font as it was: not written
    EXPECT_GT(form.Preview().width(), form.Preview().height());
    EXPECT_EQ(page_text(), "1/3");
    const QString dir_name = QCoreApplication::applicationDirPath() + "/screenshots";
    d.grab().save(dir_name + "/list_preview.png");
    Press(d, "f13");
    EXPECT_EQ(page_text(), "2/3");
    Press(d, "f131");
    EXPECT_EQ(page_text(), "3/3");
    // The spectrometer's layout starts again from the first page.
    const QImage compact = form.Preview();
    Child<QRadioButton>(d, "Option2")->click();
    EXPECT_EQ(page_text().left(2), "1/");
    EXPECT_NE(form.Preview(), compact);
    d.grab().save(dir_name + "/list_preview_jeol.png");
    // The printer set-up of the lists: A5 on both sides, kept apart from
    // the page's paper; the preview and the printer take it.
    When_Shown("Form501", [&](QWidget& setup) {
      Child<QComboBox>(setup, "Combo2")->setCurrentIndex(2);
      Child<QCheckBox>(setup, "Check1")->setChecked(true);
      Press(setup, "Command1");
    });
    Press(d, "f33");
    EXPECT_EQ(s.settings.Text("PAPER SIZE LIST"), "11");
    EXPECT_EQ(s.settings.Text("PAPER DUPL LIST"), "1");
    EXPECT_EQ(s.settings.Text("PAPER ORIENTLIST"), "1");
    EXPECT_EQ(s.settings.Int("PAPER SIZE"), 9);
    EXPECT_EQ(form.Preview().width(), 496);  // A5 across, 21 cm at 60 dpi
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(QString::fromStdString(list_pdf.string()));
    tevo::app::Apply_Printer_Setup(s, printer, tevo::page::Printer_Group::List);
    printed = form.Print_On(printer);
    Press(d, "f00");
  });
  w.Action("m15")->trigger();
  EXPECT_TRUE(*listed);
  EXPECT_EQ(printed, 0);
  const QSizeF sheet = tevo::test::Pdf_Page_Mm(list_pdf);
  EXPECT_NEAR(sheet.width(), 210, 1);
  EXPECT_NEAR(sheet.height(), 148, 1);
}

TEST(PageForm, DragsTheFrameWritesATextDrawsALineAndPlacesAPictureThatTheNativeFileKeeps) {
  App();
  tevo::Session s;
  tevo::platform::Scripted_Ui ui;
  Make_Spectrum(s, ui, 700);
  tevo::display::View_After_Load(s);
  for (auto [key, v] : {std::pair{"PAPER SIZE", 9.0}, {"PAPER ORIENT", 0.0}, {"X-LEFT MARGIN", 2.0},
                        {"X-LENGTH", 15.0}, {"Y-BOTTOM MARGIN", 3.0}, {"Y-LENGTH", 10.0}, {"PARA LEFT", 1.0},
                        {"PARA TOP", 1.0}, {"PARA WIDTH", 10.0}, {"PARA HEIGHT", 4.0}, {"DRAW PARAM ON", 1.0},
                        {"DRAW WAKU ON", 1.0}, {"PRINT TEXT", 0.0}, {"PREVIEW MAGNIF", 1.0}})
    tevo::display::Store_Setting(s, key, v);
  tevo::app::Page_Form form(s);
  form.show();
  QWidget* sheet = form.Sheet();
  const tevo::page::Page_Geometry& g = form.Geometry();
  // A4 at 60 dpi is 496 x 702 pixels: 496 / 21 px per cm across, 702 / 29.7 = 260 / 11 down.
  ASSERT_DOUBLE_EQ(g.Kx, 496.0 / 21);
  const QPoint middle((g.Frame.Left + g.Frame.Right) / 2, (g.Frame.Top + g.Frame.Bottom) / 2);
  // 124 px right is 124 x 21 / 496 = 5.25 cm; 52 px up is 52 x 11 / 260 = 2.2 cm.
  QTest::mousePress(sheet, Qt::LeftButton, {}, middle);
  QTest::mouseMove(sheet, middle + QPoint(124, -52));
  // The status line reads the outline's pixels: the frame's left edge at
  // round(2 x 496 / 21) = 47 px, moved to 171 px = 7.24 cm; its bottom at
  // round(26.7 x 260 / 11) = 631 px, moved to 579 px, 29.7 - 24.496 = 5.20 cm up.
  EXPECT_TRUE(Child<QLabel>(form, "StatusBar1")->text().startsWith(QStringLiteral("左 7.24, 下 5.20 cm")))
      << Child<QLabel>(form, "StatusBar1")->text().toStdString();
  QTest::mouseRelease(sheet, Qt::LeftButton, {}, middle + QPoint(124, -52));
  EXPECT_NEAR(s.settings.Real("X-LEFT MARGIN"), 7.25, 1e-5);
  EXPECT_NEAR(s.settings.Real("Y-BOTTOM MARGIN"), 5.2, 1e-5);
  QAction* undo = form.Action("m_undo");
  EXPECT_EQ(undo->text(), "取り消し(Main ｽﾍﾟｸﾄﾙの移動)");
  undo->trigger();
  EXPECT_NEAR(s.settings.Real("X-LEFT MARGIN"), 2.0, 1e-6);
  EXPECT_FALSE(undo->isEnabled());

  // A click in the text mode opens the editor at the pointer; its size list
  // puts a group around the selection.
  const QPoint at = QPoint(g.Frame_X(0.1), g.Frame_Y(0.1));
  auto typed = When_Shown("NMR1D_Form8_Text", [](QWidget& d) {
    auto* edit = Child<QPlainTextEdit>(d, "Text1");
    edit->setPlainText("CH");
    edit->selectAll();
    auto* size = Child<QComboBox>(d, "Combo4");
    size->setCurrentIndex(size->findText("14"));
    emit size->activated(size->currentIndex());
    edit->moveCursor(QTextCursor::End);
    edit->insertPlainText("\\-(3)");
    Press(d, "Command1");
  });
  form.Set_Mode(tevo::app::Page_Form::Mode::Text);
  QTest::mouseClick(sheet, Qt::LeftButton, {}, at);
  EXPECT_TRUE(*typed);
  ASSERT_EQ(s.Texts.size(), 1u);
  EXPECT_EQ(s.Texts[0].Text, "\\p14(CH)\\-(3)");
  EXPECT_FLOAT_EQ(s.Texts[0].X, static_cast<float>(g.Frame_Fraction_X(at.x())));
  EXPECT_EQ(s.settings.Int("PRINT TEXT"), 1);

  // A drag in the line mode draws a line of the chosen kind and dash.
  form.Set_Mode(tevo::app::Page_Form::Mode::Line);
  Child<QComboBox>(form, "Combo1")->setCurrentIndex(3);
  Child<QComboBox>(form, "Combo2")->setCurrentIndex(2);
  QTest::mousePress(sheet, Qt::LeftButton, {}, QPoint(g.Frame_X(0.5), g.Frame_Y(0.2)));
  QTest::mouseMove(sheet, QPoint(g.Frame_X(0.7), g.Frame_Y(0.35)));
  QTest::mouseRelease(sheet, Qt::LeftButton, {}, QPoint(g.Frame_X(0.7), g.Frame_Y(0.35)));
  ASSERT_EQ(s.Lines.size(), 1u);
  EXPECT_EQ(s.Lines[0].Kind, 3);
  EXPECT_EQ(s.Lines[0].Style, 2);
  EXPECT_NEAR(s.Lines[0].X2, 0.7, 0.01);

  // A picture from a file; one that is no picture is refused with its message.
  tevo::test::Temp_Dir dir;
  QImage picture(120, 80, QImage::Format_RGB32);
  picture.fill(QColor(40, 120, 220));
  QPainter(&picture).fillRect(20, 20, 80, 40, Qt::white);
  const QString png = QString::fromStdString((dir / "mark.png").string());
  ASSERT_TRUE(picture.save(png));
  ui.file_answers.push_back(tevo::platform::File_Answer{png.toStdString(), 1});
  form.Set_Mode(tevo::app::Page_Form::Mode::Select);
  form.Action("m_image_file")->trigger();
  ASSERT_EQ(s.Images.size(), 1u);
  EXPECT_EQ(s.Images[0].Body, tevo::test::Read_Bytes(png.toStdString()));
  tevo::test::Write_Text(dir / "bad.png", "no picture");
  EXPECT_FALSE(form.Load_Picture(QString::fromStdString((dir / "bad.png").string()), at));
  ASSERT_FALSE(ui.shown.empty());
  EXPECT_EQ(ui.shown.back().text, "ﾌｧｲﾙが不正です。または,.PNG");
  // Taken and moved to the frame's right half, then white-out.
  const tevo::page::Pixel_Rect box{g.Frame_X(s.Images[0].Left), g.Frame_Y(s.Images[0].Top), 0, 0};
  QTest::mousePress(sheet, Qt::LeftButton, {}, QPoint(box.Left + 5, box.Top + 5));
  QTest::mouseRelease(sheet, Qt::LeftButton, {}, QPoint(box.Left + 5 + g.Frame_X(0.55) - g.Frame_X(0), box.Top + 5));
  EXPECT_NEAR(s.Images[0].Left, 0.55, 0.01);
  form.Action("m_image_white")->trigger();
  EXPECT_EQ(s.Images[0].Extra, 1);
  QApplication::processEvents();
  const QString shots = QCoreApplication::applicationDirPath() + "/screenshots";
  QDir().mkpath(shots);
  form.grab().save(shots + "/NMR1D_Form8_edit.png");

  // The native file keeps the text, the line and the picture.
  const std::string tv1 = (dir / "page.tv1").string();
  s.Param.POINT = s.Spec_Points;  // as a read file has it
  ASSERT_EQ(tevo::datafiles::Write_Native(s, tv1), 0);
  tevo::Session back;
  back.ui = &ui;
  back.Log_Mode = -1;
  ASSERT_EQ(tevo::datafiles::Read_Native(back, tv1), 0) << ui.shown.back().text;
  ASSERT_EQ(back.Texts.size(), 1u);
  EXPECT_EQ(back.Texts[0].Text, s.Texts[0].Text);
  EXPECT_FLOAT_EQ(back.Texts[0].X, s.Texts[0].X);
  EXPECT_FLOAT_EQ(back.Texts[0].Y, s.Texts[0].Y);
  ASSERT_EQ(back.Lines.size(), 1u);
  EXPECT_EQ(back.Lines[0].Kind, 3);
  ASSERT_EQ(back.Images.size(), 1u);
  EXPECT_EQ(back.Images[0].Body, s.Images[0].Body);
  EXPECT_EQ(back.Images[0].Extra, 1);
  form.reject();
}

TEST(Wiring, PageEditorSettingsWindowsAndPicturePanels) {
  App();
  tevo::Session s;
  tevo::platform::Scripted_Ui ui;
  Make_Spectrum(s, ui, 700);
  tevo::display::View_After_Load(s);
  tevo::test::Temp_Dir dir;
  s.App_Path = dir.path().string();
  tevo::display::Store_Setting(s, "PAPER ORIENT", 1);  // A4 landscape: 702 x 496 preview pixels
  tevo::app::Page_Form form(s);
  const auto trigger = [&](const char* name) {
    QAction* a = form.findChild<QAction*>(name);
    ASSERT_NE(a, nullptr) << name;
    a->trigger();
  };
  const auto shot = [](QWidget& w, const char* name) {
    const QString dir_name = QCoreApplication::applicationDirPath() + "/screenshots";
    QDir().mkpath(dir_name);
    w.grab().save(dir_name + "/" + name + ".png");
  };

  // The frame window changes the setting at once; キャンセル puts it back.
  const double length = s.settings.Real("X-LENGTH");
  auto shown = When_Shown("NMR1D_Form84", [&](QWidget& d) {
    Child<QDoubleSpinBox>(d, "X-LENGTH")->setValue(12.5);
    EXPECT_DOUBLE_EQ(s.settings.Real("X-LENGTH"), 12.5);
    shot(d, "NMR1D_Form84");
    Press(d, "Command2");
  });
  trigger("NMR1D_Form84");
  EXPECT_TRUE(*shown);
  EXPECT_DOUBLE_EQ(s.settings.Real("X-LENGTH"), length);

  // The parameter window: a ".prt" file chosen by 参照... is read at once.
  tevo::test::Write_Text(dir / "mine.prt", "OBNUC|\x8A\xCF\x91\xAA\x8A\x6A\r\n");  // 観測核 in Shift-JIS
  ui.file_answers.push_back(tevo::platform::File_Answer{(dir / "mine.prt").string()});
  shown = When_Shown("NMR1D_Form88", [&](QWidget& d) {
    Press(d, "PRINT TABLE DIR BROWSE");
    EXPECT_EQ(Text(d, "PRINT TABLE DIR"), QString::fromStdString((dir / "mine.prt").string()));
    EXPECT_EQ(s.Print_Text, "OBNUC|観測核");
    EXPECT_EQ(ui.file_requests.back().filter, "ﾊﾟﾗﾒｰﾀﾌｧｲﾙ(*.prt)|*.prt|全てのファイル|*.*|");
    Child<QTabWidget>(d, "SSTab1")->setCurrentIndex(2);
    shot(d, "NMR1D_Form88");
    Press(d, "Command1");
  });
  trigger("NMR1D_Form88");
  EXPECT_TRUE(*shown);

  // The list editor: a row added after the first and stored on OK.
  shown = When_Shown("NMR1D_Form15", [&](QWidget& d) {
    auto* grid = Child<QTableWidget>(d, "Grid1");
    grid->setCurrentCell(0, 0);
    Press(d, "Command3");
    static_cast<QComboBox*>(grid->cellWidget(1, 0))->setCurrentText("SCANS");
    grid->item(1, 1)->setText(QStringLiteral("積算回数"));
    shot(d, "NMR1D_Form15");
    Press(d, "Command1");
  });
  trigger("NMR1D_Form15");
  EXPECT_TRUE(*shown);
  EXPECT_EQ(s.settings.Para_Table, "OBNUC|観測核\r\nSCANS|積算回数");

  // The PNG panel: the whole sheet offered as the preview shows it; 6000
  // typed is held to 5000 with the aspect kept; a picture saved under a
  // ".PNG" name reads back at its size; a write that fails keeps the file.
  shown = When_Shown("S_Frame", [&](QWidget& d) {
    auto& panel = static_cast<tevo::app::Bitmap_Panel&>(d);
    EXPECT_EQ(panel.Size(), (tevo::page::Bitmap_Size{702, 496}));
    auto* width = Child<QComboBox>(d, "Combo51");
    const auto type = [&](const QString& text) {
      width->lineEdit()->selectAll();
      QTest::keyClicks(width->lineEdit(), text);
      QTest::keyClick(width->lineEdit(), Qt::Key_Return);
    };
    type("6000");
    EXPECT_EQ(width->currentText(), "5000");
    EXPECT_EQ(Child<QComboBox>(d, "Combo52")->currentText(), "3533");
    EXPECT_EQ(Child<QLabel>(d, "Label_Size")->text(), "52995.0 Kbyte");
    shot(d, "S_Frame");
    type("600");
    const std::filesystem::path png = dir / "sheet.PNG";
    ui.file_answers.push_back(tevo::platform::File_Answer{png.string()});
    Press(d, "Command51");
    QImage read(QString::fromStdString(png.string()));
    EXPECT_EQ(read.size(), QSize(600, 424));
    const std::string before = tevo::test::Read_Text(png);
    std::filesystem::create_directories(dir / "sheet.PNG.$$" / "in the way");
    EXPECT_EQ(panel.Save(png.string()), -1);
    EXPECT_EQ(tevo::test::Read_Text(png), before);
    EXPECT_EQ(ui.shown.back().title, "画面の保存");
    Press(d, "Command52");
  });
  trigger("f03_PNG");
  EXPECT_TRUE(*shown);

  // The bitmap panel copies the sheet to the clipboard.
  shown = When_Shown("S_Frame", [&](QWidget& d) {
    EXPECT_EQ(d.findChild<QPushButton*>("Command51"), nullptr);
    Press(d, "Command54");
    EXPECT_EQ(QApplication::clipboard()->image().size(), QSize(702, 496));
    Press(d, "Command52");
  });
  trigger("f03");
  EXPECT_TRUE(*shown);
}

}  // namespace
