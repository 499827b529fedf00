// The spectrum trace, the axis and the paint as lists of surface operations.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "display/axis.h"
#include "display/paint.h"
#include "display/peak_labels.h"
#include "display/spectrum_trace.h"
#include "editing/reference.h"
#include "platform/recording_surface.h"
#include "display/recorded_strokes.h"
#include "session/session.h"

using namespace tevo;
using namespace tevo::display;
using platform::Point;
using platform::Recorded_Op;
using platform::RecordingSurface;

namespace {

// n points, 0.001 ppm apart from 0 ppm, a slow ramp of 0..0.5 with a spike
// of 1.0 at point `spike`; the display copy equals the spectrum.
void Load(Session& s, int32_t n, int32_t spike) {
  s.Array_Rows = 1;
  Alloc_Point_Arrays(s, n);
  s.Spec_Points = n;
  s.Spectrum_Frequency = 400;
  s.Param.RESOL = 0.4f;
  s.Param.FREQU = 0.4f * static_cast<float>(n);
  for (int32_t i = 0; i < n; ++i) {
    s.Spec_Axis[static_cast<std::size_t>(i)] = static_cast<float>(i * 0.001);
    s.Spec_Re(static_cast<std::size_t>(i)) =
        i == spike ? 1.0f : static_cast<float>(0.5 * i / n);
  }
  s.settings.Set("DISP EXTEND MODE", 1.0);
  Build_Disp_Arrays(s, 0);
  s.Max_Abs = 1;
  s.X_Left = s.Spec_Axis[static_cast<std::size_t>(n - 1)];
  s.X_Right = 0;
  s.Y_Mag = 1;
  s.Y_Full_Scale = 1;
  s.Is_Spectrum = 1;
}

using test::Strokes;

}  // namespace

TEST(SpectrumTrace, ColumnsKeepExtremesAndReEnterAtTheLastValue) {
  Session s;
  const int32_t n = 32768, spike = 16000;
  Load(s, n, spike);
  RecordingSurface surf(400, 400);
  const int base = 300, top = 0, bottom = 400;
  Draw_Main_Spectrum(s, surf, s.X_Left, s.X_Right, 0, 400, 1.0, 0, base, top, bottom, 0);
  const auto strokes = Strokes(surf);
  ASSERT_EQ(strokes.size(), 1u);
  const std::vector<Point>& v = strokes[0];

  // Independently: the first, last, highest and lowest y of every column.
  struct Column {
    int first, last, lo, hi;
  };
  std::map<int, Column> cols;
  const double ax = 400 / (0 - static_cast<double>(s.X_Left));
  for (int32_t i = 0; i < n; ++i) {
    const int px = static_cast<int>(std::nearbyint(ax * (s.Disp_X[static_cast<std::size_t>(i)] - s.X_Left)));
    const int py = static_cast<int>(std::nearbyint(base - (base - top) * s.Disp_Y(static_cast<std::size_t>(i))));
    auto it = cols.find(px);
    if (it == cols.end())
      cols[px] = {py, py, py, py};
    else
      it->second = {it->second.first, py, std::min(it->second.lo, py), std::max(it->second.hi, py)};
  }
  ASSERT_EQ(cols.size(), 401u);

  std::map<int, std::vector<int>> got;
  for (const Point& p : v) got[p.x].push_back(p.y);
  ASSERT_EQ(got.size(), cols.size());
  const int spike_px = static_cast<int>(std::nearbyint(ax * (s.Disp_X[spike] - s.X_Left)));
  for (const auto& [x, ys] : got) {
    const Column& c = cols.at(x);
    EXPECT_LE(ys.size(), 4u) << "column " << x;
    if (c.lo == c.hi) EXPECT_EQ(ys.size(), 1u) << "flat column " << x;
    EXPECT_EQ(ys.front(), c.first) << "column " << x;
    EXPECT_EQ(ys.back(), c.last) << "column " << x;  // the stroke leaves at the last value
    EXPECT_EQ(*std::min_element(ys.begin(), ys.end()), c.lo) << "column " << x;
    EXPECT_EQ(*std::max_element(ys.begin(), ys.end()), c.hi) << "column " << x;
  }
  // The ramp rises 0.4 pixels a column, so most columns are flat.
  const auto flat = std::count_if(cols.begin(), cols.end(), [](const auto& kv) { return kv.second.lo == kv.second.hi; });
  EXPECT_GT(flat, 200);
  // The spike's column reaches the top although the spike is one point of 82.
  EXPECT_EQ(cols.at(spike_px).lo, top);
  EXPECT_EQ(*std::min_element(got[spike_px].begin(), got[spike_px].end()), top);
  // Vertices run column by column from right to left (ascending ppm).
  for (std::size_t k = 1; k < v.size(); ++k) EXPECT_LE(v[k].x, v[k - 1].x);
}

