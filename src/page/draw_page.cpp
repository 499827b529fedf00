#include "page/draw_page.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "display/array_stack.h"
#include "display/axis.h"
#include "display/insets.h"
#include "display/paint.h"
#include "display/peak_labels.h"
#include "display/plot_geometry.h"
#include "display/spectrum_trace.h"
#include "display/style.h"
#include "editing/integral_sum.h"
#include "overlay/difference.h"
#include "overlay/overlay_set.h"
#include "page/markup.h"
#include "page/parameter_block.h"
#include "page/print_lists.h"
#include "page/printer_setup.h"
#include "session/session.h"

namespace tevo::page {

using display::Round_Pixel;
using display::Setting_Colour;
using display::Setting_Int;
using display::Setting_Num;
using platform::Point;
using platform::Raster_Op;

namespace {

constexpr Colour White = 0xFFFFFF;

// Paper takes ink, not XOR: the plot routines draw their marks in XOR with
// colours made for the screen's background (colour ^ background, so that
// the XOR shows the colour). This surface passes everything on in copy mode
// and, while XOR is asked for, draws colour ^ background, which is the
// colour the screen would show over its background.
// For a black-and-white printer every ink is black: any colour but white
// draws black (a picture's pixels too), white stays the paper's, and so
// does the background of opaque text.
class Page_Ink final : public platform::Surface {
 public:
  Page_Ink(Surface& target, Colour screen_background, bool black_and_white)
      : t_(target), base_(screen_background), mono_(black_and_white) {
    t_.Set_Raster_Op(Raster_Op::Copy);
  }
  int Width() const override { return t_.Width(); }
  int Height() const override { return t_.Height(); }
  double Pixels_Per_Inch() const override { return t_.Pixels_Per_Inch(); }
  bool Is_Raster() const override { return t_.Is_Raster(); }

  void Set_Pen(platform::Pen_Style style, int width, Colour colour) override {
    pen_style_ = style;
    pen_width_ = width;
    pen_ = colour;
    t_.Set_Pen(style, width, Ink(pen_));
  }
  void Set_Brush(Colour colour, bool hollow) override {
    brush_ = colour;
    hollow_ = hollow;
    t_.Set_Brush(Ink(brush_), hollow);
  }
  void Set_Text_Colour(Colour colour) override {
    text_ = colour;
    t_.Set_Text_Colour(Ink(text_));
  }
  void Set_Raster_Op(Raster_Op op) override {
    if ((op == Raster_Op::Xor) == xor_) return;
    xor_ = op == Raster_Op::Xor;
    t_.Set_Pen(pen_style_, pen_width_, Ink(pen_));
    t_.Set_Brush(Ink(brush_), hollow_);
    t_.Set_Text_Colour(Ink(text_));
  }
  void Set_Fill_Mode(platform::Fill_Mode mode) override { t_.Set_Fill_Mode(mode); }
  void Set_Background_Mode(platform::Background_Mode mode) override { t_.Set_Background_Mode(mode); }
  void Set_Background_Colour(Colour colour) override {
    t_.Set_Background_Colour(mono_ ? White : colour);
  }

  void Move_To(int x, int y) override { t_.Move_To(x, y); }
  void Line_To(int x, int y) override { t_.Line_To(x, y); }
  Point Current_Position() const override { return t_.Current_Position(); }
  void Polygon(std::span<const Point> points) override { t_.Polygon(points); }
  Colour Get_Pixel(int x, int y) const override { return t_.Get_Pixel(x, y); }
  void Set_Pixel(int x, int y, Colour colour) override { t_.Set_Pixel(x, y, Ink(colour)); }
  void Text_Out(int x, int y, std::string_view text, const Font_Rec& font, double height_px,
                int angle_tenths, int weight) override {
    t_.Text_Out(x, y, text, font, height_px, angle_tenths, weight);
  }
  platform::Text_Size Text_Extent(std::string_view text, const Font_Rec& font, double height_px,
                                  int weight) override {
    return t_.Text_Extent(text, font, height_px, weight);
  }
  bool Draw_Picture(int x, int y, int w, int h, std::span<const uint8_t> bytes,
                    platform::Picture_Ink ink) override {
    ink.black = ink.black || mono_;
    return t_.Draw_Picture(x, y, w, h, bytes, ink);
  }
  void Clear() override { t_.Clear(); }
  void Keep_Picture() override {}
  void Drop_Picture() override {}

