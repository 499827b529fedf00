// The pen that walks inner notation: measuring, drawing, wrapping.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "page/markup.h"
#include "page/markup_inner.h"
#include "platform/symbol_font.h"
#include "session/text_encoding.h"

namespace tevo::page {

namespace {

// The argument of "\f:", "\p:", "\c:": up to ":" (eaten) or a backslash.
std::string Read_Arg(std::string_view t, std::size_t& j) {
  const std::size_t start = j;
  while (j < t.size() && t[j] != ':' && t[j] != '\\') ++j;
  std::string arg(t.substr(start, j - start));
  if (j < t.size() && t[j] == ':') ++j;
  return arg;
}

int Weight_Of(const Font_Rec& font, int weight) { return font.Bold ? 700 : weight; }

}  // namespace

Inner_Command Parse_Inner_Command(std::string_view t, std::size_t i) {
  Inner_Command c;
  std::size_t j = i + 1;
  if (j >= t.size()) {
    c.kind = Inner_Command::Unknown;
    c.next = t.size();
    return c;
  }
  const char a = static_cast<char>(std::tolower(static_cast<unsigned char>(t[j])));
  const char b = j + 1 < t.size() ? static_cast<char>(std::tolower(static_cast<unsigned char>(t[j + 1]))) : 0;
  bool eat_blank = true;
  if (a == '\\') {
    c.kind = Inner_Command::Backslash;
    j += 1;
    eat_blank = false;
  } else if (a == '\'') {
    c.kind = Inner_Command::Byte;
    ++j;
    unsigned value = 0;
    while (j < t.size() && Hex_Digit(t[j]) >= 0) value = value * 16 + Hex_Digit(t[j++]);
    if (j < t.size() && t[j] == ':') ++j;
    c.byte = static_cast<unsigned char>(value & 0xFF);
    eat_blank = false;
  } else if (a == '<') {
    c.kind = Inner_Command::Start;
    j += 1;
  } else if (a == '>') {
    c.kind = Inner_Command::End;
    c.next = t.size();
    return c;
  } else if (a == 'c' && b == 'r') {
    c.kind = Inner_Command::New_Line;
    j += 2;
  } else if (a == 't' && b == 'b') {
    c.kind = Inner_Command::Tab;
    j += 2;
  } else if ((a == 'f' || a == 'p' || a == 'c') && b == ':') {
    j += 2;
    c.arg = Read_Arg(t, j);
    c.kind = a == 'f' ? Inner_Command::Face : a == 'p' ? Inner_Command::Size : Inner_Command::Colour;
  } else if ((a == 'f' || a == 'p' || a == 'c') && b == '0') {
    j += 2;
    c.kind = a == 'f' ? Inner_Command::Face_Reset
             : a == 'p' ? Inner_Command::Size_Reset
                        : Inner_Command::Colour_Reset;
  } else if ((a == 'i' || a == 'b' || a == 'u' || a == 's' || a == 'g' || a == '+' || a == '-') &&
             b >= '0' && b <= '9') {
    c.kind = Inner_Command::Switch;
    c.letter = a;
    c.on = b != '0';
    j += 2;
  } else {
    // Unknown: the letter and any digits after it are passed over.
    c.kind = Inner_Command::Unknown;
    std::size_t k = j;
    Next_Utf8(t, k);
    j = k;
    while (j < t.size() && std::isdigit(static_cast<unsigned char>(t[j]))) ++j;
  }
  if (eat_blank && j < t.size() && t[j] == ' ') ++j;
  c.next = j;
  return c;
}

double Parse_Size(std::string_view arg) {
  std::string digits;
  for (char ch : arg)
    if (std::isdigit(static_cast<unsigned char>(ch)) || ch == '.') digits += ch;
  return digits.empty() ? 0.0 : std::strtod(digits.c_str(), nullptr);
}

Colour Parse_Colour(std::string_view arg) {
  unsigned value = 0;
  for (char ch : arg)
    if (Hex_Digit(ch) >= 0) value = value * 16 + Hex_Digit(ch);
  return static_cast<Colour>(value & 0xFFFFFF);
}

std::string Bytes_As_Text(std::string_view bytes, const Font_Rec& font) {
  std::string out;
  const bool symbol = platform::Is_Symbol_Font(font);
  if (symbol || font.Charset == Charset_Ansi) {
    // One byte, one character: Symbol codes, or the Latin code page.
    for (unsigned char b : bytes)
      if (b >= 32) Append_Utf8(out, b);
    return out;
  }
  std::string kept;
  for (unsigned char b : bytes)
    if (b >= 32) kept += static_cast<char>(b);
  return Sjis_To_Utf8(kept);
}

Text_Metrics Measure_Text(Surface& hdc, std::string_view text, const Font_Rec& font, double scale,
                          int weight) {
  if (text.empty()) return {};
  const double height = std::nearbyint(font.Size * scale * 10);
  const auto e = hdc.Text_Extent(text, font, height, Weight_Of(font, weight));
  return {e.cx * 0.1, e.cy * 0.1};
}

Text_Metrics Put_Text(Surface& hdc, int x, int y, std::string_view text, const Font_Rec& font,
                      double angle, double scale, int weight) {
  int escapement = static_cast<int>(std::nearbyint(angle * 10));
  if (escapement == 0) escapement = 1;
  hdc.Text_Out(x, y, text, font, std::nearbyint(font.Size * scale), escapement,
               Weight_Of(font, weight));
  return Measure_Text(hdc, text, font, scale, weight);
}

Text_Metrics Put_Coloured_Text(Surface& hdc, int x, int y, std::string_view text,
                               const Font_Rec& font, double angle, double scale, int weight) {
  hdc.Set_Text_Colour(font.Colour);
  return Put_Text(hdc, x, y, text, font, angle, scale, weight);
}

double Line_Height(std::string_view text, std::size_t from, const Font_Rec& font, double scale) {
  double size = font.Size;
  for (std::size_t i = from; i < text.size();) {
    if (text[i] != '\\') {
      ++i;
      continue;
    }
    const Inner_Command c = Parse_Inner_Command(text, i);
    if (c.kind == Inner_Command::New_Line || c.kind == Inner_Command::End) break;
    if (c.kind == Inner_Command::Size) {
      const double n = Parse_Size(c.arg);
      if (n >= 1) size = std::max(size, n);
    }
    i = c.next;
  }
  return size * scale * 1.1;
}

namespace {

// One walk of the pen over inner text, drawing (mode != 0) or measuring.
class Markup_Walk {
 public:
  Markup_Walk(Surface& hdc, int mode, std::string text, double x, double y, double angle,
              Colour colour, double wrap, double line_start_x, const Font_Rec& font, double scale,
              int weight)
      : hdc_(hdc), mode_(mode), t_(std::move(text)), x0_(x), y0_(y), colour_(colour),
        start_colour_(colour), wrap_(wrap), line_start_x_(line_start_x), start_(font),
        font_(font), scale_(scale), weight_(weight) {
    angle_ = std::fmod(angle, 360.0);
    if (angle_ < 0) angle_ += 360.0;
    const double rad = angle_ * 0.0174532925199433;
    cos_ = std::cos(rad);
    sin_ = std::sin(rad);
    ratio_ = Fonts().Script_Ratio;
    line_size_ = font.Size;
    tab_step_ = font.Size * scale * 3.8;
    py_ = line_size_ * scale * 1.1;
    Apply_Size();
  }

