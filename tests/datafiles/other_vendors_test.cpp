// The smaller vendor families (Aspect, GE Omega, Chemagnetics, NUTS, MAC,
// Varian, JEOL EX/GX/GSX, ALPHA and LAMBDA)
// and the CSV import, each from files built byte by byte from its layout,
// through the open command: parameters and points as built, FIDs
// transformed to their line, arrays, 2D refusals, and damaged copies that
// end with a message and leave the former data set.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <filesystem>
#include <string>
#include <vector>

#include "datafiles/aspect.h"
#include "datafiles/csv_import.h"
#include "datafiles/decoders.h"
#include "datafiles/ge_omega.h"
#include "datafiles/jeol_alpha.h"
#include "datafiles/jeol_ex.h"
#include "datafiles/jeol_lambda.h"
#include "datafiles/mac_fid.h"
#include "datafiles/nuts.h"
#include "datafiles/open_file.h"
#include "datafiles/open_routes.h"
#include "datafiles/parameter_forms.h"
#include "datafiles/recognition.h"
#include "datafiles/varian.h"
#include "platform/ui.h"
#include "session/session.h"
#include "signal/fid_processing.h"
#include "support/test_support.h"
#include "support/vendor_files.h"

namespace tevo::datafiles {
namespace {

namespace fs = std::filesystem;
using test::Vendor_Point;
using test::Vendor_Spec;

struct Other_Vendors : ::testing::Test {
  test::Temp_Dir dir;
  platform::Scripted_Ui ui;
  Session s;
  Other_Vendors() {
    ui.quiet = true;
    s.ui = &ui;
    s.App_Path = dir.path().string();
    s.Log_Mode = -1;
  }
  int Open(const fs::path& path) {
    return NM1D_m11_Click(s, {path.string(), [](Session&) { return std::string("OKX"); }});
  }
  std::string Message() const { return ui.shown.empty() ? "" : ui.shown.back().text; }

  // Points of every row as the reader must have left them; with `dc` a raw
  // FID less the means of its last 40 % of points.
  void Expect_Points(const Vendor_Spec& spec, bool dc = false) {
    ASSERT_EQ(s.Array_Rows, spec.rows);
    for (int32_t r = 0; r < spec.rows; ++r)
      for (int32_t k : {0, 1, spec.points / 3, spec.points - 1}) {
        auto v = Vendor_Point(spec, k, r);
        const auto row = static_cast<size_t>(r);
        if (dc) {
          const int32_t tail = static_cast<int32_t>(spec.points * 0.4);
          std::complex<double> mean;
          for (int32_t j = spec.points - tail; j < spec.points; ++j) {
            const auto w = Vendor_Point(spec, j, r);
            mean += std::complex<double>(w.real(), w.imag());
          }
          mean /= static_cast<double>(tail);
          EXPECT_NEAR(s.Fid_Re(static_cast<size_t>(k), row), v.real() - mean.real(), 1e-2) << r << " " << k;
          EXPECT_NEAR(s.Fid_Im(static_cast<size_t>(k), row), v.imag() - mean.imag(), 1e-2) << r << " " << k;
          continue;
        }
        if (spec.spectrum) {  // stored from the highest frequency down
          const auto i = static_cast<size_t>(spec.points - 1 - k);
          EXPECT_EQ(s.Spec_Re(i, row), v.real()) << r << " " << k;
          EXPECT_EQ(s.Spec_Im(i, row), v.imag()) << r << " " << k;
        } else {
          EXPECT_EQ(s.Fid_Re(static_cast<size_t>(k), row), v.real()) << r << " " << k;
          EXPECT_EQ(s.Fid_Im(static_cast<size_t>(k), row), v.imag()) << r << " " << k;
        }
      }
  }

