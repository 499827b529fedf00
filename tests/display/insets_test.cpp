// Insets and array stacks: the inset rectangle, scale and magnification
// against values worked out by hand, the limits of the panel's controls,
// undo of inset edits, an inset over the real aspirin spectrum, and stacks
// of two and ten rows. The pictures go to "screenshots" beside the test
// program.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "display/array_stack.h"
#include "display/inset_mode.h"
#include "display/insets.h"
#include "display/paint.h"
#include "display/view_commands.h"
#include "editing/peaks.h"
#include "editing/spectrum_rows.h"
#include "editing/undo.h"
#include "platform/qt/qt_output.h"
#include "platform/recording_surface.h"
#include "display/recorded_strokes.h"
#include "session/command_flow.h"

using namespace tevo;
using namespace tevo::display;
using platform::Point;
using platform::Recorded_Op;
using platform::RecordingSurface;

namespace {

namespace fs = std::filesystem;

fs::path Shot(const std::string& name) {
  const fs::path dir = fs::read_symlink("/proc/self/exe").parent_path() / "screenshots";
  fs::create_directories(dir);
  return dir / (name + ".png");
}

using test::Strokes;

Point Highest(const std::vector<Point>& v) {
  return *std::min_element(v.begin(), v.end(), [](Point a, Point b) { return a.y < b.y; });
}

// One Lorentzian line at point 300 of 1024 on a 4000 Hz, 400 MHz axis.
test::Spectrum_Session One_Line() {
  return test::Spectrum_Session(1024, [](int32_t k) { return test::Lorentz(1.0, 300, 3, k); });
}

}  // namespace

