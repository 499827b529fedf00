// Conversions into inner notation and the byte-count cuts.
#include <cctype>
#include <cstdlib>
#include <vector>

#include "page/markup.h"
#include "session/text_encoding.h"

namespace tevo::page {

namespace {

std::string_view Trim_Blanks(std::string_view t) {
  while (!t.empty() && t.front() == ' ') t.remove_prefix(1);
  while (!t.empty() && t.back() == ' ') t.remove_suffix(1);
  return t;
}

char Lower(char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); }

bool Is_Digit(char c) { return c >= '0' && c <= '9'; }
bool Is_Hex(char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; }

// A line end at t[i] (CR or LF) with its partner of a CR LF or LF CR pair:
// the number of bytes it takes.
std::size_t Line_End_Length(std::string_view t, std::size_t i) {
  if (i + 1 < t.size() && (t[i + 1] == '\r' || t[i + 1] == '\n') && t[i + 1] != t[i]) return 2;
  return 1;
}

// The character of a decimal code typed as "\(n)": one byte of the code
// page, or a double-byte code as lead * 256 + trail.
std::string Char_Of_Code(long code) {
  if (code == 13) return "\\cr ";
  if (code < 32) return {};
  if (code == '\\') return "\\\\";
  if (code < 128) return std::string(1, static_cast<char>(code));
  std::string bytes;
  if (code > 255) bytes += static_cast<char>((code >> 8) & 0xFF);
  bytes += static_cast<char>(code & 0xFF);
  return Sjis_To_Utf8(bytes);
}

// What closes a group opened by `letter`.
const char* Group_Close(char letter) {
  switch (letter) {
    case '=':
    case '-': return "\\-0 ";
    case '+': return "\\+0 ";
    case 'i': return "\\i0 ";
    case 'b': return "\\b0 ";
    case 's': return "\\s0 ";
    case 'u': return "\\u0 ";
    case 'f': return "\\f0 ";
    case 'g': return "\\g0 ";
    case 'p': return "\\p0 ";
    case 'c': return "\\c0 ";
    case '(': return ")";
    default: return "";  // 'r'
  }
}

// One escape of grouped text at t[i] == '\\'. Appends its inner form and
// the group it opens (0 for none) and returns the index after it, or
// returns i + 2 with nothing appended for an escape it does not know.
std::size_t Grouped_Escape(std::string_view t, std::size_t i, std::string& out, char& opens) {
  opens = 0;
  if (i + 1 >= t.size()) return t.size();
  const char a = Lower(t[i + 1]);
  const std::size_t k = i + 2;  // first character after the escape letter
  auto paren_at = [&](std::size_t j) { return j < t.size() && t[j] == '('; };
  switch (a) {
    case '\\':
      out += "\\\\";
      return k;
    case 'p': {
      std::size_t j = k;
      while (j < t.size() && (Is_Digit(t[j]) || t[j] == '.')) ++j;
      std::string digits(t.substr(k, j - k));
      if (paren_at(j) && !digits.empty() && std::atof(digits.c_str()) > 0) {
        out += "\\p:" + digits + ": ";
        opens = 'p';
        return j + 1;
      }
      break;
    }
    case 'c':
    case 'h': {
      std::size_t j = k;
      while (j < t.size() && Is_Hex(t[j])) ++j;
      if (paren_at(j)) {
        out += "\\c:" + std::string(t.substr(k, j - k)) + ": ";
        opens = 'c';
        return j + 1;
      }
      break;
    }
    case '(': {
      std::size_t j = k;
      while (j < t.size() && Is_Digit(t[j])) ++j;
      if (j > k && j < t.size() && t[j] == ')') {
        out += Char_Of_Code(std::strtol(std::string(t.substr(k, j - k)).c_str(), nullptr, 10));
        return j + 1;
      }
      break;
    }
    case '-':
    case '+':
    case '=':
    case 'r':
    case 'i':
    case 'u':
    case 'b':
    case 's':
    case 'g':
      if (paren_at(k)) {
        if (a == '=')
          out += "\\d1 ";
        else if (a != 'r')
          out += std::string("\\") + a + "1 ";
        opens = a;
        return k + 1;
      }
      break;
    case 'f':
      if (k < t.size() && t[k] == ':') {
        std::size_t j = t.find('(', k + 1);
        if (j != std::string_view::npos) {
          std::string_view name = Trim_Blanks(t.substr(k + 1, j - k - 1));
          if (!name.empty()) {
            out += "\\f:" + std::string(name) + ": ";
            opens = 'f';
            return j + 1;
          }
        }
      }
      break;
    default:
      break;
  }
  return k;  // unknown: dropped with its backslash
}

}  // namespace

