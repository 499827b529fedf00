#include "page/page_edit.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>

#include "display/insets.h"
#include "display/inset_mode.h"
#include "display/plot_geometry.h"
#include "display/style.h"
#include "overlay/difference.h"
#include "overlay/overlay_set.h"
#include "page/draw_page.h"
#include "page/fonts.h"
#include "page/markup.h"
#include "session/session.h"

namespace tevo::page {

using display::Round_Pixel;
using display::Setting_Int;
using display::Setting_Num;

namespace {

// Smallest box a resize leaves, pixels.
constexpr int Min_Box = 8;

bool On(const Session& s, const char* key) { return Setting_Int(s, key, 0) == 1; }

bool Inside(const Pixel_Rect& r, int x, int y) {
  return x >= std::min(r.Left, r.Right) && x <= std::max(r.Left, r.Right) &&
         y >= std::min(r.Top, r.Bottom) && y <= std::max(r.Top, r.Bottom);
}

bool Near(int x, int y, int px, int py) {
  return std::abs(x - px) <= Hit_Tolerance && std::abs(y - py) <= Hit_Tolerance;
}

// A box taken at its lower right corner resizes, elsewhere it moves.
Page_Hit Box_Hit(Hit_Kind kind, int index, const Pixel_Rect& r, int x, int y) {
  if (Near(x, y, r.Right, r.Bottom)) return {kind, index, Hit_Part::Corner, r};
  if (Inside(r, x, y)) return {kind, index, Hit_Part::Body, r};
  return {};
}

// Distance of (x, y) from the segment a-b, pixels.
double Segment_Distance(int x, int y, int ax, int ay, int bx, int by) {
  const double dx = bx - ax, dy = by - ay, len2 = dx * dx + dy * dy;
  double t = len2 > 0 ? ((x - ax) * dx + (y - ay) * dy) / len2 : 0;
  t = std::clamp(t, 0.0, 1.0);
  return std::hypot(x - (ax + t * dx), y - (ay + t * dy));
}

Pixel_Rect Image_Box(const Page_Geometry& g, const Image_Rec& p) {
  const int left = g.Frame_X(p.Left), top = g.Frame_Y(p.Top);
  return {left, top, left + Round_Pixel(p.Width * (g.Frame.Right - g.Frame.Left)),
          top + Round_Pixel(p.Height * (g.Frame.Bottom - g.Frame.Top))};
}

// The settings that place the frame, the parameter block and the peak list.
constexpr const char* Box_Keys[] = {
    "X-LEFT MARGIN", "X-LENGTH",   "Y-BOTTOM MARGIN", "Y-LENGTH",       "PARA LEFT",
    "PARA TOP",      "PARA WIDTH", "PARA HEIGHT",     "PEAK LIST LEFT", "PEAK LIST TOP",
    "PEAK LIST WIDTH", "PEAK LIST HEIGHT",
};

void Add_To(Session& s, const char* key, double delta) {
  display::Store_Setting(s, key, Setting_Num(s, key, 0) + delta);
}

template <class T>
bool In_List(const std::vector<T>& list, int index) {
  return index >= 0 && index < static_cast<int>(list.size());
}

void Edited(Session& s) {
  s.Data_Saved = 0;
  display::Store_Setting(s, "PRINT TEXT", 1);
}

std::string Upper_Extension(std::string_view path) {
  const std::size_t dot = path.find_last_of('.');
  const std::size_t slash = path.find_last_of("/\\");
  if (dot == std::string_view::npos || (slash != std::string_view::npos && slash > dot)) return {};
  std::string ext(path.substr(dot));
  for (char& c : ext) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return ext;
}

}  // namespace

Pixel_Rect Text_Box(platform::Surface& measure, const Page_Geometry& g, const Text_Rec& t) {
  const Font_Rec font = Page_Text_Font(t);
  const int x = g.Frame_X(t.X), y = g.Frame_Y(t.Y);
  const Markup_Result m = Is_Rtf(t.Text) ? Draw_Rtf(measure, 0, Rtf_Caller_Colour, t.Text, x, y, 0, font, g.Scale)
                                         : Draw_Markup(measure, 0, t.Text, x, y, 0, t.Colour, 0, 0, font, g.Scale);
  const double line = font.Size * g.Scale * 1.1;
  return {x, y, x + std::max(Round_Pixel(m.Width), 1), y + Round_Pixel(std::max(m.Next_Y, line))};
}

Page_Hit Hit_Test(Session& s, platform::Surface& measure, const Page_Geometry& g, int x, int y) {
  if (On(s, "PRINT TEXT")) {
    // Lines and texts are drawn last, the latest of each on top.
    for (int i = static_cast<int>(s.Texts.size()) - 1; i >= 0; --i) {
      const Text_Rec& t = s.Texts[static_cast<std::size_t>(i)];
      if (t.Print == 0 || t.Text.empty()) continue;
      const Pixel_Rect r = Text_Box(measure, g, t);
      if (Inside(r, x, y)) return {Hit_Kind::Text, i, Hit_Part::Body, r};
    }
    for (int i = static_cast<int>(s.Lines.size()) - 1; i >= 0; --i) {
      const Line_Rec& l = s.Lines[static_cast<std::size_t>(i)];
      const Pixel_Rect r{g.Frame_X(l.X1), g.Frame_Y(l.Y1), g.Frame_X(l.X2), g.Frame_Y(l.Y2)};
      if (Near(x, y, r.Left, r.Top)) return {Hit_Kind::Line, i, Hit_Part::End1, r};
      if (Near(x, y, r.Right, r.Bottom)) return {Hit_Kind::Line, i, Hit_Part::End2, r};
      const double reach = Hit_Tolerance + g.Line_Width(l.Width) / 2.0;
      if (Segment_Distance(x, y, r.Left, r.Top, r.Right, r.Bottom) <= reach)
        return {Hit_Kind::Line, i, Hit_Part::Body, r};
    }
    for (int i = static_cast<int>(s.Images.size()) - 1; i >= 0; --i)
      if (Page_Hit h = Box_Hit(Hit_Kind::Image, i, Image_Box(g, s.Images[static_cast<std::size_t>(i)]), x, y);
          h.Kind != Hit_Kind::None)
        return h;
  }
  if (On(s, "PEAK TOP NUM"))
    for (const Peak_Top_Place& p : Peak_Top_Places(s, g)) {
      const int t = Hit_Tolerance;
      const Pixel_Rect r{p.Label_X - 2 * t, p.Label_Y - 3 * t, p.Label_X + 2 * t, p.Label_Y + t};
      if (Inside(r, x, y)) return {Hit_Kind::Peak_Label, p.Index, Hit_Part::Body, r};
    }
  if (Page_Hit h = Box_Hit(Hit_Kind::Frame, -1, g.Frame, x, y); h.Kind != Hit_Kind::None) {
    // An inset lies inside the frame: it is taken before the frame's body.
    if (h.Part == Hit_Part::Body && On(s, "DRAW MULTI VIEW")) {
      bool corner = false;
      const display::Plot_Frame f = Page_Frame(g);
      if (const int i = display::Inset_Hit(s, f, x, y, corner); i >= 0) {
        const display::Inset_Box b = display::Inset_Rectangle(f, s.Insets[static_cast<std::size_t>(i)]);
        return {Hit_Kind::Inset, i, corner ? Hit_Part::Corner : Hit_Part::Body, {b.left, b.top, b.right, b.bottom}};
      }
    }
    if (h.Part == Hit_Part::Corner) return h;
    if (On(s, "DRAW PARAM ON"))
      if (Page_Hit p = Box_Hit(Hit_Kind::Para, -1, g.Para, x, y); p.Kind != Hit_Kind::None) return p;
    if (On(s, "PEAK LIST TABLE"))
      if (Page_Hit p = Box_Hit(Hit_Kind::Peak_List, -1, Peak_List_Rect(s, g), x, y); p.Kind != Hit_Kind::None)
        return p;
    return h;
  }
  if (On(s, "DRAW PARAM ON"))
    if (Page_Hit p = Box_Hit(Hit_Kind::Para, -1, g.Para, x, y); p.Kind != Hit_Kind::None) return p;
  if (On(s, "PEAK LIST TABLE"))
    if (Page_Hit p = Box_Hit(Hit_Kind::Peak_List, -1, Peak_List_Rect(s, g), x, y); p.Kind != Hit_Kind::None)
      return p;
  return {};
}

Pixel_Rect Drag_Box(const Page_Hit& hit, int dx, int dy) {
  Pixel_Rect r = hit.Box;
  switch (hit.Part) {
    case Hit_Part::Body:
      return {r.Left + dx, r.Top + dy, r.Right + dx, r.Bottom + dy};
    case Hit_Part::End1:
      return {r.Left + dx, r.Top + dy, r.Right, r.Bottom};
    case Hit_Part::End2:
      return {r.Left, r.Top, r.Right + dx, r.Bottom + dy};
    case Hit_Part::Corner: {
      const int w0 = r.Right - r.Left, h0 = r.Bottom - r.Top;
      r.Right = std::max(r.Left + Min_Box, r.Right + dx);
      r.Bottom = std::max(r.Top + Min_Box, r.Bottom + dy);
      if (hit.Kind == Hit_Kind::Image && w0 > 0)
        r.Bottom = r.Top + std::max(1, Round_Pixel((r.Right - r.Left) * static_cast<double>(h0) / w0));
      return r;
    }
  }
  return r;
}

std::string Drag_Status(const Page_Geometry& g, const Page_Setup& p, const Pixel_Rect& box) {
  const double left = g.Cm_X(std::min(box.Left, box.Right));
  const double bottom = p.Paper_Height - g.Cm_Y(std::max(box.Top, box.Bottom));
  const double w = std::abs(box.Right - box.Left) / g.Kx, h = std::abs(box.Bottom - box.Top) / g.Ky;
  char buf[128];
  std::snprintf(buf, sizeof buf, "左 %.2f, 下 %.2f cm   %.2f x %.2f cm", left, bottom, w, h);
  return buf;
}

// --- Undo ---

void Undo_Push(Page_Undo_List& u, const Session& s, uint16_t kind, int index) {
  std::move_backward(u.Slots.begin(), u.Slots.end() - 1, u.Slots.end());
  u.Slots.back() = Page_Undo_Rec{};  // 20 steps kept: the 21st slot stays empty
  Page_Undo_Rec& r = u.Slots.front();
  r = Page_Undo_Rec{};
  r.Kind = kind;
  r.Index = index;
  const auto at = static_cast<std::size_t>(index);
  switch (kind) {
    case Undo_Text_Change:
    case Undo_Text_Delete:
      if (In_List(s.Texts, index)) r.Text = s.Texts[at];
      break;
    case Undo_Line_Move:
    case Undo_Line_Delete:
    case Undo_Line_Kind:
      if (In_List(s.Lines, index)) r.Line = s.Lines[at];
      break;
    case Undo_Image_Delete:
      if (In_List(s.Images, index)) r.Image = s.Images[at];
      break;
    case Undo_Page_Inset_Move:
    case Undo_Page_Inset_Size:
      if (In_List(s.Insets, index)) r.Inset = s.Insets[at];
      break;
    case Undo_Peak_Number:
      if (In_List(s.Peaks, index)) r.Peak = s.Peaks[at];
      break;
    case Undo_Box_Move:
    case Undo_Box_Size:
    case Undo_Frame_Move:
      // A picture keeps its rectangle without its bytes; the boxes their keys.
      if (index >= 0 && In_List(s.Images, index)) {
        const Image_Rec& p = s.Images[at];
        r.Image.Left = p.Left, r.Image.Top = p.Top, r.Image.Width = p.Width, r.Image.Height = p.Height;
      } else {
        for (const char* key : Box_Keys) r.Keys.emplace_back(key, Setting_Num(s, key, 0));
      }
      break;
    default:
      break;
  }
}

bool Undo_Pop(Page_Undo_List& u, Session& s) {
  Page_Undo_Rec r = std::move(u.Slots.front());
  std::move(u.Slots.begin() + 1, u.Slots.end(), u.Slots.begin());
  u.Slots.back() = Page_Undo_Rec{};
  const int i = r.Index;
  const auto at = static_cast<std::size_t>(i);
  auto insert_back = [i](auto& list, auto item) {
    if (i >= 0 && i <= static_cast<int>(list.size())) list.insert(list.begin() + i, std::move(item));
  };
  auto erase = [i](auto& list) {
    if (In_List(list, i)) list.erase(list.begin() + i);
  };
  switch (r.Kind) {
    case Undo_Text_Change:
      if (In_List(s.Texts, i)) s.Texts[at] = r.Text;
      break;
    case Undo_Text_Delete: insert_back(s.Texts, r.Text); break;
    case Undo_Text_Add: erase(s.Texts); break;
    case Undo_Line_Move:
    case Undo_Line_Kind:
      if (In_List(s.Lines, i)) s.Lines[at] = r.Line;
      break;
    case Undo_Line_Delete: insert_back(s.Lines, r.Line); break;
    case Undo_Line_Add: erase(s.Lines); break;
    case Undo_Image_Add: erase(s.Images); break;
    case Undo_Image_Delete: insert_back(s.Images, std::move(r.Image)); break;
    case Undo_Image_Front:
      // The picture went to the end of the list; it goes back to its place.
      if (!s.Images.empty() && i >= 0 && i < static_cast<int>(s.Images.size()))
        std::rotate(s.Images.begin() + i, s.Images.end() - 1, s.Images.end());
      break;
    case Undo_Image_Back:
      if (i > 0 && i < static_cast<int>(s.Images.size()))
        std::rotate(s.Images.begin(), s.Images.begin() + 1, s.Images.begin() + i + 1);
      break;
    case Undo_Page_Inset_Move:
    case Undo_Page_Inset_Size:
      if (In_List(s.Insets, i)) s.Insets[at] = r.Inset;
      break;
    case Undo_Peak_Number:
      if (In_List(s.Peaks, i)) s.Peaks[at] = r.Peak;
      break;
    case Undo_Box_Move:
    case Undo_Box_Size:
    case Undo_Frame_Move:
      if (r.Keys.empty() && In_List(s.Images, i)) {
        Image_Rec& p = s.Images[at];
        p.Left = r.Image.Left, p.Top = r.Image.Top, p.Width = r.Image.Width, p.Height = r.Image.Height;
      }
      for (const auto& [key, value] : r.Keys) display::Store_Setting(s, key, value);
      break;
    default:
      return false;
  }
  s.Data_Saved = 0;
  return true;
}

Undo_Caption Page_Undo_Caption(uint16_t kind, bool text_editor) {
  struct Row {
    uint16_t kind;
    const char* caption;
  };
  static constexpr Row page[] = {
      {1, "取り消し(文字の変更)"},
      {2, "取り消し(文字の削除)"},
      {3, "取り消し(文字の追加)"},
      {10, "取り消し(線の移動)"},
      {11, "取り消し(線の削除)"},
      {12, "取り消し(線種の変更)"},
      {13, "取り消し(線の追加)"},
      {20, "取り消し(Imageの追加)"},
      {21, "取り消し(Imageの削除)"},
      {22, "取り消し(Image(Parameter,PeakList)の移動)"},
      {24, "取り消し(Imageの順序)"},
      {25, "取り消し(Imageの順序)"},
      {26, "取り消し(枠の大きさ)"},
      {27, "取り消し(Peak 数値の位置)"},
      {28, "取り消し(拡大図の移動)"},
      {29, "取り消し(拡大図の大きさ変更)"},
      {30, "取り消し(積分曲線の移動)"},
      {31, "取り消し(Peak番号の移動)"},
      {32, "取り消し(Peak 数値の位置)"},
      {36, "取り消し(印刷のプロパティ)"},
      {41, "取り消し(Scaleの移動)"},
      {42, "取り消し(Main ｽﾍﾟｸﾄﾙの移動)"},
      {51, "取り消し(重ね書きの移動)"},
      {65, "取り消し(拡大のプロパティ)"},
      {103, "取り消し(ピークリスト枠のプロパティ)"},
      {4030, "取り消し(Peak 数値の位置(拡大図))"},
      {4032, "取り消し(Peak 数値の位置(拡大図))"},
  };
  static constexpr Row editor[] = {
      {31, "取り消し(Font変更)"},   {32, "取り消し(FontSize変更)"}, {33, "取り消し(属性変更)"},
      {34, "取り消し(切り取り)"},   {35, "取り消し(貼り付け)"},     {36, "取り消し(入力)"},
  };
  auto find = [kind](const auto& rows) -> Undo_Caption {
    for (const Row& r : rows)
      if (r.kind == kind) return {r.caption, true};
    return {"取り消し", false};
  };
  return text_editor ? find(editor) : find(page);
}

// --- Applying a drag ---

bool Drop_Drag(Session& s, Page_Undo_List& u, const Page_Geometry& g, const Page_Hit& hit, int dx,
               int dy) {
  if (hit.Kind == Hit_Kind::None || (dx == 0 && dy == 0)) return false;
  const Pixel_Rect to = Drag_Box(hit, dx, dy);
  const Pixel_Rect& from = hit.Box;
  // Changes of the box's edges, in cm and in fractions of the frame.
  const double cm_left = g.Cm_X(to.Left) - g.Cm_X(from.Left), cm_top = g.Cm_Y(to.Top) - g.Cm_Y(from.Top);
  const double cm_right = g.Cm_X(to.Right) - g.Cm_X(from.Right);
  const double cm_bottom = g.Cm_Y(to.Bottom) - g.Cm_Y(from.Bottom);
  const double fx_left = g.Frame_Fraction_X(to.Left) - g.Frame_Fraction_X(from.Left);
  const double fy_top = g.Frame_Fraction_Y(to.Top) - g.Frame_Fraction_Y(from.Top);
  const double fx_right = g.Frame_Fraction_X(to.Right) - g.Frame_Fraction_X(from.Right);
  const double fy_bottom = g.Frame_Fraction_Y(to.Bottom) - g.Frame_Fraction_Y(from.Bottom);
  const bool corner = hit.Part == Hit_Part::Corner;
  const auto at = static_cast<std::size_t>(hit.Index);
  auto f32 = [](float& v, double d) { v = static_cast<float>(v + d); };
  switch (hit.Kind) {
    case Hit_Kind::Text: {
      if (!In_List(s.Texts, hit.Index)) return false;
      Undo_Push(u, s, Undo_Text_Change, hit.Index);
      f32(s.Texts[at].X, fx_left);
      f32(s.Texts[at].Y, fy_top);
      break;
    }
    case Hit_Kind::Line: {
      if (!In_List(s.Lines, hit.Index)) return false;
      Undo_Push(u, s, Undo_Line_Move, hit.Index);
      Line_Rec& l = s.Lines[at];
      f32(l.X1, fx_left), f32(l.Y1, fy_top), f32(l.X2, fx_right), f32(l.Y2, fy_bottom);
      break;
    }
    case Hit_Kind::Image: {
      if (!In_List(s.Images, hit.Index)) return false;
      Undo_Push(u, s, corner ? Undo_Box_Size : Undo_Box_Move, hit.Index);
      Image_Rec& p = s.Images[at];
      if (corner) {
        // The height follows the width, so the picture keeps its aspect.
        const double width = p.Width + fx_right;
        if (p.Width > 0) p.Height = static_cast<float>(p.Height * width / p.Width);
        p.Width = static_cast<float>(width);
      } else {
        f32(p.Left, fx_left);
        f32(p.Top, fy_top);
      }
      break;
    }
    case Hit_Kind::Peak_Label: {
      if (!In_List(s.Peaks, hit.Index)) return false;
      Undo_Push(u, s, Undo_Peak_Number, hit.Index);
      f32(s.Peaks[at].Label_Dx, cm_left);
      f32(s.Peaks[at].Label_Dy, -cm_top);  // counted upward
      break;
    }
    case Hit_Kind::Frame:
      Undo_Push(u, s, corner ? Undo_Box_Size : Undo_Frame_Move, -1);
      // The frame stands on its bottom margin: a lower bottom edge is a
      // smaller margin.
      if (corner) {
        Add_To(s, "X-LENGTH", cm_right);
        Add_To(s, "Y-LENGTH", cm_bottom);
      } else {
        Add_To(s, "X-LEFT MARGIN", cm_left);
      }
      Add_To(s, "Y-BOTTOM MARGIN", -cm_bottom);
      break;
    case Hit_Kind::Para:
      Undo_Push(u, s, corner ? Undo_Box_Size : Undo_Box_Move, -1);
      if (corner) {
        Add_To(s, "PARA WIDTH", cm_right);
        Add_To(s, "PARA HEIGHT", cm_bottom);
      } else {
        Add_To(s, "PARA LEFT", cm_left);
        Add_To(s, "PARA TOP", cm_top);
      }
      break;
    case Hit_Kind::Peak_List:
      Undo_Push(u, s, corner ? Undo_Box_Size : Undo_Box_Move, -1);
      // Parts of the frame; the top counts up from the frame's bottom.
      if (corner) {
        Add_To(s, "PEAK LIST WIDTH", fx_right);
        Add_To(s, "PEAK LIST HEIGHT", fy_bottom);
      } else {
        Add_To(s, "PEAK LIST LEFT", fx_left);
        Add_To(s, "PEAK LIST TOP", -fy_top);
      }
      break;
    case Hit_Kind::Inset: {
      if (!In_List(s.Insets, hit.Index)) return false;
      Undo_Push(u, s, corner ? Undo_Page_Inset_Size : Undo_Page_Inset_Move, hit.Index);
      const display::Plot_Frame f = Page_Frame(g);
      if (corner)
        display::Inset_Resize(s, f, hit.Index, to.Right, to.Bottom);
      else
        display::Inset_Move(s, f, hit.Index, dx, dy);
      break;
    }
    case Hit_Kind::None:
      return false;
  }
  s.Data_Saved = 0;
  return true;
}

// --- Free texts ---

Text_Rec Text_At(const Page_Geometry& g, int x, int y, std::string text) {
  Text_Rec t;
  t.X = static_cast<float>(g.Frame_Fraction_X(x));
  t.Y = static_cast<float>(g.Frame_Fraction_Y(y));
  t.Font_Name = Fonts().Default_Font;
  t.Text = std::move(text);
  return t;
}

int Add_Text(Session& s, Page_Undo_List& u, const Text_Rec& t) {
  if (static_cast<int>(s.Texts.size()) >= Text_Max) return -1;
  const int index = static_cast<int>(s.Texts.size());
  Undo_Push(u, s, Undo_Text_Add, index);
  s.Texts.push_back(t);
  s.Texts.back().Font_Size = std::max(3.0f, t.Font_Size);
  Edited(s);
  return index;
}

bool Change_Text(Session& s, Page_Undo_List& u, int index, const Text_Rec& t) {
  if (!In_List(s.Texts, index)) return false;
  Undo_Push(u, s, Undo_Text_Change, index);
  s.Texts[static_cast<std::size_t>(index)] = t;
  s.Texts[static_cast<std::size_t>(index)].Font_Size = std::max(3.0f, t.Font_Size);
  Edited(s);
  return true;
}

bool Delete_Text(Session& s, Page_Undo_List& u, int index) {
  if (!In_List(s.Texts, index)) return false;
  Undo_Push(u, s, Undo_Text_Delete, index);
  s.Texts.erase(s.Texts.begin() + index);
  s.Data_Saved = 0;
  return true;
}

std::string Font_Group(std::string_view face, std::string_view selection) {
  return "\\f:" + std::string(face) + "(" + std::string(selection) + ")";
}

std::string Size_Group(double points, std::string_view selection) {
  char buf[32];
  std::snprintf(buf, sizeof buf, "%g", points);
  return "\\p" + std::string(buf) + "(" + std::string(selection) + ")";
}

// --- Lines ---

const std::vector<std::string>& Line_Kind_Table() {
  static const std::vector<std::string> table = {
      "1. 矢印無し線",     "2. 右矢印線",       "3. 左矢印線",       "4. 両矢印線",
      "5. 矢印無し実線",   "6. 右矢印実線",     "7. 左矢印実線",     "8. 両矢印実線",
      "9. 矢印無し白抜き", "10. 右矢印白抜き",  "11. 左矢印白抜き",  "12. 両矢印白抜き",
      "13. 矢印無し中抜き", "14. 右矢印中抜き", "15. 左矢印中抜き", "16. 両矢印中抜き",
  };
  return table;
}

const std::vector<std::string>& Dash_Table() {
  static const std::vector<std::string> table = {
      "実線",        "点線(1)",     "鎖線(1)", "鎖線(2)",     "鎖線(3)",
      "一点鎖線(1)", "二点鎖線(1)", "点線(2)", "一点鎖線(2)", "二点鎖線(2)",
  };
  return table;
}

namespace {
int16_t Line_Kind_Index(int kind) {
  return static_cast<int16_t>(std::clamp(kind, 0, static_cast<int>(Line_Kind_Table().size()) - 1));
}
int16_t Dash_Index(int style) {
  return static_cast<int16_t>(std::clamp(style, 0, static_cast<int>(Dash_Table().size()) - 1));
}
}  // namespace

Line_Rec Line_Between(const Page_Geometry& g, int x1, int y1, int x2, int y2, int kind, int style) {
  Line_Rec l;
  l.X1 = static_cast<float>(g.Frame_Fraction_X(x1));
  l.Y1 = static_cast<float>(g.Frame_Fraction_Y(y1));
  l.X2 = static_cast<float>(g.Frame_Fraction_X(x2));
  l.Y2 = static_cast<float>(g.Frame_Fraction_Y(y2));
  l.Kind = Line_Kind_Index(kind);
  l.Style = Dash_Index(style);
  return l;
}

int Add_Line(Session& s, Page_Undo_List& u, const Line_Rec& l) {
  if (static_cast<int>(s.Lines.size()) >= Line_Max) return -1;
  const int index = static_cast<int>(s.Lines.size());
  Undo_Push(u, s, Undo_Line_Add, index);
  s.Lines.push_back(l);
  Edited(s);
  return index;
}

bool Delete_Line(Session& s, Page_Undo_List& u, int index) {
  if (!In_List(s.Lines, index)) return false;
  Undo_Push(u, s, Undo_Line_Delete, index);
  s.Lines.erase(s.Lines.begin() + index);
  s.Data_Saved = 0;
  return true;
}

bool Set_Line_Kind(Session& s, Page_Undo_List& u, int index, int kind, int style) {
  if (!In_List(s.Lines, index)) return false;
  Undo_Push(u, s, Undo_Line_Kind, index);
  Line_Rec& l = s.Lines[static_cast<std::size_t>(index)];
  l.Kind = Line_Kind_Index(kind);
  l.Style = Dash_Index(style);
  s.Data_Saved = 0;
  return true;
}

// --- Pictures ---

bool Picture_Kind_Known(std::string_view path) {
  const std::string ext = Upper_Extension(path);
  for (const char* k : {".EMF", ".WMF", ".JPG", ".JPEG", ".BMP", ".ICO", ".PNG"})
    if (ext == k) return true;
  return false;
}

std::string Picture_Refused_Text(std::string_view path) {
  return "ﾌｧｲﾙが不正です。または," + Upper_Extension(path);
}

bool Is_Metafile_Bytes(const std::vector<uint8_t>& b) {
  auto u32 = [&b](std::size_t at) {
    return static_cast<uint32_t>(b[at]) | static_cast<uint32_t>(b[at + 1]) << 8 |
           static_cast<uint32_t>(b[at + 2]) << 16 | static_cast<uint32_t>(b[at + 3]) << 24;
  };
  auto u16 = [&b](std::size_t at) { return static_cast<uint32_t>(b[at] | b[at + 1] << 8); };
  // Enhanced: the header record (type 1) carrying " EMF" at byte 40.
  if (b.size() >= 88 && u32(0) == 1 && u32(40) == 0x464D4520) return true;
  // Placeable metafile key, or a plain header (type 1 or 2, 9 words, version 0x300 or 0x100).
  if (b.size() >= 22 && u32(0) == 0x9AC6CDD7) return true;
  return b.size() >= 18 && (u16(0) == 1 || u16(0) == 2) && u16(2) == 9 &&
         (u16(4) == 0x300 || u16(4) == 0x100);
}

int Add_Image(Session& s, Page_Undo_List& u, const Page_Geometry& g, std::vector<uint8_t> bytes,
              int left, int top, int width, int height) {
  if (static_cast<int>(s.Images.size()) >= Image_Max || bytes.empty()) return -1;
  const double fw = g.Frame.Right - g.Frame.Left, fh = g.Frame.Bottom - g.Frame.Top;
  if (fw <= 0 || fh <= 0) return -1;
  const int index = static_cast<int>(s.Images.size());
  Undo_Push(u, s, Undo_Image_Add, index);
  Image_Rec p;
  p.Left = static_cast<float>(g.Frame_Fraction_X(left));
  p.Top = static_cast<float>(g.Frame_Fraction_Y(top));
  p.Width = static_cast<float>(std::max(width, 1) / fw);
  p.Height = static_cast<float>(std::max(height, 1) / fh);
  p.Body = std::move(bytes);
  s.Images.push_back(std::move(p));
  Edited(s);
  return index;
}

bool Delete_Image(Session& s, Page_Undo_List& u, int index) {
  if (!In_List(s.Images, index)) return false;
  Undo_Push(u, s, Undo_Image_Delete, index);
  s.Images.erase(s.Images.begin() + index);
  s.Data_Saved = 0;
  return true;
}

int Image_To_Front(Session& s, Page_Undo_List& u, int index) {
  if (!In_List(s.Images, index)) return index;
  Undo_Push(u, s, Undo_Image_Front, index);
  std::rotate(s.Images.begin() + index, s.Images.begin() + index + 1, s.Images.end());
  s.Data_Saved = 0;
  return static_cast<int>(s.Images.size()) - 1;
}

int Image_To_Back(Session& s, Page_Undo_List& u, int index) {
  if (!In_List(s.Images, index)) return index;
  Undo_Push(u, s, Undo_Image_Back, index);
  std::rotate(s.Images.begin(), s.Images.begin() + index, s.Images.begin() + index + 1);
  s.Data_Saved = 0;
  return 0;
}

bool Toggle_White_Out(Session& s, int index) {
  if (!In_List(s.Images, index)) return false;
  s.Images[static_cast<std::size_t>(index)].Extra ^= Image_White_Out;
  s.Data_Saved = 0;
  return true;
}

// --- Overlays ---

int Overlay_Under(Session& s, const Page_Geometry& g, int x, int y) {
  if (!On(s, "DRAW MULTI SPEC") || !Inside(g.Frame, x, y)) return 0;
  const display::Plot_Frame f = Page_Frame(g);
  constexpr double reach = 3 * Hit_Tolerance;
  int best = 0;
  double nearest = reach;
  for (int k = 1; k < overlay::Overlay_Rows; ++k) {
    const Overlay_Slot& o = s.Overlay[static_cast<std::size_t>(k)];
    const overlay::Slot_Trace t = overlay::Drawn_Slot(s, k);
    if (o.Slot_Show != 1 || t.points < 2 || !(t.full > 0)) continue;
    double left = 0, right = 0;
    overlay::Slot_Draw_Limits(s, k, left, right);
    if (left == right) continue;
    // The points drawn within a few pixels of the pointer's column.
    for (int32_t i = 0; i < t.points; ++i) {
      const double px = display::X_To_Pixel(t.x[static_cast<std::size_t>(i)], left, right, f.Frame_Left, f.Frame_Right);
      if (std::abs(px - x) > Hit_Tolerance) continue;
      const double py = display::Y_To_Pixel(t.y[static_cast<std::size_t>(i)], f.Frame_Base, f.Frame_Top, t.full,
                                            o.Slot_Y_Offset);
      if (std::abs(py - y) < nearest) nearest = std::abs(py - y), best = k;
    }
  }
  return best;
}

}  // namespace tevo::page