TEST(Insets, RectangleScaleMagnificationAndControlLimits) {
  // A frame of 1200 x 1200 pixels: base at 950, top at 0.
  const Plot_Frame f = Make_Plot_Frame(0, 1200, 0, 1200, 1);
  Inset_Rec r;
  r.Frame_X0 = 0.25f, r.Frame_X1 = 0.75f, r.Frame_Y0 = 0.4f, r.Frame_Y1 = 0.9f;
  const Inset_Box b = Inset_Rectangle(f, r);
  EXPECT_EQ(b.left, 300);
  EXPECT_EQ(b.right, 900);
  EXPECT_EQ(b.top, 95);  // 950 - 950 * 0.9
  EXPECT_EQ(b.base, 516);  // 950 - 950 * 0.06 / 1.06 - 380 = 516.2
  EXPECT_EQ(b.axis, 534);  // 950 - 950 * 0.04 / 1.06 - 380 = 534.2
  EXPECT_EQ(b.bottom, 570);

  // q = 0.9 - 0.4 - 0.06 = 0.44.
  Session s;
  s.Max_Abs = 2;
  r.Inset_Y_Full = 4;
  r.Inset_Y_Offset = 0.1f;
  double full = 0, offset = 0;
  ASSERT_TRUE(Inset_Y_Scale(s, r, full, offset));
  EXPECT_NEAR(full, 2.0 / 4 * 0.44, 1e-6);
  EXPECT_NEAR(offset, 0.1 / 0.44 * 4, 1e-6);
  // No room above the base line: no scale, and nothing is drawn.
  Inset_Rec flat = r;
  flat.Frame_Y1 = flat.Frame_Y0 + 0.06f;
  EXPECT_FALSE(Inset_Y_Scale(s, flat, full, offset));

  // The magnification under the inset to three figures.
  s.X_Left = 10, s.X_Right = 0;
  s.Insets = {r, r, r};
  s.Insets[0].Inset_Left = 5, s.Insets[0].Inset_Right = 4;  // 0.5 * 10 / 1
  s.Insets[1].Frame_X0 = 0.3f, s.Insets[1].Frame_X1 = 0.7f;
  s.Insets[1].Inset_Left = 7.5f, s.Insets[1].Inset_Right = 6.6f;  // 0.4 * 10 / 0.9 = 4.444
  s.Insets[2].Frame_X0 = 0, s.Insets[2].Frame_X1 = 0.0123456f;
  s.Insets[2].Inset_Left = 10, s.Insets[2].Inset_Right = 0;  // 0.0123456
  Refresh_Inset_Scale(s);
  EXPECT_FLOAT_EQ(s.Insets[0].Inset_X_Scale, 5.0f);
  EXPECT_FLOAT_EQ(s.Insets[1].Inset_X_Scale, 4.44f);
  EXPECT_FLOAT_EQ(s.Insets[2].Inset_X_Scale, 0.0124f);

  // Magnification steps: 0.1 below 2, 1 from 2 up, never below 0.1.
  EXPECT_DOUBLE_EQ(Inset_Mag_Step(2.0, false), 1.9);
  EXPECT_DOUBLE_EQ(Inset_Mag_Step(2.0, true), 3.0);
  EXPECT_DOUBLE_EQ(Inset_Mag_Step(1.9, true), 2.0);
  EXPECT_DOUBLE_EQ(Inset_Mag_Step(5.0, false), 4.0);
  EXPECT_DOUBLE_EQ(Inset_Mag_Step(0.1, false), 0.1);

  // Twenty insets; the 21st is refused by the button and by the mouse.
  test::Spectrum_Session t = One_Line();
  ASSERT_TRUE(m26_Click(t.s));
  for (int k = 0; k < Inset_Max; ++k) ASSERT_TRUE(Inset_Add(t.s, 1.0 - 0.1 * k, 0.9 - 0.1 * k)) << k;
  EXPECT_FALSE(MultiView_New(t.s));
  EXPECT_FALSE(Inset_Add(t.s, 3.0, 2.0));
  EXPECT_EQ(t.s.Insets.size(), 20u);

  // The controls of the current inset and their limits. The X magnification
  // keeps the window's centre: 5 ppm of view over 4 is 1.25 ppm.
  t.s.X_Left = 3, t.s.X_Right = -2;
  t.s.Inset_Cur = 0;
  const double centre = 0.5 * (t.s.Insets[0].Inset_Left + t.s.Insets[0].Inset_Right);
  ASSERT_TRUE(Set_Inset_X_Mag(t.s, 4));
  EXPECT_NEAR(t.s.Insets[0].Inset_Left, centre + 0.625, 1e-5);
  EXPECT_NEAR(t.s.Insets[0].Inset_Right, centre - 0.625, 1e-5);
  EXPECT_FALSE(Set_Inset_X_Mag(t.s, 0.05));
  EXPECT_FALSE(Set_Inset_Y_Mag(t.s, 0.09));
  t.s.Y_Mag = 0.5f;
  ASSERT_TRUE(Set_Inset_Y_Mag(t.s, 3));
  EXPECT_FLOAT_EQ(t.s.Insets[0].Inset_Y_Full, 1.5f);
  EXPECT_FALSE(Set_Inset_Offset(t.s, 1.01));
  ASSERT_TRUE(Set_Inset_Offset(t.s, 0.9995));
  ASSERT_TRUE(Step_Inset_Offset(t.s, true));  // 0.002 / 1.5 would pass 1
  EXPECT_FLOAT_EQ(t.s.Insets[0].Inset_Y_Offset, 1.0f);
  EXPECT_EQ(Inset_Field_Texts(t.s).x_mag, "4.0");
}

