// Rich text of the page editor: conversion to inner notation, drawing with
// the markup pen, and rescaling for the printer.
#include <cctype>
#include <cmath>
#include <cstdio>
#include <optional>
#include <vector>

#include "page/markup.h"
#include "page/markup_inner.h"
#include "platform/symbol_font.h"
#include "session/text_encoding.h"

namespace tevo::page {

namespace {

struct Rtf_Token {
  enum Kind { Open, Close, Word, Symbol, Byte, Text, End };
  Kind kind = End;
  std::string word;  // Word: the letters
  bool has_param = false;
  long param = 0;
  char symbol = 0;  // Symbol: the character after the backslash
  unsigned char byte = 0;
  std::string text;  // Text: one character (UTF-8)
  std::size_t begin = 0, end = 0;  // bytes of the source it takes
  bool ate_blank = false;  // Word: a blank after it belonged to it
};

// The token at t[i]; i moves past it.
Rtf_Token Next_Token(std::string_view t, std::size_t& i) {
  Rtf_Token tok;
  tok.begin = i;
  if (i >= t.size()) {
    tok.end = i;
    return tok;
  }
  const char ch = t[i];
  if (ch == '{' || ch == '}') {
    tok.kind = ch == '{' ? Rtf_Token::Open : Rtf_Token::Close;
    ++i;
  } else if (ch != '\\') {
    tok.kind = Rtf_Token::Text;
    Next_Utf8(t, i);
    tok.text = std::string(t.substr(tok.begin, i - tok.begin));
  } else if (i + 1 < t.size() && std::isalpha(static_cast<unsigned char>(t[i + 1]))) {
    tok.kind = Rtf_Token::Word;
    std::size_t j = i + 1;
    while (j < t.size() && std::isalpha(static_cast<unsigned char>(t[j]))) ++j;
    tok.word = std::string(t.substr(i + 1, j - i - 1));
    std::size_t k = j;
    if (k < t.size() && t[k] == '-') ++k;
    if (k < t.size() && std::isdigit(static_cast<unsigned char>(t[k]))) {
      while (k < t.size() && std::isdigit(static_cast<unsigned char>(t[k]))) ++k;
      tok.has_param = true;
      tok.param = std::strtol(std::string(t.substr(j, k - j)).c_str(), nullptr, 10);
      j = k;
    }
    if (j < t.size() && t[j] == ' ') {
      ++j;
      tok.ate_blank = true;
    }
    i = j;
  } else if (i + 3 < t.size() && t[i + 1] == '\'' && Hex_Digit(t[i + 2]) >= 0 &&
             Hex_Digit(t[i + 3]) >= 0) {
    tok.kind = Rtf_Token::Byte;
    tok.byte = static_cast<unsigned char>(Hex_Digit(t[i + 2]) * 16 + Hex_Digit(t[i + 3]));
    i += 4;
  } else {
    tok.kind = Rtf_Token::Symbol;
    tok.symbol = i + 1 < t.size() ? t[i + 1] : 0;
    i = std::min(t.size(), i + 2);
  }
  tok.end = i;
  return tok;
}

// Index after the group whose "{" is at t[open] (the end when unbalanced).
std::size_t Skip_Group(std::string_view t, std::size_t open) {
  int depth = 0;
  std::size_t i = open;
  while (i < t.size()) {
    const Rtf_Token tok = Next_Token(t, i);
    if (tok.kind == Rtf_Token::Open) ++depth;
    if (tok.kind == Rtf_Token::Close && --depth == 0) return i;
  }
  return t.size();
}

// Whether the group opening at t[open] is one the text skips (font table,
// colour table, document information, "{\*" destinations, style sheet), and
// which.
std::string Skipped_Group(std::string_view t, std::size_t open) {
  std::size_t i = open + 1;
  const Rtf_Token tok = Next_Token(t, i);
  if (tok.kind == Rtf_Token::Symbol && tok.symbol == '*') return "*";
  if (tok.kind == Rtf_Token::Word &&
      (tok.word == "fonttbl" || tok.word == "colortbl" || tok.word == "info" ||
       tok.word == "stylesheet"))
    return tok.word;
  return {};
}

struct Rtf_Font {
  std::string name;
  int16_t charset = Charset_Ansi;
};

// Bytes of "\'hh" gathered until something else comes, then decoded in the
// code page of the font in force: a Shift-JIS lead byte joins its trail,
// and a pair led by byte 236 is the micro sign (the Symbol font's mu).
class Byte_Run {
 public:
  void Add(unsigned char b) { bytes_ += static_cast<char>(b); }
  std::string Take(const Font_Rec& font) {
    const bool double_byte = !platform::Is_Symbol_Font(font) && font.Charset != Charset_Ansi;
    std::string out, plain;
    for (std::size_t k = 0; k < bytes_.size(); ++k) {
      const unsigned char b = static_cast<unsigned char>(bytes_[k]);
      if (b == 236 && k + 1 < bytes_.size()) {
        out += Bytes_As_Text(plain, font);
        plain.clear();
        Append_Utf8(out, 0xB5);
        ++k;
        continue;
      }
      plain += static_cast<char>(b);
      if (double_byte && Is_Sjis_Lead(b) && k + 1 < bytes_.size()) plain += bytes_[++k];
    }
    out += Bytes_As_Text(plain, font);
    bytes_.clear();
    return out;
  }
  bool Empty() const { return bytes_.empty(); }