TEST(SpectrumTrace, FlushCasesEmptyViewsAndSelection) {
  Point buf[8];
  // All values equal: nothing added to the column's first vertex.
  EXPECT_EQ(Flush_Pixel_Column(buf, 1, 50, 50, 50, 50, 7), 1);
  // First is the lowest on screen (largest y): to the top, then back down.
  int c = Flush_Pixel_Column(buf, 1, 80, 80, 20, 40, 7);
  ASSERT_EQ(c, 3);
  EXPECT_EQ(buf[1].y, 20);
  EXPECT_EQ(buf[2].y, 40);
  // First in the middle, last at the bottom: top then bottom, two vertices.
  c = Flush_Pixel_Column(buf, 1, 50, 80, 20, 80, 7);
  ASSERT_EQ(c, 3);
  EXPECT_EQ(buf[1].y, 20);
  EXPECT_EQ(buf[2].y, 80);
  // First in the middle, last elsewhere: bottom, top, last.
  c = Flush_Pixel_Column(buf, 1, 50, 80, 20, 60, 7);
  ASSERT_EQ(c, 4);
  EXPECT_EQ(buf[1].y, 80);
  EXPECT_EQ(buf[2].y, 20);
  EXPECT_EQ(buf[3].y, 60);

  Session s;
  Load(s, 4096, 100);
  RecordingSurface surf(400, 400);
  // Equal limits draw nothing.
  s.X_Right = s.X_Left;
  Draw_Main_Spectrum(s, surf, s.X_Left, s.X_Right, 0, 400, 1.0, 0, 300, 0, 400, 0);
  EXPECT_TRUE(surf.Ops_Of(Recorded_Op::Kind::Line_To).empty());

  // A window of 1..2 ppm: the stroke stays inside the frame and the
  // selection 1200..1500 is stroked again in its own colour over its pixels.
  s.X_Left = 2;
  s.X_Right = 1;
  s.Select_Start = 1200;
  s.Select_End = 1500;
  surf.Forget_Ops();
  Draw_Main_Spectrum(s, surf, s.X_Left, s.X_Right, 0, 400, 1.0, 0, 300, 0, 400, 0);
  const auto strokes = Strokes(surf);
  ASSERT_EQ(strokes.size(), 2u);
  for (const Point& p : strokes[0]) {
    EXPECT_GE(p.x, 0);
    EXPECT_LE(p.x, 400);
  }
  // 1.2 ppm lies at x = 320, 1.5 ppm at x = 200; the selection starts and
  // ends on the vertices of the columns that hold those points.
  EXPECT_NEAR(strokes[1].front().x, 320, 1);
  EXPECT_NEAR(strokes[1].back().x, 200, 1);
  const auto pens = surf.Ops_Of(Recorded_Op::Kind::Pen);
  EXPECT_EQ(pens.back().colour, 0x0000FF);
}