TEST(Insets, UndoOfAddMoveResizeAndDeleteRestoresTheRecordsExactly) {
  test::Spectrum_Session t = One_Line();
  Session& s = t.s;
  ASSERT_TRUE(m26_Click(s));
  EXPECT_EQ(s.Mode.Edit_Mode, session::Mode_Inset);
  const Plot_Frame f = Make_Plot_Frame(0, 1000, 0, 600, 1);
  auto x_of = [&](double ppm) { return Round_Pixel(X_To_Pixel(ppm, s.X_Left, s.X_Right, 0, 1000)); };
  // Three insets, each by its window dragged over the spectrum.
  for (double ppm : {4.0, 0.0, -4.0}) {
    ASSERT_TRUE(MultiView_New(s));
    ASSERT_TRUE(Inset_Mouse(s, f, x_of(ppm + 0.5), 300, x_of(ppm - 0.5), 300));
  }
  ASSERT_EQ(s.Insets.size(), 3u);
  EXPECT_EQ(s.Inset_Cur, 2);
  EXPECT_EQ(editing::Undo_Caption(s).caption, "取り消し(拡大図の追加)");
  const std::vector<Inset_Rec> made = s.Insets;

  // Drag the middle one by its inside: it moves by the drag; undo restores it.
  const Inset_Box b = Inset_Rectangle(f, s.Insets[1]);
  const int cx = (b.left + b.right) / 2, cy = (b.top + b.bottom) / 2;
  Inset_Box outline;
  ASSERT_TRUE(Inset_Drag_Box(s, f, cx, cy, cx - 40, cy + 30, outline));
  ASSERT_TRUE(Inset_Mouse(s, f, cx, cy, cx - 40, cy + 30));
  const Inset_Box moved = Inset_Rectangle(f, s.Insets[1]);
  EXPECT_EQ(outline.left, moved.left);
  EXPECT_EQ(outline.bottom, moved.bottom);
  EXPECT_EQ(moved.left, b.left - 40);
  EXPECT_EQ(moved.bottom, b.bottom + 30);
  EXPECT_EQ(editing::Undo_Caption(s).caption, "取り消し(拡大図の移動)");
  ASSERT_TRUE(editing::Undo_Step(s));
  EXPECT_EQ(s.Insets, made);

  // From its lower right corner it is resized.
  ASSERT_TRUE(Inset_Mouse(s, f, b.right, b.bottom, b.right + 50, b.bottom - 20));
  EXPECT_EQ(Inset_Rectangle(f, s.Insets[1]).right, b.right + 50);
  EXPECT_EQ(Inset_Rectangle(f, s.Insets[1]).left, b.left);
  EXPECT_EQ(editing::Undo_Caption(s).caption, "取り消し(拡大図の大きさ変更)");
  ASSERT_TRUE(editing::Undo_Step(s));
  EXPECT_EQ(s.Insets, made);

  // Delete asks first: No keeps it, Yes removes it; undo puts it back in
  // its place, before the one behind it.
  s.Inset_Cur = 1;
  t.ui.button_answers = {2};
  EXPECT_FALSE(MultiView_Delete(s));
  EXPECT_EQ(t.ui.shown.back().text, "この拡大図を削除しますか");
  t.ui.button_answers = {1};
  ASSERT_TRUE(MultiView_Delete(s));
  ASSERT_EQ(s.Insets.size(), 2u);
  EXPECT_EQ(s.Insets[1], made[2]);
  ASSERT_TRUE(editing::Undo_Step(s));
  EXPECT_EQ(s.Insets, made);

  // The undo of the last add takes the third inset away again; leaving the
  // mode ends undo.
  ASSERT_TRUE(editing::Undo_Step(s));
  EXPECT_EQ(s.Insets, std::vector<Inset_Rec>(made.begin(), made.begin() + 2));
  MultiViewCommand1_Click(s);
  EXPECT_EQ(s.Mode.Edit_Mode, session::Mode_Basic);
  EXPECT_FALSE(editing::Undo_Caption(s).enabled);
}

