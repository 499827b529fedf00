#include "session/number_text.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace tevo {

namespace {

struct Picture {
  std::string prefix, suffix;
  int int_min = 0;  // '0's before the point
  bool point = false;
  int dec_min = 0, dec_max = 0;  // '0's and all placeholders after the point
  bool sci = false;
  bool exp_always_sign = false;
  int exp_min = 0;
  char exp_letter = 'E';
};

bool Is_Placeholder(char c) { return c == '0' || c == '#'; }

Picture Parse(std::string_view p) {
  Picture pic;
  std::size_t i = 0;
  while (i < p.size() && !Is_Placeholder(p[i]) && p[i] != '.') pic.prefix += p[i++];
  for (; i < p.size() && Is_Placeholder(p[i]); ++i)
    if (p[i] == '0') ++pic.int_min;
  if (i < p.size() && p[i] == '.') {
    pic.point = true;
    for (++i; i < p.size() && Is_Placeholder(p[i]); ++i) {
      ++pic.dec_max;
      if (p[i] == '0') pic.dec_min = pic.dec_max;
    }
  }
  if (i + 1 < p.size() && (p[i] == 'E' || p[i] == 'e') && (p[i + 1] == '+' || p[i + 1] == '-')) {
    pic.sci = true;
    pic.exp_letter = p[i];
    pic.exp_always_sign = p[i + 1] == '+';
    for (i += 2; i < p.size() && Is_Placeholder(p[i]); ++i)
      if (p[i] == '0') ++pic.exp_min;
  }
  pic.suffix = std::string(p.substr(i));
  return pic;
}

// "123.4500" with dec_min 2 -> "123.45"; the point stays even with no
// decimals left.
void Trim_Decimals(std::string& digits, const Picture& pic) {
  const std::size_t dot = digits.find('.');
  if (dot == std::string::npos) return;
  std::size_t keep = digits.size();
  while (keep > dot + 1 + static_cast<std::size_t>(pic.dec_min) && digits[keep - 1] == '0') --keep;
  digits.resize(keep);
}

// Applies the integer-part rules: no leading "0" unless the pattern asks
// for it, padding with zeros up to int_min digits.
void Shape_Integer(std::string& digits, const Picture& pic) {
  std::size_t dot = digits.find('.');
  std::string whole = digits.substr(0, dot);
  std::string rest = dot == std::string::npos ? "" : digits.substr(dot);
  if (whole == "0" && pic.int_min == 0) whole.clear();
  while (static_cast<int>(whole.size()) < pic.int_min) whole.insert(whole.begin(), '0');
  digits = whole + rest;
}

bool All_Zero(const std::string& digits) {
  for (char c : digits)
    if (c >= '1' && c <= '9') return false;
  return true;
}

}  // namespace

std::string Format_Number(double value, std::string_view pattern) {
  const Picture pic = Parse(pattern);
  if (!std::isfinite(value)) return pic.prefix + (std::isnan(value) ? "NaN" : "Inf") + pic.suffix;
  const bool negative = value < 0;
  const double a = std::fabs(value);
  char buf[512];
  std::string digits;
  if (pic.sci) {
    std::snprintf(buf, sizeof buf, "%.*e", pic.dec_max, a);
    std::string s = buf;
    const std::size_t e = s.find('e');
    digits = s.substr(0, e);
    int exponent = std::atoi(s.c_str() + e + 1);
    if (a == 0) exponent = 0;
    if (pic.point && digits.find('.') == std::string::npos) digits += '.';
    Trim_Decimals(digits, pic);
    Shape_Integer(digits, pic);
    std::string ex = std::to_string(std::abs(exponent));
    while (static_cast<int>(ex.size()) < pic.exp_min) ex.insert(ex.begin(), '0');
    std::string sign = exponent < 0 ? "-" : (pic.exp_always_sign ? "+" : "");
    digits += pic.exp_letter + sign + ex;
  } else {
    std::snprintf(buf, sizeof buf, "%.*f", pic.dec_max, a);
    digits = buf;
    if (pic.point && digits.find('.') == std::string::npos) digits += '.';
    Trim_Decimals(digits, pic);
    Shape_Integer(digits, pic);
  }
  const bool show_minus = negative && !All_Zero(digits);
  return pic.prefix + (show_minus ? "-" : "") + digits + pic.suffix;
}

}  // namespace tevo