TEST(Axis, TicksLabelsAndUnitOnARealLayout) {
  Session s;
  Load(s, 1024, 0);
  RecordingSurface surf(1000, 600);
  int bottom = 0;
  // 0.7 .. -0.7 ppm: step 0.1; the tick at zero prints "0", never "-0.0".
  Draw_Axis_X(s, surf, 0.7, -0.7, 0, 1000, 500, bottom, surf.Pixels_Per_Point());
  std::vector<std::string> labels;
  for (const auto& op : surf.Ops_Of(Recorded_Op::Kind::Text_Out)) labels.push_back(op.text);
  ASSERT_FALSE(labels.empty());
  EXPECT_EQ(labels.front(), "0.7");
  EXPECT_NE(std::find(labels.begin(), labels.end(), "0"), labels.end());
  EXPECT_NE(std::find(labels.begin(), labels.end(), "-0.3"), labels.end());
  for (const auto& t : labels) EXPECT_NE(t.rfind("-0.0", 0), 0u) << t;
  // Unit label at the bottom centre: a Greek "d" (delta) in the Symbol
  // face, then " / ppm".
  EXPECT_EQ(labels.back(), " / ppm");
  const auto runs = surf.Ops_Of(Recorded_Op::Kind::Text_Out);
  ASSERT_GE(runs.size(), 2u);
  EXPECT_EQ(runs[runs.size() - 2].text, "d");
  EXPECT_EQ(runs[runs.size() - 2].font.Charset, 2);
  // Major ticks every 1/14 of the width, minor ones between them: fifteen
  // majors (0.7 .. -0.7) and four minors in each of the fourteen gaps.
  int majors = 0, minors = 0;
  for (const auto& op : surf.Ops_Of(Recorded_Op::Kind::Line_To)) {
    if (op.from.x != op.at.x) continue;
    (op.at.y - op.from.y > 4 ? majors : minors)++;
  }
  EXPECT_EQ(majors, 15);
  EXPECT_EQ(minors, 14 * 4);
  // The axis' lowest y lies below the base line by the tick and a text line.
  const int h = static_cast<int>(std::lround(9 * surf.Pixels_Per_Point()));
  EXPECT_EQ(bottom, static_cast<int>(std::nearbyint(500 + 0.5 * h + h)));

  // Hz over 300000 .. 0: steps of 50000 (exponent 4) print scientifically.
  surf.Forget_Ops();
  Draw_Axis_X(s, surf, 300000, 0, 0, 1000, 500, bottom, surf.Pixels_Per_Point());
  const auto sci = surf.Ops_Of(Recorded_Op::Kind::Text_Out);
  ASSERT_GE(sci.size(), 2u);
  // The first label, 3.0 x 10^5: the power is a smaller run, raised.
  EXPECT_EQ(sci[0].text, "3.0x10");
  EXPECT_EQ(sci[1].text, "5");
  EXPECT_LT(sci[1].height, sci[0].height);
  EXPECT_LE(sci[1].at.y, sci[0].at.y);  // top never below the mantissa's
}