 private:
  std::string bytes_;
};

struct Rtf_Tables {
  std::vector<Rtf_Font> fonts;  // by "\f" number
  std::vector<std::optional<Colour>> colours;  // nullopt = automatic
  double default_size = 10;  // points
  std::size_t start = 0;  // where the text begins
};

void Read_Font_Table(std::string_view t, std::size_t open, std::vector<Rtf_Font>& fonts) {
  const std::size_t end = Skip_Group(t, open);
  std::size_t i = open + 1;
  Next_Token(t, i);  // \fonttbl
  long number = -1;
  Rtf_Font font;
  std::string name;
  Byte_Run bytes;
  Font_Rec code_page;
  auto take_bytes = [&] {
    code_page.Charset = font.charset;
    if (!bytes.Empty()) name += bytes.Take(code_page);
  };
  while (i < end) {
    const std::size_t at = i;
    const Rtf_Token tok = Next_Token(t, i);
    if (tok.kind == Rtf_Token::Open && !Skipped_Group(t, at).empty()) {
      i = Skip_Group(t, at);
      continue;
    }
    if (tok.kind == Rtf_Token::Byte) {
      bytes.Add(tok.byte);
      continue;
    }
    take_bytes();
    if (tok.kind == Rtf_Token::Word && tok.word == "f") {
      number = tok.param;
      font = Rtf_Font{};
      name.clear();
    } else if (tok.kind == Rtf_Token::Word && tok.word == "fcharset") {
      font.charset = static_cast<int16_t>(tok.param);
    } else if (tok.kind == Rtf_Token::Text) {
      if (tok.text == ";") {
        std::string_view n = name;
        while (!n.empty() && n.front() == ' ') n.remove_prefix(1);
        while (!n.empty() && n.back() == ' ') n.remove_suffix(1);
        font.name = std::string(n);
        if (const Font_Face* face = Find_Face(font.name)) font.charset = face->Charset;
        if (number >= 0 && number < 4096) {
          if (fonts.size() <= static_cast<std::size_t>(number)) fonts.resize(number + 1);
          fonts[number] = font;
        }
        name.clear();
      } else if (tok.text != "\r" && tok.text != "\n") {
        name += tok.text;
      }
    }
  }
}

void Read_Colour_Table(std::string_view t, std::size_t open,
                       std::vector<std::optional<Colour>>& colours) {
  const std::size_t end = Skip_Group(t, open);
  std::size_t i = open + 1;
  Next_Token(t, i);  // \colortbl
  int rgb[3] = {0, 0, 0};
  bool any = false;
  while (i < end) {
    const Rtf_Token tok = Next_Token(t, i);
    if (tok.kind == Rtf_Token::Word) {
      const int k = tok.word == "red" ? 0 : tok.word == "green" ? 1 : tok.word == "blue" ? 2 : -1;
      if (k >= 0) {
        rgb[k] = static_cast<int>(tok.param) & 0xFF;
        any = true;
      }
    } else if (tok.kind == Rtf_Token::Text && tok.text == ";") {
      colours.push_back(any ? std::optional<Colour>(platform::Rgb(rgb[0], rgb[1], rgb[2]))
                            : std::nullopt);
      rgb[0] = rgb[1] = rgb[2] = 0;
      any = false;
    }
  }
}

Rtf_Tables Read_Tables(std::string_view t) {
  Rtf_Tables tables;
  std::size_t viewkind = t.find("\\viewkind");
  std::size_t pard = t.find("\\pard");
  tables.start = 0;
  if (viewkind != std::string_view::npos) tables.start = viewkind;
  if (pard != std::string_view::npos) tables.start = std::max(tables.start, pard);
  bool have_size = false;
  for (std::size_t i = 0; i < t.size();) {
    const std::size_t at = i;
    const Rtf_Token tok = Next_Token(t, i);
    if (tok.kind == Rtf_Token::Open) {
      const std::string group = Skipped_Group(t, at);
      if (group == "fonttbl") Read_Font_Table(t, at, tables.fonts);
      if (group == "colortbl") Read_Colour_Table(t, at, tables.colours);
      if (!group.empty()) i = Skip_Group(t, at);
    } else if (tok.kind == Rtf_Token::Word && tok.word == "fs" && at < tables.start && !have_size) {
      tables.default_size = tok.param / 2.0;
      have_size = true;
    }
  }
  return tables;
}

std::string Format_Number(double v) {
  char buf[32];
  std::snprintf(buf, sizeof buf, "%g", v);
  return buf;
}

std::string Hex_Colour(Colour c) {
  char buf[16];
  std::snprintf(buf, sizeof buf, "%X", static_cast<unsigned>(c));
  return buf;
}

// The body of the RTF in inner notation (without "\< ").
std::string Rtf_Body(std::string_view t, const Rtf_Tables& tables, const Font_Rec& base) {
  std::string out;
  bool text_before = false;
  int skip_fallback = 0;  // characters standing in for a "\u" character
  Font_Rec code_page = base;
  Byte_Run bytes;
  auto put_text = [&](std::string_view s) {
    if (skip_fallback > 0) {
      --skip_fallback;
      return;
    }
    for (char c : s) {
      if (static_cast<unsigned char>(c) < 32) continue;
      if (c == '\\') out += '\\';
      out += c;
      text_before = true;
    }
  };
  auto switch_word = [&](const Rtf_Token& tok, const char* on, const char* off) {
    out += (tok.has_param && tok.param == 0) ? off : on;
  };
  for (std::size_t i = tables.start; i < t.size();) {
    const std::size_t at = i;
    const Rtf_Token tok = Next_Token(t, i);
    if (tok.kind == Rtf_Token::Byte) {
      if (skip_fallback > 0)
        --skip_fallback;
      else
        bytes.Add(tok.byte);
      continue;
    }
    if (!bytes.Empty()) put_text(bytes.Take(code_page));
    switch (tok.kind) {
      case Rtf_Token::Open:
        if (!Skipped_Group(t, at).empty()) i = Skip_Group(t, at);
        break;
      case Rtf_Token::Text:
        if (tok.text != "\r" && tok.text != "\n") put_text(tok.text);
        break;
      case Rtf_Token::Symbol:
        if (tok.symbol == '~') put_text(" ");
        if (tok.symbol == '_' || tok.symbol == '-') put_text("-");
        if (tok.symbol == '\\' || tok.symbol == '{' || tok.symbol == '}')
          put_text(std::string(1, tok.symbol));
        break;
      case Rtf_Token::Word: {
        const std::string& w = tok.word;
        if (w == "tab") {
          out += "\\tb ";
        } else if (w == "par" || w == "line") {
          out += "\\cr ";
        } else if (w == "i") {
          switch_word(tok, "\\i1 ", "\\i0 ");
        } else if (w == "b") {
          switch_word(tok, "\\b1 ", "\\b0 ");
        } else if (w == "strike") {
          switch_word(tok, "\\s1 ", "\\s0 ");
        } else if (w == "ul") {
          switch_word(tok, "\\u1 ", "\\u0 ");
        } else if (w == "ulnone") {
          out += "\\u0 ";
        } else if (w == "sub") {
          out += "\\-1 ";
        } else if (w == "super") {
          out += "\\+1 ";
        } else if (w == "nosupersub") {
          out += "\\+0 ";
        } else if (w == "up") {
          out += tok.param != 0 ? "\\+1 " : "\\+0 ";
        } else if (w == "dn") {
          out += tok.param != 0 ? "\\-1 " : "\\-0 ";
        } else if (w == "f") {
          if (tok.param >= 0 && static_cast<std::size_t>(tok.param) < tables.fonts.size()) {
            const Rtf_Font& f = tables.fonts[tok.param];
            code_page.Face = f.name;
            code_page.Charset = f.charset;
            out += "\\f:" + (f.charset == Charset_Symbol ? std::string("Symbol") : f.name) + ": ";
          }
        } else if (w == "fs") {
          out += "\\p:" + Format_Number(tok.param / 2.0) + ": ";
        } else if (w == "cf") {
          const auto k = static_cast<std::size_t>(tok.param);
          if (tok.param <= 0 || k >= tables.colours.size() || !tables.colours[k])
            out += "\\c0 ";
          else
            out += "\\c:" + Hex_Colour(*tables.colours[k]) + ": ";
        } else if (w == "pard") {
          if (text_before) out += "\\i0 \\b0 \\u0 \\s0 \\f0 \\p0 \\c0 \\+0 ";
        } else if (w == "u" && tok.has_param) {
          long code = tok.param < 0 ? tok.param + 65536 : tok.param;
          std::string one;
          Append_Utf8(one, static_cast<char32_t>(code));
          put_text(one);
          skip_fallback = 1;
        }
        break;
      }
      default:
        break;
    }
  }
  if (!bytes.Empty()) put_text(bytes.Take(code_page));
  return out;
}

std::string Inner_Of(std::string_view rtf, const Rtf_Tables& tables, const Font_Rec& base) {
  const bool symbol_first = !tables.fonts.empty() && tables.fonts[0].charset == Charset_Symbol;
  return std::string(symbol_first ? "\\< \\g1 " : "\\< ") + Rtf_Body(rtf, tables, base);
}

}  // namespace

bool Is_Rtf(std::string_view text) { return text.starts_with("{\\rtf"); }

std::string Rtf_To_Inner(std::string_view rtf, const Font_Rec& font, int charset) {
  Font_Rec base = font;
  base.Charset = static_cast<int16_t>(charset);
  return Inner_Of(rtf, Read_Tables(rtf), base);
}

Markup_Result Draw_Rtf(Surface& hdc, int mode, int flags, std::string_view rtf, double x, double y,
                       double angle, const Font_Rec& font, double scale) {
  const Rtf_Tables tables = Read_Tables(rtf);
  Font_Rec base = font;
  base.Size = static_cast<float>(tables.default_size);
  const bool caller_colour = flags == Rtf_Caller_Colour || flags == Rtf_Caller_Colour_Alt;
  const Colour colour = caller_colour ? font.Colour : 0;
  return Draw_Markup(hdc, mode, Inner_Of(rtf, tables, base), x, y, angle, colour, 0, 0, base,
                     scale);
}

std::string Rtf_Scale(std::string_view rtf, double factor) {
  std::string out;
  double size = 20;  // half-points in force
  auto shift = [&](const char* word) {
    return std::string("\\") + word + std::to_string(static_cast<long>(std::nearbyint(0.3 * size)));
  };
  for (std::size_t i = 0; i < rtf.size();) {
    const Rtf_Token tok = Next_Token(rtf, i);
    std::string replaced;
    if (tok.kind == Rtf_Token::Word) {
      const std::string& w = tok.word;
      if (w == "fs" && tok.has_param) {
        size = std::max(4.0, std::nearbyint(tok.param * factor));
        replaced = "\\fs" + std::to_string(static_cast<long>(size));
      } else if ((w == "up" || w == "dn") && tok.has_param && tok.param != 0) {
        replaced = shift(w.c_str());
      } else if (w == "super") {
        replaced = shift("up");
      } else if (w == "sub") {
        replaced = shift("dn");
      } else if (w == "nosupersub") {
        replaced = "\\dn0\\up0";
      }
    }
    if (replaced.empty()) {
      out.append(rtf, tok.begin, tok.end - tok.begin);
    } else {
      out += replaced;
      if (tok.ate_blank) out += ' ';
    }
  }
  return out;
}

}  // namespace tevo::page