  Markup_Result Run() {
    if (mode_ != 0) {
      hdc_.Set_Background_Mode(platform::Background_Mode::Transparent);
      hdc_.Set_Text_Colour(colour_);
    }
    std::size_t i = 0;
    while (i < t_.size()) {
      const char ch = t_[i];
      if (ch != '\\') {
        const std::size_t start = i;
        Next_Utf8(t_, i);
        if (static_cast<unsigned char>(ch) < 32) continue;
        if (!Add_Char(std::string_view(t_).substr(start, i - start), start)) return result_;
        continue;
      }
      Flush();
      const Inner_Command c = Parse_Inner_Command(t_, i);
      if (c.kind == Inner_Command::End) break;
      if (c.kind == Inner_Command::Backslash) {
        if (!Add_Char("\\", i)) return result_;
      } else if (c.kind == Inner_Command::Byte) {
        std::string bytes(1, static_cast<char>(c.byte));
        std::size_t next = c.next;
        // A lead byte joins the byte escape that follows into one character.
        if (!platform::Is_Symbol_Font(font_) && font_.Charset != Charset_Ansi &&
            Is_Sjis_Lead(c.byte) && next + 1 < t_.size() && t_[next] == '\\' && t_[next + 1] == '\'') {
          const Inner_Command trail = Parse_Inner_Command(t_, next);
          bytes += static_cast<char>(trail.byte);
          next = trail.next;
        }
        const std::string piece = Bytes_As_Text(bytes, font_);
        if (!piece.empty() && !Add_Char(piece, i)) return result_;
        i = next;
        continue;
      } else {
        Command(c);
      }
      i = c.next;
    }
    Flush();
    result_.Next_Y = py_;
    return result_;
  }

