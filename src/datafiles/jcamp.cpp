// JCAMP-DX reader and writers. The reader collects everything into locals and
// touches the session only when the whole file decoded, so a refused or
// broken file leaves the former data set in place.
#include "datafiles/jcamp.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <map>
#include <optional>
#include <tuple>
#include <type_traits>
#include <utility>

#include "datafiles/bruker.h"
#include "datafiles/vendor_text.h"
#include "session/messages.h"
#include "session/session.h"
#include "session/startup.h"
#include "session/text_encoding.h"

namespace tevo::datafiles {

namespace {

bool Is_Digit(char c) { return c >= '0' && c <= '9'; }

// Leading digit of a pseudo-digit character and its form, or nullopt.
struct Pseudo {
  int digit;
  Asdf_Form form;
};
std::optional<Pseudo> Pseudo_Digit(char c) {
  if (c == '@') return Pseudo{0, Asdf_Form::Sqz};
  if (c >= 'A' && c <= 'I') return Pseudo{c - 'A' + 1, Asdf_Form::Sqz};
  if (c >= 'a' && c <= 'i') return Pseudo{-(c - 'a' + 1), Asdf_Form::Sqz};
  if (c == '%') return Pseudo{0, Asdf_Form::Dif};
  if (c >= 'J' && c <= 'R') return Pseudo{c - 'J' + 1, Asdf_Form::Dif};
  if (c >= 'j' && c <= 'r') return Pseudo{-(c - 'j' + 1), Asdf_Form::Dif};
  if (c >= 'S' && c <= 'Z') return Pseudo{c - 'S' + 1, Asdf_Form::Dup};
  if (c == 's') return Pseudo{9, Asdf_Form::Dup};
  return std::nullopt;
}

}  // namespace

Asdf_Token Next_Asdf_Token(std::string_view line, std::size_t& pos) {
  Asdf_Token tok;
  while (pos < line.size() && (line[pos] == ' ' || line[pos] == '\t' || line[pos] == ',' ||
                               line[pos] == ';'))
    ++pos;
  if (pos >= line.size()) return tok;
  if (line.substr(pos, 2) == "$$") {
    pos = line.size();
    return tok;
  }
  const char c = line[pos];
  if (c == '?') {
    ++pos;
    tok.form = Asdf_Form::Missing;
    return tok;
  }
  std::string text;  // the number in plain notation
  if (Is_Digit(c) || c == '+' || c == '-' || c == '.') {
    tok.form = Asdf_Form::Affn;
    text.push_back(c);
  } else if (auto p = Pseudo_Digit(c)) {
    tok.form = p->form;
    if (p->digit < 0) text.push_back('-');
    text.push_back(static_cast<char>('0' + std::abs(p->digit)));
  } else {
    tok.form = Asdf_Form::Error;
    return tok;
  }
  ++pos;
  bool point = c == '.';
  bool digits = Is_Digit(c) || tok.form != Asdf_Form::Affn;
  while (pos < line.size()) {
    const char d = line[pos];
    if (Is_Digit(d)) {
      text.push_back(d);
      digits = true;
    } else if (d == '.' && !point) {
      text.push_back(d);
      point = true;
    } else if ((d == 'E' || d == 'e') && digits && tok.form == Asdf_Form::Affn &&
               pos + 2 < line.size() + 0 && (line[pos + 1] == '+' || line[pos + 1] == '-') &&
               pos + 2 < line.size() && Is_Digit(line[pos + 2])) {
      text.push_back('e');
      text.push_back(line[pos + 1]);
      pos += 2;
      while (pos < line.size() && Is_Digit(line[pos])) text.push_back(line[pos++]);
      break;
    } else {
      break;
    }
    ++pos;
  }
  if (!digits) {
    tok.form = Asdf_Form::Error;
    return tok;
  }
  tok.value = std::strtod(text.c_str(), nullptr);
  return tok;
}

namespace {

// The value of the last digit printed in a number's text: 1 for "123",
// 0.01 for "1.25", 100 for "1.2E3".
double Printed_Unit(std::string_view text) {
  double unit = 1;
  const std::size_t e = text.find_first_of("Ee");
  const std::string_view mantissa = text.substr(0, e);
  if (const std::size_t dot = mantissa.find('.'); dot != std::string_view::npos)
    unit = std::pow(10.0, -static_cast<double>(mantissa.size() - dot - 1));
  if (e != std::string_view::npos) unit *= std::pow(10.0, std::strtod(std::string(text.substr(e + 1)).c_str(), nullptr));
  return unit;
}

}  // namespace

int Asdf_Decoder::Add_Line(std::string_view line) {
  std::size_t pos = 0;
  Asdf_Token tok = Next_Asdf_Token(line, pos);
  if (tok.form == Asdf_Form::End) return 0;  // empty or comment line
  if (tok.form != Asdf_Form::Affn && tok.form != Asdf_Form::Sqz) return -1;
  line_x.push_back(tok.value);
  {
    std::size_t from = line.find_first_not_of(" \t,;");
    line_x_unit.push_back(Printed_Unit(Trim(line.substr(from, pos - from))));
  }
  line_first.push_back(static_cast<int32_t>(y.size()));
  enum class Action { None, Value, Step } last = Action::None;
  double step = 0;
  bool first_y = true;
  for (;;) {
    tok = Next_Asdf_Token(line, pos);
    switch (tok.form) {
      case Asdf_Form::End:
        prev_ended_dif = last == Action::Step;
        return 0;
      case Asdf_Form::Error:
        return -1;
      case Asdf_Form::Missing:
        y.push_back(0.0);
        last = Action::Value;
        first_y = false;
        break;
      case Asdf_Form::Affn:
      case Asdf_Form::Sqz:
        if (first_y && prev_ended_dif && !y.empty()) {
          // The check point: it repeats the last point of the line before.
          ++check_count;
          const double tol = 1e-9 * std::max(1.0, std::fabs(tok.value));
          if (std::fabs(tok.value - y.back()) > tol) ++check_failures;
          y.back() = tok.value;
          --line_first.back();
        } else {
          y.push_back(tok.value);
        }
        last = Action::Value;
        first_y = false;
        break;
      case Asdf_Form::Dif:
        if (y.empty()) return -1;
        step = tok.value;
        y.push_back(y.back() + step);
        last = Action::Step;
        first_y = false;
        break;
      case Asdf_Form::Dup: {
        if (last == Action::None || tok.value < 1) return -1;
        // A count that takes the row past the largest transform cannot be
        // data this program reads: refused before anything is allocated.
        if (tok.value - 1 > static_cast<double>(Fft_Table_Size_Max) - static_cast<double>(y.size())) return -1;
        const auto more = static_cast<int64_t>(tok.value) - 1;
        for (int64_t k = 0; k < more; ++k)
          y.push_back(last == Action::Step ? y.back() + step : y.back());
        break;
      }
    }
  }
}

std::string Encode_Asdf(int64_t value, Asdf_Out form) {
  const bool negative = value < 0;
  const std::string digits = std::to_string(negative ? -value : value);
  const int lead = digits[0] - '0';
  const std::string rest = digits.substr(1);
  switch (form) {
    case Asdf_Out::Affn:
      return (negative ? " -" : " ") + digits;
    case Asdf_Out::Pac:
      return (negative ? "-" : "+") + digits;
    case Asdf_Out::Sqz:
      return std::string(1, lead == 0 ? '@' : static_cast<char>((negative ? 'a' : 'A') + lead - 1)) +
             rest;
    case Asdf_Out::Dif:
      return std::string(1, lead == 0 ? '%' : static_cast<char>((negative ? 'j' : 'J') + lead - 1)) +
             rest;
    case Asdf_Out::Dup:
      return std::string(1, lead == 9 ? 's' : static_cast<char>('S' + lead - 1)) + rest;
  }
  return {};
}

std::string Format_Fixed(double value, int min_int, int min_dec, int max_dec, bool point) {
  char buf[512];
  std::snprintf(buf, sizeof buf, "%.*f", max_dec, value);
  std::string t = buf;
  std::size_t dot = t.find('.');
  if (dot != std::string::npos) {
    std::size_t keep = dot + 1 + static_cast<std::size_t>(min_dec);
    while (t.size() > keep && t.back() == '0') t.pop_back();
    if (t.back() == '.' && !point) t.pop_back();
  } else if (point) {
    t += '.';
  }
  // Integer digits: a lone "0" before the point goes when none are required.
  const bool neg = !t.empty() && t[0] == '-';
  std::string body = neg ? t.substr(1) : t;
  if (min_int == 0 && body.size() > 1 && body[0] == '0' && body[1] == '.') body.erase(0, 1);
  if (neg && body.find_first_not_of("0.") == std::string::npos) return body;  // "-0" is "0"
  return (neg ? "-" : "") + body;
}

namespace {

// ---- labels ----

struct Label {
  std::string name;  // upper-case, trimmed, without "##"
  std::string value;  // trimmed, "$$" comment removed
  std::string raw_value;  // as it stands behind "="
};

// Splits a "##NAME=value" line; false for any other line.
bool Parse_Label(const std::string& line, Label& out) {
  if (line.size() < 2 || line[0] != '#' || line[1] != '#') return false;
  const std::size_t eq = line.find('=');
  out.name = Upper(Trim(line.substr(2, eq == std::string::npos ? std::string::npos : eq - 2)));
  out.raw_value = eq == std::string::npos ? std::string() : line.substr(eq + 1);
  std::string v = out.raw_value;
  const std::size_t cm = v.find("$$");
  if (cm != std::string::npos) v.erase(cm);
  out.value = Trim(v);
  return true;
}

std::vector<std::string> Split_List(const std::string& value) {
  std::vector<std::string> out;
  std::size_t start = 0;
  for (;;) {
    const std::size_t comma = value.find(',', start);
    out.push_back(Trim(value.substr(start, comma == std::string::npos ? std::string::npos
                                                                      : comma - start)));
    if (comma == std::string::npos) break;
    start = comma + 1;
  }
  return out;
}

// Removes surrounding "<" ">" of vendor string values.
std::string Unbracket(const std::string& v) {
  if (v.size() >= 2 && v.front() == '<' && v.back() == '>') return v.substr(1, v.size() - 2);
  return v;
}

// ---- the parameter block tags of the program's own files ----

struct Tag_Io {
  std::string name;
  std::string (*get)(const Data_Param&, int);
  void (*set)(Data_Param&, int, const std::string&);
  int index;
  double limit = 0;  // largest magnitude the field holds; 0 for a text
};

template <auto Member>
using Field_Type = std::remove_cvref_t<decltype(std::declval<Data_Param&>().*Member)>;

std::string Num_Text(double v) {
  char buf[64];
  std::snprintf(buf, sizeof buf, "%.7g", v);
  return buf;
}

template <auto Member>
Tag_Io Float_Tag(const char* name) {
  return {name, [](const Data_Param& p, int) { return Num_Text(p.*Member); },
          [](Data_Param& p, int, const std::string& v) { p.*Member = To_Real32(Val(v)); },
          0, std::numeric_limits<float>::max()};
}
template <auto Member>
Tag_Io Int_Tag(const char* name) {
  return {name, [](const Data_Param& p, int) { return std::to_string(p.*Member); },
          [](Data_Param& p, int, const std::string& v) {
            using T = std::remove_reference_t<decltype(p.*Member)>;
            p.*Member = static_cast<T>(std::llround(Val(v)));
          },
          0, static_cast<double>(std::numeric_limits<Field_Type<Member>>::max())};
}
template <auto Member>
Tag_Io Text_Tag(const char* name) {
  return {name, [](const Data_Param& p, int) { return p.*Member; },
          [](Data_Param& p, int, const std::string& v) { p.*Member = v; }, 0};
}
template <auto Member>
Tag_Io Array_Tag(const char* name, int index) {
  return {name, [](const Data_Param& p, int i) { return Num_Text((p.*Member)[i]); },
          [](Data_Param& p, int i, const std::string& v) {
            using T = std::remove_reference_t<decltype((p.*Member)[0])>;
            (p.*Member)[i] = static_cast<T>(Val(v));
          },
          index, static_cast<double>(std::numeric_limits<typename Field_Type<Member>::value_type>::max())};
}

// The block in the order the writers put it.
const std::vector<Tag_Io>& Param_Tags() {
  static const std::vector<Tag_Io> tags = [] {
    std::vector<Tag_Io> t;
    t.push_back(Text_Tag<&Data_Param::Data_File>("DFILE"));
    t.push_back(Float_Tag<&Data_Param::ADBIT>("ADBIT"));
    t.push_back(Text_Tag<&Data_Param::COMNT>("COMNT"));
    t.push_back(Float_Tag<&Data_Param::CSPED>("CSPED"));
    t.push_back(Float_Tag<&Data_Param::CTEMP>("CTEMP"));
    t.push_back(Float_Tag<&Data_Param::DELAY>("DELAY"));
    t.push_back(Float_Tag<&Data_Param::DEADT>("DEADT"));
    t.push_back({"DTYPE", [](const Data_Param&, int) { return std::string("0"); },
                 [](Data_Param&, int, const std::string&) {}, 0});
    t.push_back(Int_Tag<&Data_Param::DUMMY>("DUMMY"));
    t.push_back(Text_Tag<&Data_Param::EXMOD>("EXMOD"));
    t.push_back(Text_Tag<&Data_Param::EXPCM>("EXPCM"));
    t.push_back(Float_Tag<&Data_Param::FILTR>("FILTR"));
    t.push_back(Float_Tag<&Data_Param::FREQU>("FREQU"));
    t.push_back(Float_Tag<&Data_Param::IRFRQ>("IRFRQ"));
    t.push_back(Float_Tag<&Data_Param::INTVL>("INTVL"));
    t.push_back(Int_Tag<&Data_Param::IRATN>("IRATN"));
    t.push_back(Float_Tag<&Data_Param::IRFIN>("IRFIN"));
    t.push_back(Text_Tag<&Data_Param::IRNUC>("IRNUC"));
    t.push_back(Float_Tag<&Data_Param::IRPHS>("IRPHS"));
    t.push_back(Int_Tag<&Data_Param::IRRPW>("IRRPW"));
    t.push_back(Float_Tag<&Data_Param::IRSET>("IRSET"));
    t.push_back(Float_Tag<&Data_Param::INIWT>("INIWT"));
    for (int i = 0; i < 5; ++i)
      t.push_back(Array_Tag<&Data_Param::LOOP>(("LOOP" + std::to_string(i + 1)).c_str(), i));
    t.push_back(Int_Tag<&Data_Param::OBATN>("OBATN"));
    t.push_back(Float_Tag<&Data_Param::OBFIN>("OBFIN"));
    t.push_back(Text_Tag<&Data_Param::OBNUC>("OBNUC"));
    t.push_back(Float_Tag<&Data_Param::OBSET>("OBSET"));
    t.push_back(Float_Tag<&Data_Param::OBFRQ>("OBFRQ"));
    t.push_back(Float_Tag<&Data_Param::PD>("PD"));
    for (int i = 0; i < 5; ++i)
      t.push_back(Array_Tag<&Data_Param::PI>(("PI" + std::to_string(i + 1)).c_str(), i));
    t.push_back(Int_Tag<&Data_Param::POINT>("POINT"));
    for (int i = 0; i < 5; ++i)
      t.push_back(Array_Tag<&Data_Param::PS>(("PS" + std::to_string(i + 1)).c_str(), i));
    for (int i = 0; i < 5; ++i)
      t.push_back(Array_Tag<&Data_Param::PW>(("PW" + std::to_string(i + 1)).c_str(), i));
    t.push_back(Float_Tag<&Data_Param::RESOL>("RESOL"));
    t.push_back(Int_Tag<&Data_Param::RGAIN>("RGAIN"));
    t.push_back(Int_Tag<&Data_Param::SCANS>("SCANS"));
    t.push_back(Text_Tag<&Data_Param::SLVNT>("SLVNT"));
    t.push_back(Float_Tag<&Data_Param::SMEXR>("SMEXR"));
    t.push_back(Int_Tag<&Data_Param::SMODE>("SMODE"));
    t.push_back(Float_Tag<&Data_Param::SMTMS>("SMTMS"));
    t.push_back(Int_Tag<&Data_Param::TIMES>("TIMES"));
    t.push_back(Int_Tag<&Data_Param::TOSCN>("TOSCN"));
    t.push_back(Float_Tag<&Data_Param::TR>("TR"));
    t.push_back(Int_Tag<&Data_Param::TRATN>("TRATN"));
    t.push_back(Float_Tag<&Data_Param::TRFIN>("TRFIN"));
    t.push_back(Float_Tag<&Data_Param::TRFRQ>("TRFRQ"));
    t.push_back(Text_Tag<&Data_Param::TRNUC>("TRNUC"));
    t.push_back(Int_Tag<&Data_Param::TRRPW>("TRRPW"));
    t.push_back(Float_Tag<&Data_Param::TRSET>("TRSET"));
    return t;
  }();
  return tags;
}

// Tags the reader doesn't take from the block: the data themselves say them.
bool Tag_Set_By_Data(const std::string& name) {
  return name == "POINT" || name == "SMODE" || name == "DFILE" || name == "RESOL";
}

// ---- reading ----

enum class Table { None, Real, Imag };

struct Jcamp_State {
  int smode = -1;  // 1 spectrum, 0 FID
  bool two_d = false;
  std::string title, date, spectrometer, sample, nucleus, acq_mode;
  double observe = 0;
  int32_t averages = 0;
  double digitiser = 0;
  bool x_hz = false;
  bool have_first = false, have_last = false;
  double first_x = 0, last_x = 0, delta_x = 0;
  double x_factor = 1, y_factor = 1, i_factor = 1;
  int32_t npoints = 0;
  std::vector<std::string> symbols, units, first, last, factor, var_dim;
  bool have_shift_ref = false;
  double shift_ref_point = 0, shift_ref_ppm = 0;
  bool have_block = false;
  Data_Param block;
  double group_delay = 0, decim = 0, dspfvs = 0;  // a digital filter's delay
  double sf = 0, bf1 = 0;  // the Bruker block's 0 ppm frequencies, MHz
  bool vendor_fid = false;  // "##ORIGIN" names the Bruker software: its shift memory class
  bool overflow = false;  // a label's number does not fit its field
  Asdf_Decoder real, imag;
};

// A count label's value; one beyond an int32 marks the overflow.
int32_t Count_Of(Jcamp_State& st, const std::string& v) {
  const double n = Val(v);
  if (!(std::fabs(n) < 2147483648.0)) {
    st.overflow = true;
    return 0;
  }
  return static_cast<int32_t>(n);
}

// True when a value can be stored as a real32: finite and within its range.
bool Fits_Real32(double v) { return std::isfinite(v) && std::fabs(v) <= std::numeric_limits<float>::max(); }

// True when every data line's X check value, times the X factor, stands
// where the running abscissa puts that line's first point (first + index x
// step), within one step and half the last printed digit. A line lost from
// the middle of a table moves every later line by its whole length.
bool Lines_Follow_Abscissa(const Asdf_Decoder& d, double first, double step, double x_factor) {
  for (std::size_t k = 0; k < d.line_x.size(); ++k) {
    const double at = first + step * d.line_first[k];
    const double tolerance = std::fabs(step) + 0.5 * d.line_x_unit[k] * std::fabs(x_factor);
    if (!(std::fabs(d.line_x[k] * x_factor - at) <= tolerance)) return false;
  }
  return true;
}

int Column_Of(const std::vector<std::string>& symbols, const std::string& name) {
  for (std::size_t i = 0; i < symbols.size(); ++i)
    if (Upper(symbols[i]) == name) return static_cast<int>(i);
  return -1;
}

std::string Column_Value(const std::vector<std::string>& list, int column) {
  if (column < 0 || static_cast<std::size_t>(column) >= list.size()) return {};
  return list[static_cast<std::size_t>(column)];
}

bool Is_Multi_Dimensional(const std::string& data_type) {
  const std::string u = Upper(Trim(data_type));
  return u.rfind("ND ", 0) == 0 || u.rfind("2D ", 0) == 0 || u.rfind("3D ", 0) == 0;
}

void Take_Label(Jcamp_State& st, const Label& l) {
  const std::string& n = l.name;
  const std::string& v = l.value;
  if (n == "TITLE") st.title = Sjis_To_Utf8(Trim(l.raw_value));
  else if (n == "DATA TYPE" || n == "DATATYPE") {
    const std::string u = Upper(v);
    if (u.find("NMR SPECTRUM") != std::string::npos) st.smode = 1;
    else if (u.find("NMR FID") != std::string::npos) st.smode = 0;
    if (Is_Multi_Dimensional(v)) st.two_d = true;
  } else if (n == "NUMDIM") {
    if (Val(v) > 1) st.two_d = true;
  } else if (n == "DATE" || n == "LONG DATE" || n == "LONGDATE") {
    if (st.date.empty() || n == "DATE") st.date = Sjis_To_Utf8(v);
  } else if (n == "SPECTROMETER/DATA SYSTEM") st.spectrometer = Sjis_To_Utf8(v);
  else if (n == "SAMPLE DESCRIPTION") st.sample = Sjis_To_Utf8(v);
  else if (n == ".OBSERVE FREQUENCY") st.observe = Val(v);
  else if (n == ".OBSERVE NUCLEUS") {
    std::string nuc = v;
    nuc.erase(std::remove(nuc.begin(), nuc.end(), '^'), nuc.end());
    st.nucleus = Trim(nuc);
  } else if (n == ".ACQUISITION MODE") st.acq_mode = Upper(v);
  else if (n == ".AVERAGES") st.averages = Count_Of(st, v);
  else if (n == ".DIGITISER" || n == ".DIGITISER RES") st.digitiser = Val(v);
  else if (n == "XUNITS") st.x_hz = Upper(v) == "HZ";
  else if (n == "UNITS") {
    st.units = Split_List(v);
  } else if (n == "FIRSTX") {
    st.first_x = Val(v);
    st.have_first = true;
  } else if (n == "LASTX") {
    st.last_x = Val(v);
    st.have_last = true;
  } else if (n == "DELTAX") st.delta_x = Val(v);
  else if (n == "XFACTOR") st.x_factor = Val(v);
  else if (n == "YFACTOR") st.y_factor = Val(v);
  else if (n == "FIRST") st.first = Split_List(v);
  else if (n == "LAST") st.last = Split_List(v);
  else if (n == "FACTOR") st.factor = Split_List(v);
  else if (n == "NPOINTS") st.npoints = Count_Of(st, v);
  else if (n == "VAR_DIM") st.var_dim = Split_List(v);
  else if (n == "SYMBOL") st.symbols = Split_List(v);
  else if (n == ".SHIFT REFERENCE") {
    // "INTERNAL, solvent, point number (1-based, file order), shift in ppm"
    const auto list = Split_List(v);
    if (list.size() >= 4 && Leading_Number(list[2]) && Leading_Number(list[3])) {
      st.have_shift_ref = true;
      st.shift_ref_point = Val(list[2]);
      st.shift_ref_ppm = Val(list[3]);
    }
  } else if (n == "ORIGIN") {
    const std::string u = Upper(v);
    st.vendor_fid = u.find("BRUKER") != std::string::npos || u.find("UXNMR") != std::string::npos;
  } else if (n == "$SF") st.sf = Val(v);
  else if (n == "$BF1") st.bf1 = Val(v);
  else if (n == "$GRPDLY") st.group_delay = Val(v);
  else if (n == "$DECIM") st.decim = Val(v);
  else if (n == "$DSPFVS") st.dspfvs = Val(v);
  else if (n.size() > 1 && n[0] == '$') {
    const std::string tag = n.substr(1);
    for (const Tag_Io& t : Param_Tags()) {
      if (t.name != tag) continue;
      st.have_block = true;
      if (t.limit > 0 && !(std::fabs(Val(v)) <= t.limit)) st.overflow = true;
      else if (!Tag_Set_By_Data(tag)) t.set(st.block, t.index, Sjis_To_Utf8(v));
      break;
    }
  }
}

Table Table_Of(const std::string& value) {
  const std::string u = Upper(value);
  if (u.find("(X++(Y..Y))") != std::string::npos || u.find("(X++(R..R))") != std::string::npos)
    return Table::Real;
  if (u.find("(X++(I..I))") != std::string::npos) return Table::Imag;
  return Table::None;
}

}  // namespace

Kind_Check RMJ(const std::string& path) {
  Kind_Check out;
  out.kind = "JCAMP-DX";
  auto bytes = Read_Whole_File(path);
  if (!bytes) {
    out.status = -1;
    return out;
  }
  bool nmr = false, two_d = false, version = false;
  enum class Block { None, Nmr, Bruker } block = Block::None;
  for (const std::string& line : Split_Lines(*bytes)) {
    const std::string t = Trim(line);
    const std::string u = Upper(t);
    if (u.rfind("$$ JEOL SPECIFIC PARAMETERS", 0) == 0 ||
        u.rfind("$$ NMR SPECIFIC PARAMETERS", 0) == 0) {
      block = Block::Nmr;
      continue;
    }
    if (u.rfind("$$ BRUKER SPECIFIC PARAMETERS", 0) == 0) {
      block = Block::Bruker;
      continue;
    }
    if (u.rfind("$$ END OF", 0) == 0) {
      block = Block::None;
      continue;
    }
    Label l;
    if (!Parse_Label(t, l)) continue;
    if (block == Block::Nmr && l.name.rfind("$", 0) != 0) block = Block::None;
    if (block == Block::Nmr && l.name == "$EXMOD" && !l.value.empty()) out.kind = l.value;
    if (block == Block::Bruker && l.name == "$PULPROG" && !l.value.empty())
      out.kind = Unbracket(l.value);
    if (l.name == "JCAMP-DX" || l.name == "JCAMPDX") version = true;
    else if (l.name == "DATA TYPE" || l.name == "DATATYPE") {
      const std::string v = Upper(l.value);
      if (v.find("NMR SPECTRUM") != std::string::npos || v.find("NMR FID") != std::string::npos)
        nmr = true;
      if (Is_Multi_Dimensional(l.value)) two_d = true;
    } else if (l.name == "NUMDIM" && Val(l.value) > 1) {
      two_d = true;
    } else if (l.name == "DATA TABLE" || l.name == "XYDATA" || l.name == "END") {
      if (l.name != "END" || nmr) break;
    }
  }
  if (!version || !nmr) out.status = 1;
  else out.status = two_d ? 2 : 0;
  return out;
}

int RDJ(Session& s, const std::string& path, Jcamp_Read_Info* info) {
  try {
    int err = 0;
    auto bytes = Read_Whole_File(path, &err);
    if (!bytes) return Reader_Fail(s, err, "RDJ/DRW");
    Jcamp_State st;
    Table table = Table::None;
    bool seen_data = false, ended = false;
    for (const std::string& line : Split_Lines(*bytes)) {
      Label l;
      if (Parse_Label(line, l)) {
        table = Table::None;
        if (l.name == "XYDATA" || l.name == "DATA TABLE") {
          if (st.two_d) return Reader_Refuse(s, "2D Data !");
          table = Table_Of(l.value);
          if (table == Table::None) return Reader_Refuse(s, "Dataが違います");
          seen_data = true;
          continue;
        }
        if (l.name == "END" && seen_data) {
          ended = true;
          break;
        }
        Take_Label(st, l);
        continue;
      }
      if (table == Table::None) continue;
      const std::string t = Trim(line);
      if (t.empty() || t.rfind("$$", 0) == 0) continue;
      Asdf_Decoder& dec = table == Table::Real ? st.real : st.imag;
      if (dec.Add_Line(t) != 0) return Reader_Fail(s, 13, "RDJ/DRW");
    }
    if (st.two_d) return Reader_Refuse(s, "2D Data !");
    if (st.overflow) return Reader_Fail(s, 6, "RDJ/DRW");
    if (st.smode < 0 || !seen_data) return Reader_Refuse(s, "Dataが違います");
    // A file that stops before "##END=" was cut short (input past end).
    if (!ended) return Reader_Fail(s, 62, "RDJ/DRW");

    // Point count, factors and X ends of the two forms.
    const bool tuples = !st.symbols.empty();
    double first_x = st.first_x, last_x = st.last_x;
    double re_factor = st.y_factor, im_factor = st.y_factor, x_factor = st.x_factor;
    int32_t n = st.npoints;
    bool x_hz = st.x_hz;
    bool x_seconds = false;
    bool x_known = st.have_first && (st.have_last || st.delta_x != 0);
    if (tuples) {
      const int xc = Column_Of(st.symbols, "X");
      const int rc = Column_Of(st.symbols, "R");
      const int ic = Column_Of(st.symbols, "I");
      if (n <= 0) n = Count_Of(st, Column_Value(st.var_dim, rc >= 0 ? rc : xc));
      if (!Column_Value(st.first, xc).empty()) first_x = Val(Column_Value(st.first, xc));
      if (!Column_Value(st.last, xc).empty()) last_x = Val(Column_Value(st.last, xc));
      x_known = !Column_Value(st.first, xc).empty() && !Column_Value(st.last, xc).empty();
      const std::string rf = Column_Value(st.factor, rc), imf = Column_Value(st.factor, ic);
      const std::string xf = Column_Value(st.factor, xc);
      re_factor = rf.empty() ? 1.0 : Val(rf);
      im_factor = imf.empty() ? 1.0 : Val(imf);
      x_factor = xf.empty() ? 1.0 : Val(xf);
      const std::string xu = Upper(Column_Value(st.units, xc));
      x_hz = xu == "HZ";
      x_seconds = xu.rfind("SEC", 0) == 0;
    } else if (st.smode == 0) {
      x_seconds = true;
    }
    for (const double v : {re_factor, im_factor, x_factor, first_x, last_x, st.delta_x, st.observe})
      if (!std::isfinite(v)) st.overflow = true;
    if (st.overflow) return Reader_Fail(s, 6, "RDJ/DRW");
    if (n <= 0) n = static_cast<int32_t>(st.real.y.size());
    if (n < 2 || n > Fft_Table_Size_Max) return Reader_Refuse(s, "Dataが大きすぎるか、ﾊﾟﾗﾒｰﾀｴﾗｰ");
    if (st.real.y.empty()) return Reader_Refuse(s, "Dataが違います");
    if (re_factor == 0) re_factor = 1;
    if (im_factor == 0) im_factor = 1;
    if (x_factor == 0) x_factor = 1;
    // Every line where the abscissa says, or a line went missing.
    if (x_known) {
      const double step = st.have_last || tuples ? (last_x - first_x) / (n - 1) : st.delta_x;
      for (const Asdf_Decoder* d : {&st.real, &st.imag})
        if (!Lines_Follow_Abscissa(*d, first_x, step, x_factor)) return Reader_Fail(s, 13, "RDJ/DRW");
    }

    // Points beyond the count are dropped; missing ones stay 0.
    std::vector<float> re(static_cast<std::size_t>(n), 0.0f), im(static_cast<std::size_t>(n), 0.0f);
    for (auto [y, factor, out] : {std::tuple{&st.real.y, re_factor, &re}, std::tuple{&st.imag.y, im_factor, &im}})
      for (std::size_t i = 0; i < out->size() && i < y->size(); ++i) {
        const double v = (*y)[i] * factor;
        if (!Fits_Real32(v)) return Reader_Fail(s, 6, "RDJ/DRW");
        (*out)[i] = static_cast<float>(v);
      }
    if (!st.have_last && st.delta_x != 0) last_x = first_x + st.delta_x * (n - 1);

    Data_Param p = st.have_block ? st.block : Data_Param{};
    double observe = st.observe;
    if (observe <= 0 && st.have_block) observe = p.OBFRQ + p.OBSET * 1e-3 + p.OBFIN * 1e-6;
    // A spectrum in Hz and a FID need the observe frequency for their axis.
    if ((st.smode == 0 || x_hz) && observe <= 0) return Reader_Refuse(s, "Dataが大きすぎるか、ﾊﾟﾗﾒｰﾀｴﾗｰ");
    if (!Fits_Real32(observe)) return Reader_Fail(s, 6, "RDJ/DRW");

    if (!st.title.empty()) p.COMNT = st.title;
    if (!st.date.empty()) p.DATIM = st.date;
    if (!st.spectrometer.empty()) p.Instrument_Name = st.spectrometer;
    if (!st.sample.empty()) p.EXPCM = st.sample;
    if (!st.nucleus.empty()) p.OBNUC = st.nucleus;
    if (st.averages > 0) p.SCANS = st.averages;
    if (st.digitiser > 0) p.ADBIT = static_cast<float>(st.digitiser);
    if (p.OBFRQ == 0) p.OBFRQ = static_cast<float>(observe);
    p.Data_File = path;
    p.SMODE = static_cast<int16_t>(st.smode);

    const int32_t rows = 1;
    if (st.smode == 1) {
      // X of each file point in ppm; the shift reference moves the whole axis.
      double ppm_first = x_hz ? first_x / observe : first_x;
      double ppm_last = x_hz ? last_x / observe : last_x;
      if (st.have_shift_ref && st.shift_ref_point >= 1 && st.shift_ref_point <= n && n > 1) {
        const double at = ppm_first + (ppm_last - ppm_first) * (st.shift_ref_point - 1) / (n - 1);
        ppm_first += st.shift_ref_ppm - at;
        ppm_last += st.shift_ref_ppm - at;
      }
      if (ppm_first > ppm_last) {
        std::reverse(re.begin(), re.end());
        std::reverse(im.begin(), im.end());
        std::swap(ppm_first, ppm_last);
      }
      const double step = (ppm_last - ppm_first) / (n - 1);
      const double sf = observe > 0 ? observe : 400.0;
      if (!Fits_Real32(ppm_first) || !Fits_Real32(ppm_last) || !Fits_Real32(step * n * sf))
        return Reader_Fail(s, 6, "RDJ/DRW");
      if (!st.have_block || p.FREQU == 0) p.FREQU = static_cast<float>(step * n * sf);
      p.POINT = n;
      p.RESOL = static_cast<float>(step * sf);
      if (!st.have_block) {
        p.SMTMS = 0;
        p.SMEXR = static_cast<float>(ppm_first);
      }
      s.Array_Rows = rows;
      s.Array_Row = 0;
      Alloc_Point_Arrays(s, n);
      s.Spec_Points = n;
      s.Fid_Points = n;
      s.Spec_Axis.assign(static_cast<std::size_t>(n), 0.0f);
      for (int32_t i = 0; i < n; ++i) {
        const auto k = static_cast<std::size_t>(i);
        s.Spec_Re(k) = s.Ft_Re(k) = re[k];
        s.Spec_Im(k) = s.Ft_Im(k) = im[k];
        s.Spec_Axis[k] = static_cast<float>(ppm_first + step * i);
      }
      s.Observe_Frequency = observe;
      s.Spectrum_Frequency = sf;
      s.Is_Spectrum = 1;
      s.Is_Fid = 0;
    } else {
      // A FID: the X step is the dwell time.
      double dwell = (last_x - first_x) / (n - 1);
      if (!x_seconds && st.delta_x != 0) dwell = st.delta_x;
      if (!(dwell > 0)) return Reader_Refuse(s, "Dataが大きすぎるか、ﾊﾟﾗﾒｰﾀｴﾗｰ");
      if (!Fits_Real32(1.0 / dwell) || !Fits_Real32(n * dwell)) return Reader_Fail(s, 6, "RDJ/DRW");
      const int32_t size = Next_Power_Of_Two(n);
      if (size > Fft_Table_Size_Max) return Reader_Refuse(s, "Dataが大きすぎるか、ﾊﾟﾗﾒｰﾀｴﾗｰ");
      p.FREQU = static_cast<float>(1.0 / dwell);
      p.ACQTM = static_cast<float>(n * dwell);
      p.POINT = size;
      p.RESOL = p.FREQU / static_cast<float>(size);
      s.Array_Rows = rows;
      s.Array_Row = 0;
      Alloc_Point_Arrays(s, size);
      s.Spec_Points = size;
      s.Base_Point_Count = size;
      s.Fid_Points = n;
      // A JCAMP-DX FID holds the quadrature pair as the receiver gave it,
      // the imaginary part leading the real one for a line above the
      // carrier, as in a Bruker FID: it is negated as the Bruker reader does,
      // so the spectrum comes out with high frequency on the left.
      const float im_sign = -1.0f;
      for (int32_t i = 0; i < n; ++i) {
        const auto k = static_cast<std::size_t>(i);
        s.Fid_Re(k) = re[k];
        s.Fid_Im(k) = im_sign * im[k];
      }
      s.Spec_Axis.assign(static_cast<std::size_t>(size), 0.0f);
      s.Observe_Frequency = observe;
      s.Spectrum_Frequency = observe;
      // The spectrometer's own 0 ppm: SF when processing was referenced,
      // else BF1, else the shift reference (point p of the n-point spectrum,
      // counted from the high-frequency end, the carrier at (n + 1) / 2,
      // stands at the ppm given).
      s.Vendor_Zero_Frequency = st.sf > 0 ? st.sf : st.bf1;
      if (!(s.Vendor_Zero_Frequency > 0) && st.have_shift_ref && st.shift_ref_point >= 1 &&
          st.shift_ref_point <= n && observe > 0) {
        const double offset_hz = ((n + 1) / 2.0 - st.shift_ref_point) / (n * dwell);
        s.Vendor_Zero_Frequency = (observe + offset_hz * 1e-6) / (1 + st.shift_ref_ppm * 1e-6);
      }
      s.Is_Spectrum = 0;
      s.Is_Fid = 1;
    }
    p.Observe_Text = Observe_Text_Of(observe);
    s.Acq_Mode = 0;
    const double delay =
        st.group_delay > 0 ? st.group_delay : Bruker_Group_Delay(st.decim, st.dspfvs);
    s.Fid_Shift_Preset = st.smode == 0 && delay > 0 ? static_cast<int32_t>(std::nearbyint(delay)) : -1;
    if (st.smode == 0) s.Fid_Format_Class = st.vendor_fid ? 1 : 0;
    s.Param = p;
    Update_Scale_Values(s);
    if (info) {
      info->npoints = n;
      info->points_read = static_cast<int32_t>(st.real.y.size());
      info->check_count = st.real.check_count + st.imag.check_count;
      info->check_failures = st.real.check_failures + st.imag.check_failures;
      info->has_imaginary = !st.imag.y.empty();
      info->x_in_hz = x_hz;
    }
    return 0;
  } catch (const std::bad_alloc&) {
    return Reader_Fail(s, 7, "RDJ/DRW");
  } catch (const std::exception&) {
    return Reader_Fail(s, 57, "RDJ/DRW");
  }
}

// ---- writing ----

namespace {

// Points of the current row from the highest ppm down, scaled to integers.
struct Scaled_Row {
  std::vector<int64_t> re, im;
  std::vector<double> hz;  // X of each written point
  double scale = 1;
  double max_y = 0, min_y = 0;
};

Scaled_Row Scale_Row(Session& s) {
  Scaled_Row out;
  const int32_t n = s.Spec_Points;
  const auto row = static_cast<std::size_t>(s.Row());
  double largest = 0, smallest = 0;
  for (int32_t i = 0; i < n; ++i) {
    const double y = s.Spec_Re(static_cast<std::size_t>(i), row);
    largest = std::max(largest, y);
    smallest = std::min(smallest, y);
  }
  const double m = std::fabs(smallest) > std::fabs(largest) ? std::fabs(smallest) : std::fabs(largest);
  out.scale = m > 0 ? 4194304.0 / m : 1.0;
  out.max_y = largest;
  out.min_y = smallest;
  const double mhz = s.Observe_Frequency > 0 ? s.Observe_Frequency : s.Spectrum_Frequency;
  for (int32_t i = n - 1; i >= 0; --i) {
    const auto k = static_cast<std::size_t>(i);
    out.re.push_back(static_cast<int64_t>(Round_Even(s.Spec_Re(k, row) * out.scale)));
    out.im.push_back(static_cast<int64_t>(Round_Even(s.Spec_Im(k, row) * out.scale)));
    out.hz.push_back(k < s.Spec_Axis.size() ? s.Spec_Axis[k] * mhz : 0.0);
  }
  return out;
}

// Data lines of one table: X in AFFN, the first Y in SQZ, the rest as DIF
// with DUP for runs; each line under 80 characters. Every line after the
// first starts with the last Y of the line before as its check point.
std::vector<std::string> Pack_Lines(const std::vector<int64_t>& y, const std::vector<double>& x) {
  std::vector<std::string> lines;
  const std::size_t n = y.size();
  std::size_t i = 0;
  while (i < n) {
    char xb[64];
    std::snprintf(xb, sizeof xb, "%.4f", x[i]);
    std::string line = xb;
    line += Encode_Asdf(y[i], Asdf_Out::Sqz);
    std::size_t j = i;  // last point written on this line
    while (j + 1 < n) {
      const int64_t d = y[j + 1] - y[j];
      std::size_t run = 1;
      while (j + 1 + run < n && y[j + 1 + run] - y[j + run] == d) ++run;
      std::string tok = Encode_Asdf(d, Asdf_Out::Dif);
      if (run > 1) tok += Encode_Asdf(static_cast<int64_t>(run), Asdf_Out::Dup);
      if (line.size() + tok.size() > 79) {
        // Take part of the run if it fits, else end the line.
        std::string one = Encode_Asdf(d, Asdf_Out::Dif);
        if (line.size() + one.size() > 79) break;
        std::size_t part = run;
        std::string t2;
        while (part > 1) {
          --part;
          t2 = one + (part > 1 ? Encode_Asdf(static_cast<int64_t>(part), Asdf_Out::Dup) : "");
          if (line.size() + t2.size() <= 79) break;
        }
        if (part == 1) t2 = one;
        line += t2;
        j += part;
        break;
      }
      line += tok;
      j += run;
    }
    lines.push_back(line);
    if (j + 1 >= n) break;
    i = j;  // the next line repeats point j as its check point
  }
  return lines;
}

std::string Fmt_G(double v) {
  char buf[64];
  std::snprintf(buf, sizeof buf, "%.10g", v);
  return buf;
}

// A factor in the pattern "###0.##########" unless that would keep fewer
// than 7 significant digits; then in exponent form, so the data keep their
// quantisation step.
std::string Factor_Text(double v, int max_dec) {
  if (v != 0 && std::fabs(v) < std::pow(10.0, 6 - max_dec)) {
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.9E", v);
    return buf;
  }
  return Format_Fixed(v, 1, 0, max_dec);
}

void Write_Head(Session& s, std::vector<std::string>& out, bool extended) {
  const Data_Param& p = s.Param;
  out.push_back("##TITLE=" + p.COMNT);
  out.push_back("##JCAMP-DX=5.00");
  out.push_back("##DATA TYPE=NMR SPECTRUM");
  out.push_back(std::string("##DATA CLASS=") + (extended ? "NTUPLES" : "XYDATA"));
  out.push_back("##ORGIN=NOT SPECIFIED");
  out.push_back("##OWNER=GUEST");
  out.push_back("##DATE=" + p.DATIM);
  out.push_back("##SPECTROMETER/DATA SYSTEM=" + p.Instrument_Name);
  out.push_back("##.OBSERVE FREQUENCY=" + Format_Fixed(s.Observe_Frequency, 0, 0, 9));
  out.push_back("##.OBSERVE NUCLEUS=^" + p.OBNUC);
  out.push_back("##.SOLVENT REFERENCE=" + Format_Fixed(p.SMEXR, 0, 0, 6));
  out.push_back("##.ACQUISITION NODE=SIMULTANEOUS");
  out.push_back("##.AVERAGES=" + std::to_string(p.SCANS));
  out.push_back("$$ NMR SPECIFIC PARAMETERS");
  if (extended) out.push_back("$$ -----------------------");
  for (const Tag_Io& t : Param_Tags()) out.push_back("##$" + t.name + "=" + t.get(p, t.index));
  out.push_back("##$REFERENCE_POINT=" + Format_Fixed(p.SMTMS, 1, 0, 10));
  out.push_back("$$ END OF NMR SPECIFIC PARAMETERS");
  if (extended) out.push_back("$$ -------------------------------");
}

}  // namespace

int Write_Jcamp_Compact(Session& s, const std::string& path) {
  if (s.Spec_Points < 2 || s.Spec_Re.Empty()) return 1;
  const Scaled_Row r = Scale_Row(s);
  std::vector<std::string> out;
  Write_Head(s, out, false);
  const std::size_t n = r.re.size();
  out.push_back("##XUNITS=HZ");
  out.push_back("##YUNITS=ARBITRARY UNITS");
  out.push_back("##XFACTOR=" + Format_Fixed(1.0, 1, 0, 10));
  out.push_back("##YFACTOR=" + Factor_Text(1.0 / r.scale, 10));
  out.push_back("##FIRSTX=" + Fmt_G(r.hz.front()));
  out.push_back("##LASTX=" + Fmt_G(r.hz.back()));
  out.push_back("##DELTAX=" + Fmt_G((r.hz.back() - r.hz.front()) / static_cast<double>(n - 1)));
  out.push_back("##MAXY=" + Fmt_G(r.max_y));
  out.push_back("##MINY=" + Fmt_G(r.min_y));
  out.push_back("##NPOINTS=" + std::to_string(n));
  out.push_back("##FIRSTY=" + Format_Fixed(static_cast<double>(r.re.front()) / r.scale, 1, 1, 6));
  out.push_back("##XYDATA=(X++(Y..Y))");
  for (std::string& l : Pack_Lines(r.re, r.hz)) out.push_back(std::move(l));
  out.push_back("##END=");
  return Write_Export_Lines(s, path, out);
}

int Write_Jcamp_Extended(Session& s, const std::string& path) {
  if (s.Spec_Points < 2 || s.Spec_Re.Empty()) return 1;
  const Scaled_Row r = Scale_Row(s);
  std::vector<std::string> out;
  Write_Head(s, out, true);
  const std::size_t n = r.re.size();
  auto [re_min, re_max] = std::minmax_element(r.re.begin(), r.re.end());
  auto [im_min, im_max] = std::minmax_element(r.im.begin(), r.im.end());
  const double x_hi = std::max(r.hz.front(), r.hz.back()), x_lo = std::min(r.hz.front(), r.hz.back());
  auto xf = [](double v) { return Format_Fixed(v, 1, 0, 10); };
  const double unit = 1.0 / r.scale;
  auto yf = [unit](double v) { return Format_Fixed(v * unit, 1, 0, 8); };
  const std::string count = Format_Fixed(static_cast<double>(n), 1, 0, 0, false);
  out.push_back("##NTUPLES= NMR SPECTRUM");
  out.push_back("##VAR_NAME=FREQUENCY,SPECTRUM/REAL,SPECTRUM/IMAG,PAGE NUMBER");
  out.push_back("##SYMBOL=X,R,I,N");
  out.push_back("##VAR_TYPE=INDEPENDENT,DEPENDENT,DEPENDENT,PAGE");
  out.push_back("##VAR_FORM=AFFN,ASDF,ASDF,AFFN");
  out.push_back("##VAR_DIM=" + count + "," + count + "," + count + ",2");
  out.push_back("##UNITS=HZ,ARBITRARY UNITS,ARBITRARY UNITS");
  out.push_back("##FIRST=" + xf(r.hz.front()) + "," + yf(static_cast<double>(r.re.front())) + "," +
                yf(static_cast<double>(r.im.front())) + ",1");
  out.push_back("##LAST=" + xf(r.hz.back()) + "," + yf(static_cast<double>(r.re.back())) + "," +
                yf(static_cast<double>(r.im.back())) + ",2");
  out.push_back("##MIN=" + xf(x_lo) + "," + yf(static_cast<double>(*re_min)) + "," +
                yf(static_cast<double>(*im_min)) + ",1");
  out.push_back("##MAX=" + xf(x_hi) + "," + yf(static_cast<double>(*re_max)) + "," +
                yf(static_cast<double>(*im_max)) + ",2");
  const std::string yfac = Factor_Text(1.0 / r.scale, 10);
  out.push_back("##FACTOR=" + Format_Fixed(1.0, 1, 0, 10) + "," + yfac + "," + yfac + ",1");
  out.push_back("$$ Real Data");
  out.push_back("##PAGE=N=1");
  out.push_back("##DATA TABLE=(X++(R..R)), XYDATA");
  for (std::string& l : Pack_Lines(r.re, r.hz)) out.push_back(std::move(l));
  out.push_back("$$ Image Data");
  out.push_back("##PAGE=N=2");
  out.push_back("##DATA TABLE=(X++(I..I)), XYDATA");
  for (std::string& l : Pack_Lines(r.im, r.hz)) out.push_back(std::move(l));
  out.push_back("##END NTUPLES=NMR SPECTRUM");
  out.push_back("##END=");
  return Write_Export_Lines(s, path, out);
}

}  // namespace tevo::datafiles