TEST(Insets, AspirinInsetDrawsItsOwnTraceAxisAndPeakValues) {
  platform::Ensure_Gui_Application();
  platform::Probe_Font_Table();
  test::Temp_Dir home;
  platform::Scripted_Ui ui;
  ui.quiet = true;
  Session s;
  s.ui = &ui;
  ASSERT_TRUE(test::Open_Bruker_Fid(s, home.path(), "bruker-data-test@1.0.0/data/unzipped/aspirin-1h/1"));
  Build_Disp_Arrays(s, 0);
  View_After_Load(s);
  s.Peak_Level = 0.05f;
  ASSERT_GT(editing::Peak_Search_All(s), 5);
  for (const char* key : {"MULTI VIEW DISP", "MULTI SCALE DISP", "MULTI PEAK DISP", "MULTI WAKU DISP"})
    s.settings.Set(key, 1);
  s.settings.Set("PEAK PICK DISP", 0);  // the main plot's own values would cover the inset
  s.settings.Set("MULTI PEAK POS", 1);  // values above the inset's trace, to two decimals
  s.settings.Set("MUL PEAK DIGIT", 2);
  s.settings.Set("MUL PEAK NUM", 1);

  // The aromatic protons, 8.3 to 6.8 ppm, magnified into the empty upper left.
  constexpr int W = 1000, H = 700;
  const double ppp = 96.0 / 72.0;
  const Plot_Frame f = Make_Plot_Frame(0, W, 0, H, ppp);
  auto x_of = [&](double ppm) { return Round_Pixel(X_To_Pixel(ppm, s.X_Left, s.X_Right, 0, W)); };
  ASSERT_TRUE(m26_Click(s));
  ASSERT_TRUE(MultiView_New(s));
  ASSERT_TRUE(Inset_Mouse(s, f, x_of(8.3), 200, x_of(6.8), 200));
  Inset_Rec& r = s.Insets[0];
  r.Frame_X0 = 0.02f, r.Frame_X1 = 0.42f, r.Frame_Y0 = 0.35f, r.Frame_Y1 = 0.95f;
  ASSERT_TRUE(Set_Inset_Y_Mag(s, 2.5));
  MultiViewCommand1_Click(s);
  Refresh_Inset_Scale(s);

  // Its trace reaches highest where the spectrum is largest in its window,
  // found here from the points themselves.
  const Inset_Box b = Inset_Rectangle(f, r);
  double full = 0, offset = 0;
  ASSERT_TRUE(Inset_Y_Scale(s, r, full, offset));
  int32_t top_point = -1;
  for (int32_t i = 0; i < s.Spec_Points; ++i) {
    const float ppm = s.Spec_Axis[static_cast<std::size_t>(i)];
    if (ppm > 6.8f && ppm < 8.3f && (top_point < 0 || s.Spec_Re(i) > s.Spec_Re(top_point))) top_point = i;
  }
  ASSERT_GE(top_point, 0);
  RecordingSurface trace(W, H, ppp * 72);
  Draw_Multiview(s, trace, f, 0);
  const auto strokes = Strokes(trace);
  ASSERT_EQ(strokes.size(), 1u);
  const Point peak = Highest(strokes[0]);
  EXPECT_NEAR(peak.x, X_To_Pixel(s.Spec_Axis[static_cast<std::size_t>(top_point)], r.Inset_Left, r.Inset_Right,
                                 b.left, b.right), 1.5);
  EXPECT_NEAR(peak.y, std::max<double>(b.top, Y_To_Pixel(s.Spec_Re(top_point), b.base, b.top, full, offset)), 1.5);
  for (const Point& p : strokes[0]) {
    EXPECT_GE(p.x, b.left);
    EXPECT_LE(p.x, b.right);
  }

  // The whole picture: its axis numbers lie inside its window and under
  // its box, the upright peak values (angle in tenths of a degree) inside
  // its window too.
  RecordingSurface all(W, H, ppp * 72);
  Picture1_Paint(s, all);
  int axis_numbers = 0, values = 0;
  std::vector<int> numbers;
  for (const Recorded_Op& op : all.Ops_Of(Recorded_Op::Kind::Text_Out)) {
    if (op.angle != 900 && op.at.y > b.top && op.at.y < b.axis && op.at.x > b.left && op.at.x < b.right)
      numbers.push_back(std::atoi(op.text.c_str()));  // a peak's number over its mark
    if (op.at.x < b.left - 20 || op.at.x > b.right + 20 || op.at.y < b.top || op.at.y > b.bottom + 200) continue;
    const std::size_t digit = op.text.find_first_of("0123456789");
    if (digit == std::string::npos) continue;
    const double v = std::atof(op.text.c_str() + digit);
    if (op.angle != 900 && op.at.y >= b.axis && op.at.y < b.bottom + 40) {
      ++axis_numbers;
      EXPECT_TRUE(v >= 6.7 && v <= 8.4) << op.text;
    } else if (op.angle == 900) {
      ++values;
      EXPECT_TRUE(v > 6.8 && v < 8.3) << op.text;
    }
  }
  EXPECT_GE(axis_numbers, 3);
  EXPECT_GE(values, 4);
  // The numbers are those of the peaks inside the window, in list order.
  std::vector<int> inside;
  for (std::size_t i = 0; i < s.Peaks.size(); ++i) {
    const double ppm = s.Peaks[i].Freq_Hz / s.Spectrum_Frequency + s.Spec_Axis[0];
    const int x = Round_Pixel(X_To_Pixel(ppm, r.Inset_Left, r.Inset_Right, b.left, b.right));
    if (x > b.left && x < b.right) inside.push_back(static_cast<int>(i) + 1);
  }
  EXPECT_EQ(numbers, inside);
  // "x3.75" style text: the magnification is about 20 ppm of view over 1.5.
  EXPECT_NEAR(r.Inset_X_Scale, 0.4 * std::fabs(s.X_Left - s.X_Right) / 1.5, 0.05 * r.Inset_X_Scale);

  ASSERT_EQ(platform::Render_To_File(Shot("inset_aspirin"), W, H, 96.0, 0xFFFFFF,
                                     [&s](platform::Surface& surf) { Picture1_Paint(s, surf); }),
            0);
}