 private:
  Font_Rec Font_Now() const {
    Font_Rec f = font_;
    f.Size = static_cast<float>(size_now_);
    return f;
  }

  void Note_Pen() { result_.Width = std::max(result_.Width, px_); }

  // Size, line height and baseline after a change of size or script.
  void Apply_Size() {
    line_h_ = line_size_ * scale_ * 1.1;
    size_now_ = script_ != 0 ? line_size_ * ratio_ : line_size_;
    const double h = size_now_ * scale_ * 1.1;
    pb_ = script_ > 0 ? py_ - (1 - ratio_) * line_h_ : py_;
    pt_ = pb_ - h;
  }

  void Flush() {
    if (gathered_.empty()) return;
    const Font_Rec f = Font_Now();
    Text_Metrics m;
    if (mode_ != 0) {
      const int x = static_cast<int>(std::nearbyint(cos_ * px_ + x0_ + sin_ * pt_));
      const int y = static_cast<int>(std::nearbyint(y0_ - (sin_ * px_ - cos_ * pt_)));
      m = Put_Text(hdc_, x, y, gathered_, f, angle_, scale_, weight_);
    } else {
      m = Measure_Text(hdc_, gathered_, f, scale_, weight_);
    }
    px_ += m.Text_W;
    Note_Pen();
    gathered_.clear();
  }

  void New_Line(std::size_t from) {
    px_ = line_start_x_;
    Font_Rec f = font_;
    f.Size = static_cast<float>(line_size_);
    py_ += Line_Height(t_, from, f, scale_);
    Apply_Size();
    Note_Pen();
  }

  // Gathers one character that starts at byte pos; false when mode -2 stops
  // at a wrap.
  bool Add_Char(std::string_view piece, std::size_t pos) {
    if (wrap_ > 0 && (!gathered_.empty() || px_ > line_start_x_)) {
      const double w = Measure_Text(hdc_, gathered_ + std::string(piece), Font_Now(), scale_, weight_).Text_W;
      if (px_ + w >= wrap_) {
        Flush();
        New_Line(pos);
        if (mode_ == -2) {
          result_.Next_Y = py_;
          result_.Remainder = Remainder(pos);
          return false;
        }
      }
    }
    gathered_ += piece;
    return true;
  }

  void Command(const Inner_Command& c) {
    switch (c.kind) {
      case Inner_Command::Switch:
        Switch(c.letter, c.on);
        break;
      case Inner_Command::Face:
        font_.Face = c.arg;
        font_.Charset = Charset_Default;
        greek_ = false;
        break;
      case Inner_Command::Face_Reset:
        font_.Face = start_.Face;
        font_.Charset = start_.Charset;
        greek_ = false;
        break;
      case Inner_Command::Size: {
        const double n = Parse_Size(c.arg);
        if (n >= 2) {
          line_size_ = n;
          Apply_Size();
        }
        break;
      }
      case Inner_Command::Size_Reset:
        line_size_ = start_.Size;
        Apply_Size();
        break;
      case Inner_Command::Colour:
      case Inner_Command::Colour_Reset:
        colour_ = c.kind == Inner_Command::Colour ? Parse_Colour(c.arg) : start_colour_;
        if (mode_ != 0) hdc_.Set_Text_Colour(colour_);
        break;
      case Inner_Command::Tab:
        for (int k = 1; k <= 100; ++k)
          if (k * tab_step_ > px_) {
            px_ = k * tab_step_;
            break;
          }
        Note_Pen();
        break;
      case Inner_Command::New_Line:
        New_Line(c.next);
        break;
      default:  // start mark, unknown commands
        break;
    }
  }

