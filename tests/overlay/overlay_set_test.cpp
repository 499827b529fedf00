// The overlay set on real spectra: the same compound from a Bruker FID and a
// JCAMP-DX file lines up by chemical shift, a field 2 % off is refused for
// "CENT"; delete, copy and exchange with their undo, the ASCII export of a slot; the row fields' limits;
// the slots in the main plot; and a native file that carries three slots.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <string>

#include "datafiles/open_file.h"
#include "display/paint.h"
#include "overlay/overlay_set.h"
#include "platform/recording_surface.h"
#include "platform/ui.h"
#include "session/session.h"
#include "signal/fid_processing.h"
#include "support/test_support.h"
#include "support/vendor_files.h"

namespace tevo::overlay {
namespace {

namespace fs = std::filesystem;

// The strongest line of the aspirin 1H spectrum (the acetyl CH3) in the
// vendor's own peak list of the experiment (pdata/1/peaklist.xml).
constexpr double Aspirin_Strongest_Ppm = 2.2937;

Session Quiet_Session(platform::Scripted_Ui& ui, const fs::path& home) {
  Session s;
  ui.quiet = true;
  s.ui = &ui;
  s.App_Path = home.string();
  s.Log_Mode = -1;
  return s;
}

// ppm of the point of largest magnitude.
double Strongest_Ppm(const std::vector<float>& x, const std::vector<float>& re, const std::vector<float>& im) {
  std::size_t best = 0;
  double top = -1;
  for (std::size_t i = 0; i < re.size(); ++i) {
    const double m = std::hypot(re[i], i < im.size() ? im[i] : 0.0f);
    if (m > top) top = m, best = i;
  }
  return x[best];
}

double Strongest_Ppm(const Overlay_Slot& o) { return Strongest_Ppm(o.Slot_X, o.Slot_Y, o.Slot_Y_Im); }

// A small slot of n points on 0 .. 1 ppm with one line at point `line`.
Overlay_Slot Small_Slot(int n, int line, const std::string& comment) {
  Overlay_Slot o;
  o.Slot_Points = n;
  o.Slot_Show = 1;
  o.Slot_Max_Abs = 1;
  o.Slot_Y_Full = 1 / 0.95f;
  o.Slot_Comment = comment;
  for (int i = 0; i < n; ++i) {
    o.Slot_X.push_back(static_cast<float>(i) / static_cast<float>(n - 1));
    o.Slot_Y.push_back(i == line ? 1.0f : 0.0f);
  }
  return o;
}

TEST(OverlaySet, AspirinFromBrukerAndJcampLinesUpAndTheNativeFileKeepsTheSlots) {
  test::Temp_Dir dir;
  platform::Scripted_Ui ui;
  Session s = Quiet_Session(ui, dir.path());
  const std::string fid = test::Test_Data_File("bruker-data-test@1.0.0/data/unzipped/aspirin-1h/1/fid").string();
  const std::string dx = test::Test_Data_File("jcamp-data-test@0.2.1/data/aspirin-1h.dx").string();
  ASSERT_EQ(datafiles::NM1D_m11_Click(s, {fid, {}}), 0);
  signal::Process_Report report;
  ASSERT_EQ(signal::Process_Fid(s, {}, report), 0);
  std::vector<float> re(s.Spec_Points), im(s.Spec_Points);
  for (int i = 0; i < s.Spec_Points; ++i) re[std::size_t(i)] = s.Spec_Re(std::size_t(i)), im[std::size_t(i)] = s.Spec_Im(std::size_t(i));
  const double main_top = Strongest_Ppm(s.Spec_Axis, re, im);
  EXPECT_NEAR(main_top, Aspirin_Strongest_Ppm, 0.01);

  // Slot 0 is the main spectrum and can't be replaced.
  EXPECT_EQ(Load_Slot(s, 0, dx), 1);
  EXPECT_EQ(ui.shown.back().text, "ｽﾍﾟｸﾄﾙ1 のﾃﾞｰﾀを変更する操作はできません。");
  // "CHEM" (the first answer of NMR1D_Form12) for both files.
  ui.choice_answers = {0, 0};
  ASSERT_EQ(Load_Slot(s, 2, fid), 0);
  ASSERT_EQ(Load_Slot(s, 3, dx), 0);
  EXPECT_NEAR(Strongest_Ppm(s.Overlay[2]), main_top, 0.01);
  EXPECT_NEAR(Strongest_Ppm(s.Overlay[3]), main_top, 0.01);

  // A slot in use asks first; No keeps it, and Form12 closed ends the load.
  ui.button_answers = {2};
  EXPECT_EQ(Load_Slot(s, 3, fid), 1);
  EXPECT_EQ(ui.shown.back().title, "スペクトルの上書き");
  EXPECT_NE(ui.shown.back().text.find("aspirin-1h.dx"), std::string::npos);
  EXPECT_EQ(s.Overlay[3].Slot_File, dx);
  ui.choice_answers = {-1};
  EXPECT_EQ(Load_Slot(s, 4, fid), 1);

  // "CENT" with a field 2 % off the main one: status 5, the slot stays empty.
  test::Vendor_Spec far;
  far.spectrum = true;
  far.observe_mhz = s.Observe_Frequency * 1.02;
  ui.choice_answers = {1};
  EXPECT_EQ(Load_Slot(s, 4, test::Build_Varian(dir / "far", far).Open().string()), Slot_Off_Frequency);
  EXPECT_EQ(s.Overlay[4].Slot_Points, 0);

  // A third slot from the main spectrum, with its peak and integral lists.
  Peak_Rec p;
  p.Point = 1234;
  p.Freq_Hz = static_cast<float>((s.Spec_Axis[1234] - s.Spec_Axis[0]) * s.Spectrum_Frequency);
  s.Peaks = {p};
  Integ_Rec g;
  g.Start_Point = 100, g.End_Point = 200, g.Value = 3.5f;
  s.Integrals = {g};
  ASSERT_TRUE(Copy_Slot(s, 0, 1));
  EXPECT_EQ(s.Overlay[1].Slot_Peaks, s.Peaks);
  EXPECT_EQ(s.Overlay[1].Slot_Integrals, s.Integrals);
  s.Overlay[1].Slot_Show_Peaks = 1;
  ASSERT_TRUE(Type_Slot_Mag(s, 2, "2.5").taken);

  // Saved and opened again: the open's question about the slots in memory
  // is answered "delete", and the three slots come back from the file.
  const std::string saved = (dir / "three.tv1").string();
  ASSERT_EQ(datafiles::m10_Click(s, saved), 0);
  platform::Scripted_Ui ui2;
  Session t = Quiet_Session(ui2, dir.path());
  t.Overlay[5] = Small_Slot(8, 2, "old");
  t.Data_Saved = 1;
  ui2.choice_answers = {0};
  ASSERT_EQ(datafiles::NM1D_m11_Click(t, {saved, {}}), 0);
  EXPECT_TRUE(ui2.choice_answers.empty());  // the keep question was asked
  for (int k = 1; k <= 9; ++k) {
    SCOPED_TRACE(k);
    const Overlay_Slot& a = s.Overlay[std::size_t(k)];
    const Overlay_Slot& b = t.Overlay[std::size_t(k)];
    ASSERT_EQ(b.Slot_Points, a.Slot_Points);
    EXPECT_EQ(b.Slot_Y, a.Slot_Y);
    ASSERT_EQ(b.Slot_X.size(), a.Slot_X.size());
    for (std::size_t i = 0; i < a.Slot_X.size(); ++i) ASSERT_NEAR(b.Slot_X[i], a.Slot_X[i], 1e-4) << i;
    ASSERT_EQ(b.Slot_Peaks.size(), a.Slot_Peaks.size());
    for (std::size_t i = 0; i < a.Slot_Peaks.size(); ++i) {
      EXPECT_EQ(b.Slot_Peaks[i].Point, a.Slot_Peaks[i].Point);
      EXPECT_NEAR(b.Slot_Peaks[i].Freq_Hz, a.Slot_Peaks[i].Freq_Hz, 0.01);
    }
    EXPECT_EQ(b.Slot_Integrals.size(), a.Slot_Integrals.size());
    EXPECT_EQ(b.Slot_Y_Mag, a.Slot_Y_Mag);
    EXPECT_EQ(b.Slot_Y_Offset, a.Slot_Y_Offset);
    EXPECT_EQ(b.Slot_Comment, a.Slot_Comment);
  }
}

TEST(OverlaySet, DeleteCopyAndExchangeWithTheirUndo) {
  test::Temp_Dir dir;
  platform::Scripted_Ui ui;
  Session s = Quiet_Session(ui, dir.path());
  const Overlay_Slot two = Small_Slot(16, 3, "two");
  s.Overlay[2] = two;
  s.Overlay[2].Slot_Y_Offset = 0.2f;

  // Delete: No keeps the slot, Yes empties it and keeps its row's offset;
  // "取り消し" puts back the very record.
  ui.button_answers = {2, 1};
  EXPECT_FALSE(Delete_Slot(s, 2));
  EXPECT_EQ(s.Overlay[2].Slot_Points, 16);
  EXPECT_TRUE(Delete_Slot(s, 2));
  EXPECT_EQ(ui.shown.back().text, "3: twoを削除します");
  EXPECT_EQ(s.Overlay[2].Slot_Points, 0);
  EXPECT_FLOAT_EQ(s.Overlay[2].Slot_Y_Offset, 0.2f);
  ASSERT_TRUE(Undo_Slot_Change(s));
  EXPECT_EQ(s.Overlay[2].Slot_Y, two.Slot_Y);
  EXPECT_FALSE(Undo_Slot_Change(s));  // one step only

  // Exchange with an empty slot moves the data there and empties the other;
  // the offsets stay with the rows. Undo swaps back.
  s.Overlay[7].Slot_Y_Offset = 0.7f;
  ASSERT_TRUE(Exchange_Slots(s, 2, 7));
  EXPECT_EQ(s.Overlay[2].Slot_Points, 0);
  EXPECT_EQ(s.Overlay[7].Slot_Y, two.Slot_Y);
  EXPECT_FLOAT_EQ(s.Overlay[7].Slot_Y_Offset, 0.7f);
  EXPECT_FLOAT_EQ(s.Overlay[2].Slot_Y_Offset, 0.2f);
  ASSERT_TRUE(Undo_Slot_Change(s));
  EXPECT_EQ(s.Overlay[2].Slot_Y, two.Slot_Y);
  EXPECT_EQ(s.Overlay[7].Slot_Points, 0);
  EXPECT_FALSE(Exchange_Slots(s, 4, 5));
  EXPECT_EQ(ui.shown.back().text, "両方ににデータがありません");
  EXPECT_FALSE(Exchange_Slots(s, 0, 2));
  EXPECT_EQ(ui.shown.back().text, "ｽﾍﾟｸﾄﾙ1　は選択できません。");

  // Copy: an empty source is refused, a full target asks.
  EXPECT_FALSE(Copy_Slot(s, 4, 5));
  EXPECT_EQ(ui.shown.back().title, "コピー確認");
  ASSERT_TRUE(Copy_Slot(s, 2, 5));
  EXPECT_EQ(s.Overlay[5].Slot_Y, two.Slot_Y);
  EXPECT_FLOAT_EQ(s.Overlay[5].Slot_Y_Offset, 0.5f);  // the row's own default
  ui.button_answers = {2};
  EXPECT_FALSE(Copy_Slot(s, 2, 5));
  EXPECT_EQ(ui.shown.back().title, "上書き確認");
  EXPECT_FALSE(Copy_Slot(s, 0, 6));  // no main spectrum yet

  // The ASCII export of a slot writes its points, highest ppm first.
  const fs::path txt = dir / "two.txt";
  ASSERT_EQ(datafiles::m182_Click(s, 2, txt.string()), 0);
  const std::string text = test::Read_Text(txt);
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 16);
  EXPECT_EQ(text.rfind("1, 0,0", 0), 0u);
  EXPECT_NE(text.find("0.2, 1,0"), std::string::npos);
}

TEST(OverlaySet, RowFieldsKeepTheirLimits) {
  Session s;
  s.Overlay[1] = Small_Slot(8, 1, "one");
  EXPECT_FALSE(Type_Slot_Offset(s, 1, "1").taken);
  EXPECT_EQ(Type_Slot_Offset(s, 1, "-1").text, "0.0");  // refused: the old text returns
  EXPECT_TRUE(Type_Slot_Offset(s, 1, "-0.5").taken);
  EXPECT_FALSE(Type_Slot_Mag(s, 1, "0").taken);
  ASSERT_TRUE(Type_Slot_Mag(s, 1, "2").taken);
  EXPECT_EQ(Type_Overlay_Shift(s, "1.5").text, "1.0");
  EXPECT_FALSE(Overlay_Shift_Step(s, true));
  EXPECT_TRUE(Overlay_Shift_Step(s, false));
  EXPECT_FLOAT_EQ(s.Overlay_Shift, 0.99f);
  // Row 1 is the main spectrum's magnification and offset.
  s.Max_Abs = 4;
  ASSERT_TRUE(Type_Slot_Mag(s, 0, "2").taken);
  EXPECT_FLOAT_EQ(s.Y_Full_Scale, 2.0f);
  // The offset buttons stop short of the limit.
  s.Overlay[1].Slot_Y_Offset = 0.985f;
  EXPECT_TRUE(Slot_Offset_Step(s, 1, true));
  EXPECT_FALSE(Slot_Offset_Step(s, 1, true));
  // The check columns are refused on an empty slot.
  EXPECT_FALSE(Set_Slot_Show(s, 2, true));
  // Stack order by offset, the main spectrum among the slots.
  s.Spec_Points = 8;
  s.Overlay[3] = Small_Slot(8, 1, "three");
  s.Overlay[3].Slot_Y_Offset = -0.2f;
  const std::vector<Stack_Entry> order = Stack_Order(s, true);
  ASSERT_EQ(order.size(), 3u);
  EXPECT_EQ(order[0].slot, 3);
  EXPECT_EQ(order[1].slot, 0);
  EXPECT_EQ(order[2].slot, 1);
  EXPECT_NEAR(order[0].clip, -0.01, 1e-6);
  EXPECT_EQ(order[2].clip, 1);
}

TEST(OverlaySet, SlotsAreDrawnSlantedInTheirColoursUnlessHidden) {
  Session s;
  s.Spec_Points = 0;
  s.X_Left = 1;
  s.X_Right = 0;
  s.Y_Full_Scale = 1;
  s.settings.Set("COLOR-1", 0x0000FF);
  s.settings.Set("COLOR-2", 0x00FF00);
  s.Overlay[1] = Small_Slot(101, 50, "line at 0.5 ppm");
  s.Overlay[2] = Small_Slot(101, 50, "hidden");
  s.Overlay[2].Slot_Show = 0;
  s.Overlay[1].Slot_Y_Full = 1;
  s.Overlay[1].Slot_Y_Offset = 0.1f;
  // The x of the line's top per colour, and the y of that top.
  int frame_width = 0;
  const auto tops = [&s, &frame_width] {
    platform::RecordingSurface surf(1000, 600);
    const display::Plot_Frame f = display::Picture1_Paint(s, surf).frame;
    frame_width = f.Frame_Right - f.Frame_Left;
    std::map<platform::Colour, std::pair<int, int>> top;  // colour -> (x, y)
    for (const platform::Recorded_Op& op : surf.Ops())
      if (op.kind == platform::Recorded_Op::Kind::Line_To &&
          (!top.count(op.colour) || op.at.y < top[op.colour].second))
        top[op.colour] = {op.at.x, op.at.y};
    return top;
  };
  auto top = tops();
  ASSERT_TRUE(top.count(0x0000FF));
  EXPECT_FALSE(top.count(0x00FF00));  // shown flag 0: kept but not drawn
  const int straight = top[0x0000FF].first;
  // A slant of 0.5 at offset 0.1 moves the slot by 0.05 of the width.
  s.Overlay_Shift = 0.5f;
  top = tops();
  EXPECT_NEAR(top[0x0000FF].first - straight, 0.05 * frame_width, 1.5);
  // Intensity comparison draws at the main full scale: twice as high here.
  s.Overlay_Shift = 0;
  const int base_y = tops()[0x0000FF].second;
  s.Overlay[1].Slot_Y_Full = 2;
  const int low_y = tops()[0x0000FF].second;
  s.Overlay_Compare = 1;
  EXPECT_EQ(tops()[0x0000FF].second, base_y);
  EXPECT_GT(low_y, base_y);
}

}  // namespace
}  // namespace tevo::overlay