TEST(ArrayStack, RowsShiftByTheXAndYRatiosBothWays) {
  platform::Ensure_Gui_Application();
  // n rows of one line at ppm 0 whose height recovers as 1 - 2 exp(-t / T1)
  // over t = 0 .. 3 T1: the first rows point down, the last up.
  auto stack = [](int n) {
    auto t = std::make_unique<test::Spectrum_Session>(1024, [](int32_t) { return std::complex<double>(0, 0); });
    Session& s = t->s;
    s.Array_Rows = n;
    Alloc_Point_Arrays(s, 1024);
    s.Spec_Points = 1024;
    editing::Axis_From_Reference(s);
    for (int r = 0; r < n; ++r) {
      const double h = 1 - 2 * std::exp(-3.0 * r / (n - 1));
      for (int32_t k = 0; k < 1024; ++k) s.Spec_Re(k, r) = static_cast<float>(test::Lorentz(h, 512, 4, k).real());
    }
    Build_Disp_Arrays(s, 0);
    s.X_Left = s.Spec_Axis[1023];
    s.X_Right = s.Spec_Axis.front();
    s.Y_Mag = 0.5f;
    s.Y_Full_Scale = 4;
    s.Y_Offset = 0.25f;
    s.settings.Set("DISP ARRAY MODE", 1);
    return t;
  };
  constexpr int W = 800, H = 600;
  struct Case {
    int rows;
    double x_ratio, y_ratio;
    const char* shot;
  };
  for (const Case& c : {Case{2, 0, 0, "array_2_rows_flat"}, Case{2, 0.2, 0.3, "array_2_rows"},
                        Case{10, 0.3, 0.5, "array_10_rows"}, Case{10, -0.3, -0.25, "array_10_rows_negative"}}) {
    SCOPED_TRACE(c.shot);
    auto t = stack(c.rows);
    Session& s = t->s;
    s.settings.Set("X AXIS RATIO", c.x_ratio);
    s.settings.Set("Y AXIS RATIO", c.y_ratio);
    const Plot_Frame f = Make_Array_Frame(0, W, 0, H, 1, c.x_ratio);
    RecordingSurface surf(W, H, 72);
    Draw_Spec_Array(s, surf, s.X_Left, s.X_Right, f.Frame_Left, f.Frame_Right, f.Frame_Left_Last,
                    f.Frame_Right_Last, s.Y_Full_Scale, s.Y_Offset, f.Frame_Base, f.Frame_Top, H, 0);
    const auto strokes = Strokes(surf);
    ASSERT_EQ(strokes.size(), static_cast<std::size_t>(c.rows));
    // Row r: its line at ppm 0 sits at the first row's x scale moved to
    // xr0; its foot and tip by the row's lift.
    const int n = c.rows;
    const double width = W * (1 - std::fabs(c.x_ratio));
    const double x0 = c.x_ratio <= 0 ? -W * c.x_ratio : 0, x0_last = c.x_ratio <= 0 ? 0 : W * c.x_ratio;
    for (int r = 0; r < n; ++r) {
      const double xr0 = std::nearbyint((x0 * (n - 1 - r) + x0_last * r) / (n - 1));
      const double px = xr0 + (0 - s.X_Left) / (s.X_Right - s.X_Left) * width;
      const double h = 1 - 2 * std::exp(-3.0 * r / (n - 1));
      const double by = f.Frame_Base + (f.Frame_Top - f.Frame_Base) * (s.Y_Offset + c.y_ratio * r / (n - 1));
      const double tip = std::clamp(by + (f.Frame_Top - f.Frame_Base) * h / s.Y_Full_Scale, 0.0, double(H));
      const std::vector<Point>& v = strokes[static_cast<std::size_t>(r)];
      const Point far = *std::max_element(v.begin(), v.end(), [&](Point a, Point b) {
        return std::fabs(a.y - by) < std::fabs(b.y - by);
      });
      EXPECT_NEAR(far.x, px, 1.5) << r;
      EXPECT_NEAR(far.y, tip, 1.5) << r;
      EXPECT_NEAR(v.front().y, by, 1.5) << r;  // the first point is far from the line: the row's foot
    }
    ASSERT_EQ(platform::Render_To_File(Shot(c.shot), W, H, 96.0, 0xFFFFFF,
                                       [&s](platform::Surface& sf) { Picture1_Paint(s, sf); }),
              0);
  }
}