std::string To_Inner_Text(std::string_view text) {
  if (text.empty()) return {};
  if (text.starts_with("\\<")) return std::string(text);
  std::string_view t = Trim_Blanks(text);
  std::string out;
  std::vector<char> stack;
  for (std::size_t i = 0; i < t.size();) {
    const char ch = t[i];
    if (ch == '\\') {
      char opens = 0;
      i = Grouped_Escape(t, i, out, opens);
      if (opens) stack.push_back(opens);
    } else if (ch == '(') {
      out += '(';
      stack.push_back('(');
      ++i;
    } else if (ch == ',') {
      // "\=(a,b)": the comma turns the subscript into the superscript.
      if (!stack.empty() && stack.back() == '=') {
        out += "\\u1 ";
        stack.back() = '+';
      } else {
        out += ',';
      }
      ++i;
    } else if (ch == ')') {
      if (stack.empty()) {
        out += ')';
      } else {
        out += Group_Close(stack.back());
        stack.pop_back();
      }
      ++i;
    } else if (ch == '\r' || ch == '\n') {
      out += "\\cr ";
      i += Line_End_Length(t, i);
    } else {
      out += ch;
      ++i;
    }
  }
  if (out.ends_with("\\cr ")) out.resize(out.size() - 4);
  return "\\< " + out + "\\>";
}

std::string Plain_To_Inner(std::string_view text, int charset) {
  if (text.starts_with("\\<")) return std::string(text);
  std::string body;
  std::string_view rest;
  for (std::size_t i = 0; i < text.size();) {
    const char ch = text[i];
    if (ch == '\\') {
      if (i + 1 < text.size() && text[i + 1] == '<') {
        rest = text.substr(i);
        break;
      }
      body += "\\\\";
      ++i;
    } else if (ch == '\r' || ch == '\n') {
      body += "\\cr ";
      i += Line_End_Length(text, i);
    } else if (ch == '\t') {
      body += "    ";
      ++i;
    } else {
      if (static_cast<unsigned char>(ch) >= 32) body += ch;
      ++i;
    }
  }
  if (charset != Charset_Shift_Jis) {
    // Runs of double-byte characters go into the Japanese default face.
    std::string mixed;
    bool in_run = false;
    for (std::size_t i = 0; i < body.size();) {
      const std::size_t start = i;
      const char32_t c = Next_Utf8(body, i);
      const bool wide = Sjis_Char_Bytes(c) == 2;
      if (wide != in_run) {
        mixed += wide ? "\\f:" + Fonts().Default_Font + ": " : std::string("\\f0 ");
        in_run = wide;
      }
      mixed.append(body, start, i - start);
    }
    if (in_run) mixed += "\\f0 ";
    body = std::move(mixed);
  }
  return "\\< " + body + std::string(rest);
}

std::string Cut_To_Bytes(std::string_view text, std::size_t n) {
  std::size_t bytes = 0;
  std::size_t i = 0;
  while (i < text.size()) {
    std::size_t next = i;
    const int b = Sjis_Char_Bytes(Next_Utf8(text, next));
    if (bytes + b > n) break;
    bytes += b;
    i = next;
  }
  return std::string(text.substr(0, i));
}

std::string Cut_Right_To_Bytes(std::string_view text, std::size_t n) {
  std::vector<std::size_t> starts;
  std::vector<int> widths;
  for (std::size_t i = 0; i < text.size();) {
    starts.push_back(i);
    widths.push_back(Sjis_Char_Bytes(Next_Utf8(text, i)));
  }
  std::size_t bytes = 0;
  std::size_t k = starts.size();
  while (k > 0 && bytes + widths[k - 1] <= n) bytes += widths[--k];
  return std::string(text.substr(k < starts.size() ? starts[k] : text.size()));
}

}  // namespace tevo::page