  // The FID through the processing chain: the tallest point of the
  // spectrum's magnitude must sit at the line built into the FID, within
  // one point. The carrier stands at `zero_ppm` MHz for 0 ppm, by default
  // the reference shift spec.shift_ppm at the carrier.
  void Expect_Line(const Vendor_Spec& spec, double zero_ppm = 0) {
    signal::Process_Report report;
    ASSERT_EQ(signal::Process_Fid(s, {}, report), 0);
    s.Data_Saved = 1;  // a probe, not a change the next open must ask about
    int32_t top = 0;
    double best = -1;
    for (int32_t i = 0; i < s.Spec_Points; ++i) {
      const double m = std::hypot(s.Spec_Re(static_cast<size_t>(i)), s.Spec_Im(static_cast<size_t>(i)));
      if (m > best) best = m, top = i;
    }
    if (zero_ppm == 0) zero_ppm = spec.observe_mhz / (1 + spec.shift_ppm * 1e-6);
    const double carrier_ppm = (spec.observe_mhz / zero_ppm - 1) * 1e6;
    const double expected = carrier_ppm + spec.line_hz / zero_ppm;
    const double point_ppm = spec.sweep_hz / s.Spec_Points / zero_ppm;
    EXPECT_NEAR(s.Spec_Axis[static_cast<size_t>(top)], expected, 1.01 * point_ppm);
  }
};

TEST_F(Other_Vendors, AspectWordsFidAndSpectrum) {
  Vendor_Spec fid;
  fid.kind = "AB CD";  // a blank code inside the name
  fid.shift_ppm = -2.5;  // the float48 of negative sign
  const auto built = test::Build_Msl(dir / "msl", fid);
  const auto bytes = test::Read_Bytes(built.Open());
  const Msl_Head h = Read_Msl_Head(bytes);
  EXPECT_EQ(h.name, "AB CD");
  EXPECT_EQ(h.date, "240315");
  EXPECT_EQ(h.data_start, 256u * 3 + 768);
  EXPECT_EQ(Check_Msl(built.Open()).kind, "SINGLE PULSE");

  ASSERT_EQ(Open(built.Open()), 0) << Message();
  EXPECT_EQ(s.File_Class, ".MSL");
  EXPECT_EQ(s.Is_Fid, 1);
  EXPECT_EQ(s.Fid_Points, 1024);
  EXPECT_EQ(s.Param.POINT, 1024);
  EXPECT_EQ(s.Param.OBNUC, "1H");  // "H1" in the file
  EXPECT_EQ(s.Param.Instrument_Name, "ASP");
  EXPECT_EQ(s.Param.SCANS, 16);
  EXPECT_FLOAT_EQ(s.Param.CTEMP, 25);
  EXPECT_FLOAT_EQ(s.Param.FREQU, 8000);
  EXPECT_NEAR(s.Observe_Frequency, 400.13, 1e-9);
  Expect_Points(fid);
  Expect_Line(fid);

  Vendor_Spec spectrum;
  spectrum.spectrum = true;
  spectrum.points = 2048;
  spectrum.nucleus = "13C";
  spectrum.observe_mhz = 100.61;
  spectrum.shift_ppm = 100.0;
  ASSERT_EQ(Open(test::Build_Msl(dir / "msl2", spectrum).Open()), 0) << Message();
  EXPECT_EQ(s.Is_Spectrum, 1);
  EXPECT_EQ(s.Param.OBNUC, "13C");
  Expect_Points(spectrum);
  // The carrier, the middle of the spectrum, at the reference shift.
  EXPECT_NEAR(s.Spec_Axis[1024], 100.0, 1e-4);
  EXPECT_NEAR(s.Spec_Axis[1025] - s.Spec_Axis[1024], 8000.0 / 2048 / s.Spectrum_Frequency, 1e-5);
}

TEST_F(Other_Vendors, GeOmegaPairArrayAndTwoDimensionalRefusal) {
  Vendor_Spec spec;
  spec.rows = 3;
  spec.points = 1000;  // padded to 1024
  spec.shift_ppm = 0;  // no reference in the file: the carrier is 0 ppm
  const auto built = test::Build_Ge(dir / "ge", spec);
  // Either member of the pair opens the data member.
  ASSERT_EQ(Open(built.folder / "ge.hed"), 0) << Message();
  EXPECT_EQ(s.Open_Name, built.Open().string());
  EXPECT_EQ(s.Param.Instrument_Name, "Ge Omega");
  EXPECT_EQ(s.Fid_Points, 1000);
  EXPECT_EQ(s.Spec_Points, 1024);
  EXPECT_EQ(s.Param.SCANS, 16);
  EXPECT_FLOAT_EQ(s.Param.FILTR, 4000);
  EXPECT_NEAR(s.Param.ACQTM, 0.128, 1e-7);  // "128 MS"
  EXPECT_NEAR(s.Param.PD, 2, 1e-7);  // "2 RD"
  EXPECT_NEAR(s.Param.DEADT, 25, 1e-4);  // "25 US", held in microseconds
  Expect_Points(spec);
  Expect_Line(spec);

  // DIM1 of 127 is an array for this program, 128 a 2D data set.
  const std::string hed = test::Read_Text(built.folder / "ge.hed");
  for (const auto& [rows, kind] : {std::pair{127, "1D"}, std::pair{128, "V2D"}}) {
    std::string t = hed;
    t.replace(t.find("DIM1 = 3"), 8, "DIM1 = " + std::to_string(rows));
    test::Write_Text(built.folder / "ge.hed", t);
    EXPECT_EQ(RMGEO(built.Open().string()).kind, kind);
  }
  EXPECT_EQ(Open(built.Open()), 1);
  EXPECT_EQ(Message(), "2D Data !");
  EXPECT_EQ(s.Array_Rows, 3);  // the former data set stays
}

TEST_F(Other_Vendors, ChemagneticsFolderWithStepArray) {
  Vendor_Spec spec;
  spec.rows = 4;
  spec.kind = "onepul";
  spec.observe_mhz = 400.2;
  spec.shift_ppm = 0;
  const auto built = test::Build_Cmx(dir / "cmx", spec);
  ASSERT_EQ(Open(built.Open()), 0) << Message();
  EXPECT_EQ(s.File_Class, ".CMX");
  EXPECT_EQ(s.Param.Instrument_Name, "CMX***");
  EXPECT_EQ(s.Param.EXMOD, "onepul");
  EXPECT_EQ(s.Param.OBNUC, "1H");
  EXPECT_EQ(s.Param.IRNUC, "13C");
  EXPECT_EQ(s.Param.COMNT, "first second third");
  EXPECT_EQ(s.Param.DATIM, "2024/03/15  10:20:30");
  EXPECT_FLOAT_EQ(s.Param.CSPED, 5000);
  EXPECT_EQ(s.Delay_Name, "STEP_SIZE");
  EXPECT_EQ(s.Delay_List, (std::vector<float>{0, 0.25f, 0.5f, 0.75f}));
  Expect_Points(spec);
  Expect_Line(spec);
  // Named on the command line: a 1D data set with the tag of its class.
  std::string path = built.Open().string();
  const Resolved_File r = Resolve_Data_File(s, path);
  EXPECT_EQ(r.tag, "CMX1");
  EXPECT_EQ(r.kind, "onepul");
}

TEST_F(Other_Vendors, NutsInItsThreeTypes) {
  // Type 1 named .fid: the contents come first, so it is no GE file.
  Vendor_Spec one;
  const auto t1 = test::Build_Nuts(dir / "n1", one, 1);
  EXPECT_EQ(RMNut(t1.Open().string()).kind, "X_ZG30");
  ASSERT_EQ(Open(t1.Open()), 0) << Message();
  EXPECT_EQ(s.File_Class, ".NUT");
  EXPECT_EQ(s.Param.EXMOD, "ZG30");
  EXPECT_FLOAT_EQ(s.Param.CTEMP, 25);
  EXPECT_FLOAT_EQ(s.Param.Pulse90, 10.5f);
  Expect_Points(one);
  Expect_Line(one);

  // Type 2: a spectrum of three rows, a small array.
  Vendor_Spec two;
  two.spectrum = true;
  two.rows = 3;
  const auto t2 = test::Build_Nuts(dir / "n2", two, 2);
  EXPECT_EQ(RMNut(t2.Open().string()).kind, "W_ZG30");
  ASSERT_EQ(Open(t2.Open()), 0) << Message();
  EXPECT_EQ(s.Param.SCANS, 16);
  EXPECT_FLOAT_EQ(s.Param.PD, 2);
  Expect_Points(two);

  // Type 3: the text head, then the binary rows.
  Vendor_Spec three;
  three.nucleus = "19F";
  three.observe_mhz = 376.5;
  three.shift_ppm = 0;
  const auto t3 = test::Build_Nuts(dir / "n3", three, 3);
  EXPECT_EQ(RMNut(t3.Open().string()).kind, "X_ZG30");
  ASSERT_EQ(Open(t3.Open()), 0) << Message();
  EXPECT_EQ(s.Sniff_Tag, "NUTS Type3");
  EXPECT_EQ(s.Param.COMNT, "nuts three");
  Expect_Points(three);
  Expect_Line(three);

  // More than ten rows: a 2D data set.
  two.rows = 11;
  EXPECT_EQ(Open(test::Build_Nuts(dir / "n4", two, 2).Open()), 1);
  EXPECT_EQ(Message(), "2D Data !");
  EXPECT_EQ(s.Sniff_Tag, "NUTS Type1,2");
  EXPECT_EQ(s.Array_Rows, 1);
}

TEST_F(Other_Vendors, MacSpectrumAndItsKindCheck) {
  Vendor_Spec spec;
  spec.spectrum = true;
  spec.shift_ppm = 12.0;  // the first point as stored
  const auto built = test::Build_Mac(dir / "mac", spec);
  EXPECT_EQ(Check_Mac(built.Open().string()).kind, "ZG30  ");
  ASSERT_EQ(Open(built.Open()), 0) << Message();
  EXPECT_EQ(s.Param.Instrument_Name, "MAC FID");
  EXPECT_EQ(s.Param.IRATN, 5);
  EXPECT_FLOAT_EQ(s.Param.PW[1], 9);
  Expect_Points(spec);
  // The first point stored is the last, highest one; the step is one
  // point's width.
  EXPECT_NEAR(s.Spec_Axis[1023], 12.0, 1e-4);
  EXPECT_NEAR(s.Spec_Axis[1023] - s.Spec_Axis[0], 1023 * 8000.0 / 1024 / s.Spectrum_Frequency, 1e-4);

  // A FID: the shift of the first point stands for the highest frequency of
  // the spectrum to come, half a width less one point above the carrier.
  Vendor_Spec fid;
  ASSERT_EQ(Open(test::Build_Mac(dir / "mac2", fid).Open()), 0) << Message();
  Expect_Points(fid);
  const double top_hz = (1023.0 / 1024 - 0.5) * fid.sweep_hz;
  Expect_Line(fid, (fid.observe_mhz + top_hz * 1e-6) / (1 + fid.shift_ppm * 1e-6));

  // A byte below 32 in the kind: no MAC file.
  auto b = test::Read_Bytes(built.Open());
  b[1116] = 7;
  test::Write_Bytes(built.Open(), b);
  EXPECT_EQ(Check_Mac(built.Open().string()).status, 1);
  EXPECT_EQ(Open(built.Open()), 1);
  EXPECT_EQ(Message(), "Dataが違います");
}

TEST_F(Other_Vendors, CsvKindsKeysAndParameterWindow) {
  // The first field of the first line decides.
  test::Write_Text(dir / "list.txt", "12.5,3\r\n13,4\r\n");
  test::Write_Text(dir / "keyed.csv", "$CSVSTART\r\n$END\r\n");
  test::Write_Text(dir / "other.csv", "Name,value\r\n1,2\r\n");
  EXPECT_EQ(Check_Csv((dir / "list.txt").string()).kind, "OLDCSV");
  EXPECT_EQ(Check_Csv((dir / "keyed.csv").string()).kind, "CSV");
  EXPECT_EQ(Open(dir / "other.csv"), 1);
  EXPECT_EQ(Message(), "Dataが違います");
  EXPECT_EQ(ui.shown.back().title, "Dataエラー");

  // Units of FREQU and OFR; the data stop at the first line that is not a
  // pair of numbers.
  const Csv_Read c = Parse_Csv(
      "$CSVSTART\r\nFREQU,400,MHZ\r\nOFR,500130,KHZ\r\nCGNBL,3\r\nOBNUC,13C\r\n$END\r\n1,2\r\n3,4\r\n5\r\n6,7\r\n");
  EXPECT_FLOAT_EQ(c.data.p.FREQU, 400000000.0f);
  EXPECT_NEAR(c.data.Observe_Frequency, 500.13, 1e-9);
  EXPECT_EQ(c.CGNBL, "3");
  EXPECT_EQ(c.data.re, (std::vector<float>{1, 3}));
  EXPECT_EQ(c.data.im, (std::vector<float>{2, 4}));

  // A keyed FID, chosen in the CSV open's file dialog: the parameter window
  // shows its values and OK takes them.
  Vendor_Spec spec;
  spec.shift_ppm = 0;
  const auto built = test::Build_Csv(dir / "csv", spec);
  const int32_t remembered = s.settings.Int("INITIATL FILE");
  ui.file_answers = {platform::File_Answer{built.Open().string(), 5}};
  ASSERT_EQ(NM1D_m112_Click(s, {"", [](Session&) { return std::string("OKX"); }}), 0) << Message();
  EXPECT_EQ(ui.file_requests.back().filter_index, 5);
  EXPECT_EQ(ui.file_requests.back().initial_name, "*.csv");
  EXPECT_EQ(s.settings.Int("INITIATL FILE"), remembered);
  ASSERT_EQ(ui.parameter_tables.size(), 1u);
  const std::vector<platform::Param_Row> shown = ui.parameter_tables[0];
  ASSERT_EQ(shown.size(), 5u);
  EXPECT_EQ(shown[1].name, "* FID or Spectrum");
  EXPECT_EQ(shown[1].value, "F");
  EXPECT_EQ(shown[2].value, "1H");
  EXPECT_EQ(s.Param.EXMOD, "ZG30");
  EXPECT_FLOAT_EQ(s.Param.FREQU, 8000);
  Expect_Points(spec);
  Expect_Line(spec);

  // A number list: the operator gives what it lacks; "??" is refused and
  // cancel ends the open, both keeping the data set in hand.
  std::string list;
  for (int k = 0; k < 64; ++k) list += std::to_string(k) + "\r\n";
  test::Write_Text(dir / "list.dat", list);
  const auto answer = [](const char* nucleus) {
    return std::vector<platform::Param_Row>{
        {"* ObNuc", nucleus}, {"* ObFreq(MHz)", "100.6"}, {"* Sweep Width(Hz)", "25000"}};
  };
  ui.parameter_answers = {answer("??"), std::nullopt, answer("13C")};
  EXPECT_EQ(Open(dir / "list.dat"), 1);
  EXPECT_EQ(Message(), "Dataが大きすぎるか、ﾊﾟﾗﾒｰﾀｴﾗｰ");
  EXPECT_EQ(s.Open_Name, built.Open().string());
  EXPECT_EQ(Open(dir / "list.dat"), 1);
  EXPECT_EQ(s.Param.EXMOD, "ZG30");
  ASSERT_EQ(Open(dir / "list.dat"), 0) << Message();
  EXPECT_EQ(s.Is_Spectrum, 1);  // "S" by default
  EXPECT_EQ(s.Param.OBNUC, "13C");
  EXPECT_EQ(s.Spec_Points, 64);
  EXPECT_EQ(s.Spec_Re(63), 0);  // the first line is the highest frequency
  EXPECT_EQ(s.Spec_Re(0), 63);
}

TEST_F(Other_Vendors, WordQuestionAndRawFidParameterTable) {
  // Form120: the three kinds of words, or nothing on cancel.
  ui.choice_answers = {0, 1, 2, -1};
  for (const char* word : {"SINGLE", "LONG", "DOUBLE", ""}) EXPECT_EQ(Form120(s), word);

  // NMR1D_Form103 corrects the FID just read; a refused value ends it.
  ASSERT_EQ(Open(test::Build_Msl(dir / "msl", {}).Open()), 0) << Message();
  ui.parameter_answers = {std::vector<platform::Param_Row>{{"* ObFreq(MHz)", "500.2"}, {"Scans", "64"}},
                          std::vector<platform::Param_Row>{{"* Sweep Width(Hz)", "0"}}};
  ASSERT_EQ(NMR1D_Form103(s), 0);
  EXPECT_EQ(ui.parameter_tables.back()[0].value, "1H");
  EXPECT_EQ(s.Observe_Frequency, 500.2);
  EXPECT_EQ(s.Param.SCANS, 64);
  EXPECT_EQ(s.Param.Observe_Text, "500.20");
  EXPECT_EQ(NMR1D_Form103(s), 1);
  EXPECT_FLOAT_EQ(s.Param.FREQU, 8000);
}

TEST_F(Other_Vendors, VarianWordsArraysSpectrumAndQuestion) {
  // An array of three FIDs in 32-bit words, d1 arrayed.
  Vendor_Spec spec;
  spec.rows = 3;
  spec.shift_ppm = 1.25;
  const auto built = test::Build_Varian(dir / "var", spec);
  EXPECT_EQ(RMV(built.Open().string()).kind, "ASK");
  ASSERT_EQ(Open(built.Open()), 0) << Message();
  EXPECT_EQ(ui.shown.back().text, "Array データですか(Yes),2Dデータですか(No)");
  EXPECT_EQ(ui.shown.back().title, "Data Type");
  EXPECT_EQ(s.Is_Fid, 1);
  EXPECT_EQ(s.Param.Instrument_Name, "Varian UNITY");
  EXPECT_EQ(s.Fid_Points, 1024);
  EXPECT_EQ(s.Param.POINT, 1024);
  EXPECT_EQ(s.Param.OBNUC, "1H");  // "H1" in the file
  EXPECT_EQ(s.Param.SLVNT, "cdcl3");
  EXPECT_EQ(s.Param.COMNT, "built varian set");  // from `text`: no sample name
  EXPECT_EQ(s.Param.SCANS, 16);
  EXPECT_FLOAT_EQ(s.Param.FREQU, 8000);
  EXPECT_FLOAT_EQ(s.Param.PW[0], 8.5f);
  EXPECT_FLOAT_EQ(s.Param.OBFRQ, 400);
  EXPECT_NEAR(s.Param.OBSET, 130, 1e-3);  // kHz
  EXPECT_NEAR(s.Observe_Frequency, 400.13, 1e-9);
  EXPECT_NEAR(s.Spectrum_Frequency, 400.13 / (1 + 1.25e-6), 1e-7);
  EXPECT_NEAR(s.Param.ACQTM, 1024 / 8000.0, 1e-7);
  EXPECT_EQ(s.Delay_List, (std::vector<float>{0.1f, 0.2f, 0.3f}));
  EXPECT_EQ(s.Delay_Raw, s.Delay_List);
  EXPECT_EQ(s.Delay_Name, "D1");
  EXPECT_EQ(s.Delay_Unit, "t(D1)");
  EXPECT_EQ(s.Delay_Axis_Label, "\\i(t)\\-((D1)) / s");
  Expect_Points(spec, true);
  Expect_Line(spec);

  // 16-bit and float words; a status of float words wins over the size.
  for (auto words : {test::Varian_Words::Int16, test::Varian_Words::Float32}) {
    Vendor_Spec one;
    one.amplitude = 1e4;
    ASSERT_EQ(Open(test::Build_Varian(dir / ("w" + std::to_string(static_cast<int>(words))), one, words).Open()), 0)
        << Message();
    EXPECT_EQ(s.Array_Rows, 1);
    Expect_Points(one, true);
  }

  // A processed spectrum in "datdir" with the parameters in the parent.
  Vendor_Spec data;
  data.spectrum = true;
  data.shift_ppm = 4.75;
  ASSERT_EQ(Open(test::Build_Varian(dir / "vdata", data).Open()), 0) << Message();
  EXPECT_EQ(s.Is_Spectrum, 1);
  Expect_Points(data);
  EXPECT_NEAR(s.Spec_Axis[512], 4.75, 1e-4);  // the carrier
  EXPECT_NEAR(s.Spec_Axis[513] - s.Spec_Axis[512], 8000.0 / 1024 / s.Spectrum_Frequency, 1e-6);

  // 32 rows: the operator says 2D; 33 rows are 2D without a question.
  Vendor_Spec many;
  many.rows = 32;
  ui.button_answers = {2};
  EXPECT_EQ(Open(test::Build_Varian(dir / "v32", many).Open()), 1);
  EXPECT_EQ(Message(), "2D Data !");
  const size_t shown = ui.shown.size();
  many.rows = 33;
  const auto v33 = test::Build_Varian(dir / "v33", many);
  EXPECT_EQ(RMV(v33.Open().string()).kind, "V2D");
  EXPECT_EQ(Open(v33.Open()), 1);
  EXPECT_EQ(ui.shown.size(), shown + 1);
  EXPECT_EQ(Message(), "2D Data !");
  EXPECT_EQ(s.Is_Spectrum, 1);  // the former data set stays
  EXPECT_EQ(Varian_Kind(127, "PHASE"), "1D");
  EXPECT_EQ(Varian_Kind(128, "PHASE"), "ASK");
  std::string path = v33.Open().string();
  EXPECT_EQ(Resolve_Data_File(s, path).tag, "VARIAN2");
}

TEST_F(Other_Vendors, JeolExBothLayoutsAlphaAndLambda) {
  // Keyed layout: an array of two FIDs of 1000 points, padded to 1024.
  Vendor_Spec spec;
  spec.rows = 2;
  spec.points = 1000;
  spec.shift_ppm = 0;
  const auto keyed = test::Build_Ex(dir / "ex", spec, false);
  EXPECT_EQ(RMA(keyed.Open().string()).kind, "X_ZG30");
  ASSERT_EQ(Open(keyed.folder / "ex.gxp"), 0) << Message();  // either member
  EXPECT_EQ(s.File_Class, ".GXP");
  EXPECT_EQ(s.Open_Name, keyed.Open().string());
  EXPECT_EQ(s.Fid_Points, 1000);  // the POINT line behind the empty line doesn't count
  EXPECT_EQ(s.Param.POINT, 1024);
  EXPECT_EQ(s.Param.EXMOD, "ZG30");
  EXPECT_EQ(s.Param.COMNT, "built gx file");
  EXPECT_FLOAT_EQ(s.Param.FILTR, 5000);  // FLT, then FILTR: the later wins
  EXPECT_EQ(s.Param.SCANS, 16);  // from TIMES
  EXPECT_NEAR(s.Observe_Frequency, 400.13, 1e-6);
  Expect_Points(spec);
  Expect_Line(spec);

  // A first line of 79 characters is the keyed layout's head, of 80 the
  // long line.
  for (size_t width : {79, 80}) {
    Ex_Params x;
    RP(std::string("POINT  4096") + std::string(width - 11, ' ') + "\nPOINT  2048\n", x);
    EXPECT_EQ(x.d.p.POINT, width == 79 ? 2048 : 4096) << width;
  }
  // 1048576 real values are 524288 complex points, the most the transform
  // takes; 1048578 are too many.
  Vendor_Spec big;
  big.points = 524288;
  const auto large = test::Build_Ex(dir / "ex_big", big, false);
  ASSERT_EQ(Open(large.Open()), 0) << Message();
  EXPECT_EQ(s.Fid_Points, 524288);
  std::string gxp = test::Read_Text(large.folder / "ex.gxp");
  gxp.replace(gxp.find("POINT  1048576"), 14, "POINT  1048578");
  test::Write_Text(large.folder / "ex.gxp", gxp);
  EXPECT_EQ(Open(large.Open()), 1);
  EXPECT_EQ(Message(), "Dataが大きすぎるか、ﾊﾟﾗﾒｰﾀｴﾗｰ");

  // Long-line layout, a spectrum: the carrier at its reference shift.
  Vendor_Spec spectrum;
  spectrum.spectrum = true;
  ASSERT_EQ(Open(test::Build_Ex(dir / "ex_long", spectrum, true).Open()), 0) << Message();
  EXPECT_EQ(s.Is_Spectrum, 1);
  EXPECT_EQ(s.Param.OBNUC, "1H");
  EXPECT_EQ(s.Param.COMNT, "built gx file");
  EXPECT_FLOAT_EQ(s.Param.FREQU, 8000);
  Expect_Points(spectrum);
  EXPECT_NEAR(s.Spec_Axis[512], 4.5, 1e-4);

  // ALPHA, VAX numbers, both data starts; LAMBDA. A FID keeps its carrier
  // as 0 ppm.
  Vendor_Spec fid;
  fid.nucleus = "13C";
  fid.observe_mhz = 100.61;
  fid.sweep_hz = 25600;
  fid.line_hz = -3000;  // on a point: 25 Hz a point
  const auto alpha = test::Build_Alpha(dir / "alpha", fid, false);
  EXPECT_EQ(Check_Alpha(alpha.Open().string()).kind, "1D:ZG30");
  ASSERT_EQ(Open(alpha.Open()), 0) << Message();
  EXPECT_EQ(s.File_Class, ".ALP");
  EXPECT_EQ(s.Param.OBNUC, "13C");
  EXPECT_FLOAT_EQ(s.Param.FREQU, 25600);
  EXPECT_FLOAT_EQ(s.Param.PW[0], 8.5f);  // microseconds
  EXPECT_FLOAT_EQ(s.Param.CTEMP, 25.5f);
  EXPECT_NEAR(s.Observe_Frequency, 100.61, 1e-9);
  Expect_Points(fid);
  Expect_Line(fid, fid.observe_mhz);
  ASSERT_EQ(Open(test::Build_Alpha(dir / "alpha_long", spectrum, true).Open()), 0) << Message();
  Expect_Points(spectrum);
  EXPECT_NEAR(s.Spec_Axis[512], 4.5, 1e-4);
  // Points in a second dimension: a 2D set, refused.
  std::vector<uint8_t> two_d = test::Read_Bytes(alpha.Open());
  Put_LE_Int32(two_d, 528, 64);
  test::Write_Bytes(alpha.Open(), two_d);
  EXPECT_EQ(Check_Alpha(alpha.Open().string()).kind, "2D:ZG30");
  EXPECT_EQ(Open(alpha.Open()), 1);
  EXPECT_EQ(Message(), "2D Data !");

  ASSERT_EQ(Open(test::Build_Lambda(dir / "lambda", fid).Open()), 0) << Message();
  EXPECT_EQ(s.File_Class, ".LAM");
  EXPECT_EQ(s.Param.SLVNT, "CDCL3");
  EXPECT_EQ(s.Param.SCANS, 16);
  Expect_Points(fid);
  Expect_Line(fid, fid.observe_mhz);
  ASSERT_EQ(Open(test::Build_Lambda(dir / "lambda_s", spectrum).Open()), 0) << Message();
  EXPECT_EQ(s.Is_Spectrum, 1);
  Expect_Points(spectrum);
  EXPECT_NEAR(s.Spec_Axis[512], 4.5, 1e-4);
}

TEST_F(Other_Vendors, DamagedCopiesEndWithAMessageAndKeepTheFormerData) {
  Vendor_Spec former_spec;
  former_spec.spectrum = true;
  const auto former = test::Build_Mac(dir / "former", former_spec).Open();
  ASSERT_EQ(Open(former), 0);
  Vendor_Spec array;
  array.rows = 2;
  const std::vector<test::Built_File> families = {
      test::Build_Msl(dir / "msl", {}),   test::Build_Ge(dir / "ge", array),
      test::Build_Cmx(dir / "cmx", array), test::Build_Nuts(dir / "nuts1", {}, 1),
      test::Build_Nuts(dir / "nuts2", array, 2), test::Build_Nuts(dir / "nuts3", {}, 3),
      test::Build_Mac(dir / "mac", {}),   test::Build_Varian(dir / "varian", array),
      test::Build_Varian(dir / "varian_data", former_spec), test::Build_Ex(dir / "ex", array, false),
      test::Build_Ex(dir / "ex_long", former_spec, true), test::Build_Alpha(dir / "alpha", {}, false),
      test::Build_Alpha(dir / "alpha_long", former_spec, true), test::Build_Lambda(dir / "lambda", {})};
  for (const auto& built : families) {
    ASSERT_EQ(Open(built.Open()), 0) << built.open << ": " << Message();
    ASSERT_EQ(Open(former), 0);
    for (const fs::path& bad : test::Damaged_Copies(built, dir / "damaged")) {
      SCOPED_TRACE(bad);
      const size_t shown = ui.shown.size();
      EXPECT_NE(Open(bad), 0);
      EXPECT_GT(ui.shown.size(), shown);
      EXPECT_EQ(s.Open_Name, former.string());
      EXPECT_EQ(s.Spec_Re(1023), 1000);
    }
  }
  // A cut CSV reads what stands before the cut, or is refused.
  for (const fs::path& bad : test::Damaged_Copies(test::Build_Csv(dir / "csv", {}), dir / "damaged")) {
    SCOPED_TRACE(bad);
    if (Open(bad) != 0) {
      EXPECT_EQ(s.Open_Name, former.string());
    }
    ASSERT_EQ(Open(former), 0);
  }
}

}  // namespace
}  // namespace tevo::datafiles