TEST(PeakLabels, SpreadingAroundCloseNeighboursAndAtTheEdges) {
  // Two peaks one pixel apart: each label moves by half the overlap.
  const int two[] = {500, 499};
  auto p = Peak_Reduction_Pos(two, 12, 0, 1000);
  EXPECT_DOUBLE_EQ(p[0], 505.5);
  EXPECT_DOUBLE_EQ(p[1], 493.5);

  // Peaks well apart keep their places; a peak past the right edge is pinned.
  const int apart[] = {1005, 700, 600};
  p = Peak_Reduction_Pos(apart, 12, 0, 1000);
  EXPECT_EQ(p[0], 1000);
  EXPECT_EQ(p[1], 700);
  EXPECT_EQ(p[2], 600);

  // Ten peaks crowded at the left edge: labels never overlap, none goes far
  // past x0 and the crowd is pushed to the right.
  std::vector<int> crowd;
  for (int i = 0; i < 10; ++i) crowd.push_back(30 - i);
  p = Peak_Reduction_Pos(crowd, 12, 0, 1000);
  for (std::size_t k = 1; k < p.size(); ++k) EXPECT_GE(p[k - 1] - p[k], 12 - 1e-9) << k;
  EXPECT_GE(p.back(), 0 - 6.0);
  EXPECT_GT(p.front(), 30);

  // Worked by hand (W 12, frame 0..30), five peaks crowding the left edge:
  // the second lands at 5 - 12 + 5.5 = -1.5, past x0, and pushes the first to
  // 10.5. From then on each newcomer sits on the lowest label, which stays at
  // -1.5, and the whole run moves right by W, past x1 if need be.
  const int left_crowd[] = {5, 4, 3, 2, 1};
  p = Peak_Reduction_Pos(left_crowd, 12, 0, 30);
  EXPECT_EQ(p, (std::vector<double>{46.5, 34.5, 22.5, 10.5, -1.5}));
  // A peak at or beyond x1 is pinned there and starts a new run; the labels
  // after it walk left from the pinned one with no push back; a peak below
  // x0 is pinned to x0, one on x0 keeps its place.
  const int right_crowd[] = {40, 29, 28, 0, -3};
  p = Peak_Reduction_Pos(right_crowd, 12, 0, 30);
  EXPECT_EQ(p, (std::vector<double>{30, 18, 6, 0, 0}));

  // Crowded at the right edge with no room: once one passes x1 the rest
  // stack a label width apart.
  std::vector<int> right;
  for (int i = 0; i < 6; ++i) right.push_back(998 - i);
  p = Peak_Reduction_Pos(right, 12, 0, 1000);
  for (std::size_t k = 1; k < p.size(); ++k) EXPECT_GE(p[k - 1] - p[k], 12 - 1e-9) << k;
}

TEST(Paint, LayersInOrderAndXorMarks) {
  Session s;
  Load(s, 4096, 2000);
  s.settings.Set("DISP EXTEND MODE", 1.0);
  Peak_Rec pk;
  pk.Point = 2000;
  pk.Freq_Hz = static_cast<float>(2.0 * 400);  // 2 ppm above point 0
  s.Peaks.push_back(pk);
  RecordingSurface surf(800, 600);
  const Paint_Result r = Picture1_Paint(s, surf);
  EXPECT_EQ(r.frame.Frame_Right, 800);
  EXPECT_FALSE(r.mag_text.empty());

  // The base layer is kept as the picture before anything is XORed.
  const auto& ops = surf.Ops();
  auto keep = std::find_if(ops.begin(), ops.end(), [](const Recorded_Op& o) {
    return o.kind == Recorded_Op::Kind::Keep_Picture;
  });
  ASSERT_NE(keep, ops.end());
  for (auto it = ops.begin(); it != keep; ++it)
    if (it->kind == Recorded_Op::Kind::Line_To) EXPECT_EQ(it->op, platform::Raster_Op::Copy);
  // The peak's value is written upright after the picture was kept.
  bool label = false;
  for (auto it = keep; it != ops.end(); ++it)
    if (it->kind == Recorded_Op::Kind::Text_Out && it->text == "2.00" && it->angle == 900)
      label = true;
  EXPECT_TRUE(label);

  // A drag repaint keeps the base layer: no spectrum stroke, no new picture.
  surf.Forget_Ops();
  s.Keep_Base_Layer = 1;
  s.Cursor_X = 100;
  Picture1_Paint(s, surf);
  EXPECT_TRUE(surf.Ops_Of(Recorded_Op::Kind::Keep_Picture).empty());
  const auto lines = surf.Ops_Of(Recorded_Op::Kind::Line_To);
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines.front().op, platform::Raster_Op::Xor);
  EXPECT_EQ(lines.front().at.x, 100);
}