  void Switch(char letter, bool on) {
    switch (letter) {
      case 'i':
        if (on && !font_.Italic) {
          px_ += 0.05 * line_h_;
          Note_Pen();
        }
        font_.Italic = on;
        break;
      case 'b': font_.Bold = on; break;
      case 'u': font_.Underline = on; break;
      case 's': font_.Strike = on; break;
      case 'g':
        if (on && !greek_) {
          before_greek_ = font_;
          font_.Face = Fonts().Symbol_Face;
          font_.Charset = Charset_Symbol;
          greek_ = true;
        } else if (!on && greek_) {
          font_.Face = before_greek_.Face;
          font_.Charset = before_greek_.Charset;
          greek_ = false;
        }
        break;
      case '+':
      case '-':
        script_ = !on ? 0 : letter == '+' ? 1 : -1;
        Apply_Size();
        break;
      default: break;
    }
  }

  // The text from byte pos on, led by the commands that restore the state
  // in force; "" when nothing but a line end is left.
  std::string Remainder(std::size_t pos) const {
    std::string rest = t_.substr(pos);
    if (rest.ends_with("\\>")) rest.resize(rest.size() - 2);
    std::string_view core = rest;
    while (!core.empty() && core.front() == ' ') core.remove_prefix(1);
    while (!core.empty() && core.back() == ' ') core.remove_suffix(1);
    if (core.empty() || core == "\\cr") return {};
    std::string out = "\\< ";
    const std::string& face = greek_ ? before_greek_.Face : font_.Face;
    if (face != start_.Face) out += "\\f:" + face + ": ";
    if (colour_ != start_colour_) {
      char hex[16];
      std::snprintf(hex, sizeof hex, "%X", static_cast<unsigned>(colour_));
      out += std::string("\\c:") + hex + ": ";
    }
    if (font_.Italic) out += "\\i1 ";
    if (font_.Bold) out += "\\b1 ";
    if (greek_) out += "\\g1 ";
    if (font_.Strike) out += "\\s1 ";
    if (font_.Underline) out += "\\u1 ";
    if (script_ > 0) out += "\\+1 ";
    if (script_ < 0) out += "\\-1 ";
    if (line_size_ != start_.Size) {
      char size[32];
      std::snprintf(size, sizeof size, "%g", line_size_);
      out += std::string("\\p:") + size + ": ";
    }
    return out + rest;
  }

  Surface& hdc_;
  int mode_;
  std::string t_;
  double x0_, y0_;
  Colour colour_, start_colour_;
  double wrap_, line_start_x_;
  const Font_Rec start_;
  Font_Rec font_;
  Font_Rec before_greek_;
  bool greek_ = false;
  double scale_;
  int weight_;
  double angle_ = 0, cos_ = 1, sin_ = 0;
  double ratio_ = 0.65;
  double line_size_ = 10, size_now_ = 10, line_h_ = 0;
  int script_ = 0;  // 1 superscript, -1 subscript
  double tab_step_ = 0;
  double px_ = 0, py_ = 0, pb_ = 0, pt_ = 0;
  std::string gathered_;
  Markup_Result result_;
};

}  // namespace

Markup_Result Draw_Markup(Surface& hdc, int mode, std::string_view text, double x, double y,
                          double angle, Colour colour, double wrap, double line_start_x,
                          const Font_Rec& font, double scale, int weight) {
  std::string inner = To_Inner_Text(text) + "\\>";
  Markup_Walk walk(hdc, mode, std::move(inner), x, y, angle, colour, wrap, line_start_x, font,
                   scale, weight);
  return walk.Run();
}

double Measure_Markup(Surface& hdc, std::string_view text, const Font_Rec& font, double scale,
                      int weight) {
  return Draw_Markup(hdc, 0, text, 0, 0, 0, font.Colour, 0, 0, font, scale, weight).Width;
}

}  // namespace tevo::page