 private:
  Colour Ink(Colour c) const {
    const Colour ink = xor_ ? (c ^ base_) & 0xFFFFFF : c;
    return mono_ && ink != White ? 0 : ink;
  }

  Surface& t_;
  Colour base_;
  bool mono_;
  bool xor_ = false;
  platform::Pen_Style pen_style_ = platform::Pen_Style::Solid;
  int pen_width_ = 0;
  Colour pen_ = 0, brush_ = White, text_ = 0;
  bool hollow_ = false;
};

bool On(const Session& s, const char* key) { return Setting_Int(s, key, 0) == 1; }

void Fill(platform::Surface& surf, const Pixel_Rect& r, Colour colour) {
  surf.Set_Pen(platform::Pen_Style::Null, 0, colour);
  surf.Set_Brush(colour, false);
  const Point corners[4] = {{r.Left, r.Top}, {r.Right, r.Top}, {r.Right, r.Bottom}, {r.Left, r.Bottom}};
  surf.Polygon(corners);
}

void Outline(platform::Surface& surf, const Pixel_Rect& r, int width, Colour colour) {
  surf.Set_Pen(platform::Pen_Style::Solid, width, colour);
  surf.Move_To(r.Left, r.Top);
  surf.Line_To(r.Right, r.Top);
  surf.Line_To(r.Right, r.Bottom);
  surf.Line_To(r.Left, r.Bottom);
  surf.Line_To(r.Left, r.Top);
}

Font_Rec Gothic(float size) {
  Font_Rec f;
  f.Face = display::Gothic_Face;
  f.Size = size;
  return f;
}

// The font of the parameter block and the comment.
Font_Rec Para_Font(const Session& s) {
  return Print_Font(s, "PARA FONT NAME", "PARA FONT SIZE", "PARA FONT BOLD", "PARA FONT ITALIC",
                    Gothic(10));
}

// One trace in the frame with the page's pen width.
void Trace(platform::Surface& surf, const display::Plot_Frame& f,
           std::span<const float> x, std::span<const float> y, int32_t points, double left,
           double right, double full, double offset, Colour colour, int width) {
  if (left == right || !(full > 0)) return;
  const display::Trace_Vertices t =
      display::Decimate_Trace(x, y, points, left, right, f.Frame_Left, f.Frame_Right, full, offset,
                              f.Frame_Base, f.Frame_Top, f.Frame_Bottom);
  if (t.points.size() < 2) return;
  surf.Set_Pen(platform::Pen_Style::Solid, width, colour);
  display::Stroke(surf, t.points);
}

void Draw_Integrals(Session& s, platform::Surface& surf, const display::Plot_Frame& f,
                    Colour screen) {
  // The curve routines draw in XOR; the colour goes in pre-XORed so that the
  // page shows the colour itself.
  const Colour colour = Setting_Colour(s, "DISP INTEG COL", 0x008000) ^ screen;
  const bool bases = Setting_Int(s, "INTEG BASE DISP", 1) == 1;
  for (int i = 0; i < static_cast<int>(s.Integrals.size()); ++i) {
    editing::Calc_Integral(s, i);
    display::Draw_Integral_Curve(s, surf, i, colour, s.X_Left, s.X_Right, f.Frame_Left,
                                 f.Frame_Right, f.Frame_Top, f.Frame_Base, f.Pixel_Per_Point, false);
    if (bases)
      display::Draw_Integral_Base(s, surf, i, colour, s.X_Left, s.X_Right, f.Frame_Left,
                                  f.Frame_Right, s.Y_Full_Scale, s.Y_Offset, f.Frame_Base,
                                  f.Frame_Top, false);
  }
  surf.Set_Raster_Op(Raster_Op::Copy);
}

void Draw_Overlays(const Session& s, platform::Surface& surf, const display::Plot_Frame& f,
                   int width) {
  for (const overlay::Stack_Entry& e : overlay::Stack_Order(s, false)) {
    if (e.slot < 1 || e.slot >= overlay::Overlay_Rows) continue;
    const Overlay_Slot& o = s.Overlay[static_cast<std::size_t>(e.slot)];
    const overlay::Slot_Trace t = overlay::Drawn_Slot(s, e.slot);
    if (o.Slot_Show != 1 || t.points < 1) continue;
    double left = 0, right = 0;
    overlay::Slot_Draw_Limits(s, e.slot, left, right);
    Trace(surf, f, t.x, t.y, t.points, left, right, t.full, o.Slot_Y_Offset,
          overlay::Slot_Colour(s, e.slot), width);
  }
}

// Peak top marks ("DRAW PEAK TOP"): a stroke standing above each peak;
// with "PEAK TOP NUM" the peaks' numbers on leaders to their label places.
void Draw_Peak_Tops(Session& s, platform::Surface& surf, const Page_Geometry& g) {
  const bool numbers = On(s, "PEAK TOP NUM");
  const Colour colour = Setting_Colour(s, "DISP PEAKTOP COL", 0x0000FF);
  Font_Rec font = Gothic(8);
  font = Print_Font(s, "PEAK NUM FONT", "PEAK NUM SIZE", "PEAK NUM BOLD", "PEAK NUM ITALIC", font);
  const bool reversed = Setting_Int(s, "PEAK LIST DIRECT", 0) != 0;
  const int count = static_cast<int>(s.Peaks.size());
  for (const Peak_Top_Place& p : Peak_Top_Places(s, g)) {
    surf.Set_Pen(platform::Pen_Style::Solid, g.Line_Width(Setting_Num(s, "DRAW WIDTH PEAK", 1)), colour);
    surf.Move_To(p.X, p.Foot);
    surf.Line_To(p.X, p.Top);
    if (!numbers) continue;
    surf.Line_To(p.Label_X, p.Label_Y);
    const std::string text = std::to_string(reversed ? count - p.Index : p.Index + 1);
    const double w = Measure_Markup(surf, text, font, g.Scale);
    Draw_Markup(surf, 1, text, p.Label_X - w / 2, p.Label_Y - 1.1 * font.Size * g.Scale, 0, colour,
                0, 0, font, g.Scale);
  }
}

// "Shift" at the frame's upper right when the overlays are drawn slanted.
void Mark_Shift(const Session& s, platform::Surface& surf, const Page_Geometry& g) {
  bool shown = false;
  for (int k = 1; k < overlay::Overlay_Rows; ++k)
    shown = shown || (s.Overlay[static_cast<std::size_t>(k)].Slot_Show == 1 &&
                      s.Overlay[static_cast<std::size_t>(k)].Slot_Points > 0);
  if (!shown || s.Overlay_Shift == 0) return;
  const Font_Rec font = Gothic(9);
  const double w = Measure_Markup(surf, "Shift", font, g.Scale);
  Draw_Markup(surf, 1, "Shift", g.Frame.Right - w - 0.2 * g.Kx, g.Frame.Top + 0.2 * g.Ky, 0, 0, 0, 0,
              font, g.Scale);
}

Block_Style Main_Block_Style(const Session& s) {
  Block_Style b;
  b.outline = On(s, "PARA WAKU");
  b.outline_width = Setting_Num(s, "PARA WAKU WIDTH", 1);
  b.outline_colour = Setting_Colour(s, "PARA WAKU COL", 0);
  b.text = Setting_Colour(s, "PARAMETER COL", 0);
  b.fill = Setting_Colour(s, "PARAMETER BGCOL", White);
  b.opaque = Setting_Int(s, "PARA BGCOL TRANS", 0) == 0;
  b.font = Para_Font(s);
  return b;
}

void Draw_Parameter_Block(platform::Surface& surf, const Page_Geometry& g,
                          const std::vector<Parameter_Row>& rows, const Block_Style& b) {
  const Pixel_Rect& r = g.Para;
  if (b.outline) Outline(surf, r, g.Line_Width(b.outline_width), b.outline_colour);
  const Font_Rec& font = b.font;
  const double pad = 0.2 * g.Kx, em = font.Size * g.Scale;
  double caption_w = 0;
  for (const Parameter_Row& row : rows)
    if (!row.value.empty())
      caption_w = std::max(caption_w, Measure_Markup(surf, Plain_To_Inner(row.caption, font.Charset),
                                                     font, g.Scale));
  const double x = r.Left + pad, value_x = x + caption_w + em;
  double y = r.Top + pad;
  for (const Parameter_Row& row : rows) {
    if (y + 1.1 * em > r.Bottom) break;
    Markup_Result m = Draw_Markup(surf, 1, Plain_To_Inner(row.caption, font.Charset), x, y, 0,
                                  b.text, 0, 0, font, g.Scale);
    if (!row.value.empty())
      m = Draw_Markup(surf, 1, Plain_To_Inner(row.value, font.Charset), value_x, y, 0, b.text,
                      std::max(em, r.Right - pad - value_x), 0, font, g.Scale);
    y += m.Next_Y + 0.2 * em;
  }
}

// The sample's comment at "COMMENT POSIT": the frame's upper left, above
// the zero line or below the axis.
void Draw_Comment(const Session& s, platform::Surface& surf, const Page_Geometry& g,
                  int axis_bottom, const Font_Rec& font, Colour colour) {
  if (s.Param.COMNT.empty()) return;
  const std::string place = display::Setting_Text(s, "COMMENT POSIT", "");
  const double h = font.Size * g.Scale * 1.1, x = g.Frame.Left + 0.3 * g.Kx;
  double y = g.Frame.Top + 0.3 * g.Ky;
  if (place == "ベースラインの上") y = g.Zero_Y - h - 0.1 * g.Ky;
  if (place == "ベースラインの下") y = axis_bottom + 0.1 * g.Ky;
  Draw_Markup(surf, 1, Plain_To_Inner(s.Param.COMNT, font.Charset), x, y, 0, colour, 0, 0, font, g.Scale);
}

void Draw_Texts(const Session& s, platform::Surface& surf, const Page_Geometry& g) {
  for (const Text_Rec& t : s.Texts) {
    if (t.Print == 0 || t.Text.empty()) continue;
    const Font_Rec font = Page_Text_Font(t);
    const int x = g.Frame_X(t.X), y = g.Frame_Y(t.Y);
    if (Is_Rtf(t.Text))
      Draw_Rtf(surf, 1, Rtf_Caller_Colour, t.Text, x, y, 0, font, g.Scale);
    else
      Draw_Markup(surf, 1, t.Text, x, y, 0, t.Colour, 0, 0, font, g.Scale);
  }
}

// Pen-down intervals of the dash styles 1 .. 9, as parts of one cycle.
struct Dash_Run {
  double from, to;
};
const std::vector<Dash_Run>& Dash_Runs(int style) {
  static const std::vector<Dash_Run> table[9] = {
      {{0, 0.03}, {0.2, 0.23}, {0.4, 0.43}, {0.6, 0.63}, {0.8, 0.83}},
      {{0, 0.3}, {0.5, 0.8}},
      {{0, 0.1}, {0.2, 0.3}, {0.4, 0.5}, {0.6, 0.7}, {0.8, 0.9}},
      {{0, 0.2}, {0.3333, 0.5333}, {0.6667, 0.8667}},
      {{0, 0.6}, {0.7, 0.9}},
      {{0, 0.5}, {0.6, 0.7}, {0.8, 0.9}},
      {{0, 0.05}, {0.1, 0.15}, {0.2, 0.25}, {0.3, 0.35}, {0.4, 0.45}, {0.5, 0.55}, {0.6, 0.65},
       {0.7, 0.75}, {0.8, 0.85}, {0.9, 0.95}},
      {{0, 0.78}, {0.88, 0.9}},
      {{0, 0.66}, {0.76, 0.78}, {0.88, 0.9}},
  };
  return table[style - 1];
}

}  // namespace

Font_Rec Page_Text_Font(const Text_Rec& t) {
  Font_Rec font;
  font.Face = t.Font_Name.empty() ? Fonts().Default_Font : t.Font_Name;
  font.Size = std::max(3.0f, t.Font_Size);
  font.Bold = t.Bold;
  font.Italic = t.Italic;
  font.Colour = t.Colour;
  Check_Font(font);
  return font;
}

display::Plot_Frame Page_Frame(const Page_Geometry& g) {
  display::Plot_Frame f;
  f.Frame_Left = f.Frame_Left_Last = g.Frame.Left;
  f.Frame_Right = f.Frame_Right_Last = g.Frame.Right;
  f.Frame_Top = f.Marker_Top = g.Frame.Top;
  f.Frame_Bottom = g.Frame.Bottom;
  f.Frame_Base = g.Zero_Y;
  f.Axis_Y = f.Axis_Bottom = g.Axis_Y;
  f.Pixel_Per_Point = g.Scale;
  return f;
}

Pixel_Rect Peak_List_Rect(const Session& s, const Page_Geometry& g) {
  const double fw = g.Frame.Right - g.Frame.Left, fh = g.Frame.Bottom - g.Frame.Top;
  const double top = g.Frame.Bottom - fh * Setting_Num(s, "PEAK LIST TOP", 1);
  const double left = g.Frame.Left + fw * Setting_Num(s, "PEAK LIST LEFT", 0);
  return {Round_Pixel(left), Round_Pixel(top), Round_Pixel(left + fw * Setting_Num(s, "PEAK LIST WIDTH", 0.3)),
          Round_Pixel(top + fh * Setting_Num(s, "PEAK LIST HEIGHT", 0.5))};
}

std::vector<Peak_Top_Place> Peak_Top_Places(Session& s, const Page_Geometry& g) {
  std::vector<Peak_Top_Place> out;
  if (s.Spec_Points <= 0 || s.Disp_Points <= 0 || s.Disp_X.empty() || s.X_Left == s.X_Right) return out;
  const display::Plot_Frame f = Page_Frame(g);
  const double top_height = Setting_Num(s, "PEAK TOP HEIGHT", 0);
  const int height = Round_Pixel((top_height > 0 ? top_height : 30) * 0.01 * g.Kx);
  const int gap = Round_Pixel(Setting_Num(s, "PEAK LIST TOP HE", 0) * 0.04 * g.Kx);
  for (int i = 0; i < static_cast<int>(s.Peaks.size()); ++i) {
    const Peak_Rec& pk = s.Peaks[static_cast<std::size_t>(i)];
    const double ppm = pk.Freq_Hz / s.Spectrum_Frequency + s.Spec_Axis[0];
    const int x = Round_Pixel(display::X_To_Pixel(ppm, s.X_Left, s.X_Right, f.Frame_Left, f.Frame_Right));
    if (x <= f.Frame_Left || x >= f.Frame_Right) continue;
    const double value = Point_From_Ppm(s, static_cast<float>(ppm), s.Row()).height;
    const int y = std::max(f.Frame_Top + height + gap,
                           Round_Pixel(display::Y_To_Pixel(value, f.Frame_Base, f.Frame_Top,
                                                           s.Y_Full_Scale, s.Y_Offset)));
    const int top = y - gap - height;
    out.push_back({i, x, y - gap, top, Round_Pixel(x + pk.Label_Dx * g.Kx),
                   Round_Pixel(top - pk.Label_Dy * g.Ky)});
  }
  return out;
}

void Draw_Dash_Line(platform::Surface& surf, int x, int y, int style, double period,
                    double& phase) {
  const Point from = surf.Current_Position();
  if (period <= 0 || style < 1 || style > 9) {
    surf.Line_To(x, y);
    return;
  }
  const std::vector<Dash_Run>& runs = Dash_Runs(style);
  const int dx = x - from.x, dy = y - from.y;
  const int n = std::max(std::abs(dx), std::abs(dy));
  const double length = std::hypot(dx, dy);
  bool down = false;
  for (int i = 0; i <= n && n > 0; ++i) {
    const double s = phase + length * i / n;
    const double t = s / period - std::floor(s / period);
    const bool d = std::any_of(runs.begin(), runs.end(),
                               [t](const Dash_Run& r) { return t >= r.from && t < r.to; });
    const int px = from.x + Round_Pixel(static_cast<double>(dx) * i / n);
    const int py = from.y + Round_Pixel(static_cast<double>(dy) * i / n);
    if (d && !down) surf.Move_To(px, py);
    if (!d && down) surf.Line_To(px, py);
    down = d;
  }
  if (down)
    surf.Line_To(x, y);
  else
    surf.Move_To(x, y);
  phase = std::fmod(phase + length, period);
}

void Draw_Page_Line(platform::Surface& surf, const Page_Geometry& g, const Line_Rec& l) {
  const double ax = g.Frame_X(l.X1), ay = g.Frame_Y(l.Y1);
  const double bx = g.Frame_X(l.X2), by = g.Frame_Y(l.Y2);
  const double length = std::hypot(bx - ax, by - ay);
  if (length < 1) return;
  const int kind = std::clamp<int>(l.Kind, 0, 15);
  const int body = kind / 4, heads = kind % 4;
  const bool head_a = heads == 2 || heads == 3, head_b = heads == 1 || heads == 3;
  const int width = g.Line_Width(l.Width);
  // Heads default to 3 mm long and 2 mm wide; two heads share the length.
  double len = (l.Arrow_Len > 0 ? l.Arrow_Len : 30) * 0.01 * g.Kx;
  const double half = (l.Arrow_Width > 0 ? l.Arrow_Width : 20) * 0.005 * g.Kx;
  len = std::min(len, length / (head_a && head_b ? 2 : 1));
  const double ux = (bx - ax) / length, uy = (by - ay) / length;
  const double nx = -uy, ny = ux;
  auto at = [](double x, double y) { return Point{Round_Pixel(x), Round_Pixel(y)}; };
  const double a0x = head_a ? ax + ux * len : ax, a0y = head_a ? ay + uy * len : ay;
  const double b0x = head_b ? bx - ux * len : bx, b0y = head_b ? by - uy * len : by;

  if (body >= 2) {
    // White-filled (2) or hollow (3) outline of shaft and heads.
    const double sw = std::max(0.4 * half, 0.5 * width);
    std::vector<Point> p;
    if (head_a) p.push_back(at(ax, ay)), p.push_back(at(a0x + nx * half, a0y + ny * half));
    p.push_back(at(a0x + nx * sw, a0y + ny * sw));
    p.push_back(at(b0x + nx * sw, b0y + ny * sw));
    if (head_b)
      p.push_back(at(b0x + nx * half, b0y + ny * half)), p.push_back(at(bx, by)),
          p.push_back(at(b0x - nx * half, b0y - ny * half));
    p.push_back(at(b0x - nx * sw, b0y - ny * sw));
    p.push_back(at(a0x - nx * sw, a0y - ny * sw));
    if (head_a) p.push_back(at(a0x - nx * half, a0y - ny * half));
    surf.Set_Pen(platform::Pen_Style::Solid, width, l.Colour);
    surf.Set_Brush(White, body == 3);
    surf.Polygon(p);
    return;
  }
  // A thin line with open heads (0), or with solid heads the shaft stops at (1).
  surf.Set_Pen(platform::Pen_Style::Solid, width, l.Colour);
  const Point from = body == 1 ? at(a0x, a0y) : at(ax, ay);
  const Point to = body == 1 ? at(b0x, b0y) : at(bx, by);
  double phase = 0;
  surf.Move_To(from.x, from.y);
  Draw_Dash_Line(surf, to.x, to.y, l.Style, g.Kx, phase);
  auto head = [&](double tx, double ty, double bx0, double by0) {
    const Point tip = at(tx, ty), left = at(bx0 + nx * half, by0 + ny * half),
                right = at(bx0 - nx * half, by0 - ny * half);
    if (body == 0) {
      surf.Move_To(left.x, left.y);
      surf.Line_To(tip.x, tip.y);
      surf.Line_To(right.x, right.y);
    } else {
      surf.Set_Brush(l.Colour, false);
      const Point tri[3] = {tip, left, right};
      surf.Polygon(tri);
    }
  };
  if (head_a) head(ax, ay, a0x, a0y);
  if (head_b) head(bx, by, b0x, b0y);
}

void Draw_Page(Session& s, platform::Surface& target, const Page_Window& window,
               const Page_Content* content) {
  Page_Setup ps = Read_Page_Setup(s);
  if (content) {
    if (content->frame_width_cm > 0) ps.X_Length = content->frame_width_cm;
    if (content->frame_height_cm > 0) ps.Y_Length = content->frame_height_cm;
    ps.Paper_Colour = ps.Frame_Fill = content->paper;
  }
  Page_Geometry g;
  if (!Page_Layout(ps, target.Width(), target.Height(), window, g)) return;
  const Colour screen = Setting_Colour(s, "COL BACKGROUND", White);
  // In black and white the grounds below the drawing (sheet, frame, block
  // and list) are left white, as the paper is; all else is inked black.
  const bool mono = Print_Colour_Mode(s) == 1;
  const auto ground = [mono](Colour c) { return mono ? White : c; };
  Page_Ink surf(target, screen, mono);
  surf.Set_Background_Colour(White);
  surf.Clear();

  // Sheet, frame and the opaque parameter block underneath everything.
  Fill(surf, g.Sheet, ground(ps.Paper_Colour));
  Fill(surf, g.Frame, ground(ps.Frame_Fill));
  const Block_Style block = content ? content->block_style : Main_Block_Style(s);
  const bool param_on = content ? content->block : On(s, "DRAW PARAM ON");
  if (param_on && block.opaque) Fill(surf, g.Para, ground(block.fill));
  if (content) {
    if (content->paint) content->paint(surf, g);
    surf.Set_Raster_Op(Raster_Op::Copy);
    if (param_on) Draw_Parameter_Block(surf, g, content->rows, block);
    if (content->comment) Draw_Comment(s, surf, g, g.Frame.Bottom, block.font, block.text);
    return;
  }

  // The peak list's rectangle counts in parts of the frame, up from its bottom.
  const bool list_on = On(s, "PEAK LIST TABLE");
  const Pixel_Rect list = Peak_List_Rect(s, g);
  if (list_on && Setting_Int(s, "PEAK BGCOL TRANS", 0) == 0)
    Fill(surf, list, ground(Setting_Colour(s, "PEAK LIST BGCOL", White)));

  display::Plot_Frame f = Page_Frame(g);
  // An array stack slants its rows across the frame as the plot does.
  const bool array_view = s.Array_Rows > 1 && Setting_Int(s, "DISP ARRAY MODE", 0) != 0;
  if (array_view) {
    const display::Plot_Frame a = display::Make_Array_Frame(
        g.Frame.Left, g.Frame.Right - g.Frame.Left, g.Frame.Top, g.Frame.Bottom - g.Frame.Top, g.Scale,
        Setting_Num(s, "X AXIS RATIO", 0));
    f.Frame_Left = a.Frame_Left, f.Frame_Right = a.Frame_Right;
    f.Frame_Left_Last = a.Frame_Left_Last, f.Frame_Right_Last = a.Frame_Right_Last;
  }
  int axis_bottom = g.Zero_Y;
  const bool loaded = s.Spec_Points > 0 && s.Disp_Points > 0 && !s.Disp_Y.Empty() &&
                      !s.Disp_X.empty() && s.X_Left != s.X_Right;
  if (loaded) {
    const display::Axis_Limits lim = display::View_In_Axis_Unit(s);
    if (On(s, "PRTINT GRID")) {
      const double q = s.Max_Abs != 0 ? s.Y_Full_Scale / s.Max_Abs : 1.0;
      const double ylow = -s.Y_Offset * q;
      display::Draw_Grid(s, surf, lim.left, lim.right, ylow, ylow + q, f.Frame_Left,
                         f.Frame_Right, f.Frame_Base, f.Frame_Top);
    }
    if (On(s, "DRAW SCALE ON")) {
      display::Axis_Style axis = display::Main_Axis_Style(s);
      axis.font = Print_Font(s, "AXIS FONT NAME", "AXIS FONT SIZE", "AXIS FONT BOLD",
                             "AXIS FONT ITALIC", axis.font);
      axis.width = g.Line_Width(Setting_Num(s, "DRAW WIDTH AXIS", 1));
      display::Draw_Axis_Styled(surf, axis, lim.left, lim.right, f.Frame_Left, f.Frame_Right,
                                g.Axis_Y, axis_bottom, g.Scale);
      f.Axis_Bottom = axis_bottom;
    }
    if (On(s, "DRAW INTEG ON")) Draw_Integrals(s, surf, f, screen);
    const int spec_width = g.Line_Width(Setting_Num(s, "DRAW WIDTH SPEC", 1));
    const Colour main_colour = Setting_Colour(s, "MAIN SPECT COL", 0);
    if (array_view) {
      display::Draw_Spec_Array(s, surf, s.X_Left, s.X_Right, f.Frame_Left, f.Frame_Right,
                               f.Frame_Left_Last, f.Frame_Right_Last, s.Y_Full_Scale, s.Y_Offset,
                               f.Frame_Base, f.Frame_Top, f.Frame_Bottom, main_colour);
    } else {
      if (On(s, "DRAW MULTI SPEC")) Draw_Overlays(s, surf, f, spec_width);
      Trace(surf, f, s.Disp_X, s.Disp_Y.Row(static_cast<std::size_t>(s.Row())), s.Disp_Points,
            s.X_Left, s.X_Right, s.Y_Full_Scale, s.Y_Offset, main_colour, spec_width);
    }
  }
  if (On(s, "DRAW WAKU ON"))
    Outline(surf, g.Frame, g.Line_Width(Setting_Num(s, "DRAW WIDTH WAKU", 1)), ps.Frame_Colour);
  if (loaded && On(s, "DRAW PEAK PICK")) {
    display::Peak_Label_Style st = display::Main_Peak_Label_Style(s);
    st.font = Print_Font(s, "PEAK DATA FONT", "PEAK DATA SIZE", "PEAK DATA BOLD",
                         "PEAK DATA ITALIC", st.font);
    st.line_width = g.Line_Width(Setting_Num(s, "DRAW WIDTH PEAK", 1));
    display::Draw_Peak_Values(s, surf, st, s.X_Left, s.X_Right, f.Frame_Left, f.Frame_Right,
                              f.Frame_Top, f.Frame_Base, axis_bottom, Round_Pixel(0.25 * g.Ky),
                              g.Scale);
  }
  if (loaded && (On(s, "DRAW PEAK TOP") || On(s, "PEAK TOP NUM"))) Draw_Peak_Tops(s, surf, g);
  if (loaded && On(s, "DRAW MULTI VIEW")) display::Draw_Insets(s, surf, f, screen);
  surf.Set_Raster_Op(Raster_Op::Copy);
  if (param_on) Draw_Parameter_Block(surf, g, Parameter_Rows(s), block);
  if (list_on) {
    if (On(s, "PEAK LIST WAKU"))
      Outline(surf, list, g.Line_Width(Setting_Num(s, "PEAK WAKU WIDTH", 1)),
              Setting_Colour(s, "PEAK WAKU COL", 0));
    if (loaded) Draw_Page_Peak_List(s, surf, list.Left, list.Top, list.Right, list.Bottom, g.Scale);
  }
  if (loaded && On(s, "DRAW MULTI SPEC")) Mark_Shift(s, surf, g);
  if (On(s, "DRAW COMMENT"))
    Draw_Comment(s, surf, g, axis_bottom, block.font, block.text);
  if (On(s, "PRINT TEXT")) {
    // Pictures first, in their order, then texts and lines over them. A
    // picture the surface cannot show is left out.
    for (const Image_Rec& p : s.Images)
      surf.Draw_Picture(g.Frame_X(p.Left), g.Frame_Y(p.Top),
                        Round_Pixel(p.Width * (g.Frame.Right - g.Frame.Left)),
                        Round_Pixel(p.Height * (g.Frame.Bottom - g.Frame.Top)), p.Body,
                        {.white_clear = (p.Extra & Image_White_Out) != 0});
    Draw_Texts(s, surf, g);
    for (const Line_Rec& l : s.Lines) Draw_Page_Line(surf, g, l);
  }
}

void Draw_Page(Session& s, platform::Surface& surf, const Page_Content* content) {
  Draw_Page(s, surf, Whole_Sheet(Read_Page_Setup(s)), content);
}

}  // namespace tevo::page