TEST(Paint, ReferenceAndPhaseMarkersStandAtTheirPoints) {
  const int32_t n = 4096;
  Session s;
  Load(s, n, 2000);
  // 0.4 Hz per point at 400 MHz: 0.001 ppm per point, point 1000 at 1 ppm.
  s.Observe_Frequency = 400;
  s.Param.SMTMS = 1000;
  s.Param.SMEXR = 1.0f;
  s.Param.Ref_Origin = 1.0f;
  ASSERT_EQ(s.Disp_Points, n);
  RecordingSurface surf(800, 600);

  // The pixel of spectrum point k: the view spans point n-1 (left) to 0,
  // and a reference move keeps the same points in view.
  Plot_Frame f = Picture1_Paint(s, surf).frame;
  const auto pixel = [&](double k) {
    return f.Frame_Left + (n - 1 - k) / (n - 1) * (f.Frame_Right - f.Frame_Left);
  };
  // The XOR markers: each named text with the vertical line left of it.
  struct Mark {
    int line_x = -1000, text_x = -1000;
    bool xor_line = false, full_height = false;
  };
  const auto marks = [&] {
    std::map<std::string, Mark> out;
    surf.Forget_Ops();
    f = Picture1_Paint(s, surf).frame;
    const auto& ops = surf.Ops();
    for (std::size_t k = 0; k < ops.size(); ++k) {
      const Recorded_Op& o = ops[k];
      if (o.kind != Recorded_Op::Kind::Text_Out) continue;
      if (o.text != "P" && o.text != "p2" && o.text != "pp") continue;
      Mark m;
      m.text_x = o.at.x;
      for (std::size_t j = k; j-- > 0;) {
        if (ops[j].kind != Recorded_Op::Kind::Line_To) continue;
        m.line_x = ops[j].at.x;
        m.xor_line = ops[j].op == platform::Raster_Op::Xor && ops[j].from.x == m.line_x;
        m.full_height = ops[j].from.y == f.Marker_Top && ops[j].at.y == f.Axis_Y;
        break;
      }
      out[o.text] = m;
    }
    return out;
  };

  // Outside the edit modes nothing is marked.
  EXPECT_TRUE(marks().empty());

  // Entering the reference mode: "P" alone, on the reference point.
  ASSERT_TRUE(editing::m21_Click(s));
  auto m = marks();
  ASSERT_EQ(m.size(), 1u);
  ASSERT_TRUE(m.count("P"));
  EXPECT_NEAR(m["P"].line_x, pixel(1000), 1.0);
  EXPECT_EQ(m["P"].text_x, m["P"].line_x + 2);
  EXPECT_TRUE(m["P"].xor_line);
  EXPECT_TRUE(m["P"].full_height);

  // A click at point 3000 with 2.5 typed: "P" moves there, "p2" stays on
  // point 1000 where the reference stood before.
  s.Reference_Value = 2.5f;
  editing::Set_Reference_On_Click(s, 3000);
  m = marks();
  ASSERT_EQ(m.size(), 2u);
  EXPECT_NEAR(m["P"].line_x, pixel(3000), 1.0);
  EXPECT_NEAR(m["p2"].line_x, pixel(1000), 1.0);
  EXPECT_EQ(m["p2"].text_x, m["p2"].line_x + 2);
  EXPECT_TRUE(m["p2"].xor_line);

  // A drag-repaint over the kept picture draws the same marks again.
  s.Keep_Base_Layer = 1;
  EXPECT_EQ(marks().size(), 2u);
  s.Keep_Base_Layer = 0;

  // The phase mode marks its pivots "pp" and "p2" the same way; a pivot
  // off the spectrum is not drawn.
  s.Mode.Edit_Mode = 2;
  s.Pivot_Pp = 500;
  s.Pivot_P2 = n;
  m = marks();
  ASSERT_EQ(m.size(), 1u);
  EXPECT_NEAR(m["pp"].line_x, pixel(500), 1.0);
  s.Pivot_P2 = 3500;
  m = marks();
  EXPECT_NEAR(m["p2"].line_x, pixel(3500), 1.0);
}
