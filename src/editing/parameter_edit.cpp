#include "editing/parameter_edit.h"

#include <charconv>
#include <cmath>
#include <cstdlib>

#include "datafiles/nucleus.h"
#include "datafiles/vendor_text.h"
#include "session/session.h"

namespace tevo::editing {

using datafiles::Trim;
using datafiles::Upper;

namespace {

// Where each field lives in Data_Param: exactly one of the three members is set.
struct Field_Place {
  const char* tag;
  std::string Data_Param::*text = nullptr;
  float Data_Param::*real = nullptr;
  int32_t Data_Param::*integer = nullptr;
};

const std::vector<Field_Place>& Places() {
  static const std::vector<Field_Place> places = {
      {"COMNT", &Data_Param::COMNT},
      {"EXPCM", &Data_Param::EXPCM},
      {"EXMOD", &Data_Param::EXMOD},
      {"SLVNT", &Data_Param::SLVNT},
      {"OBNUC", &Data_Param::OBNUC},
      {"IRNUC", &Data_Param::IRNUC},
      {"DATIM", &Data_Param::DATIM},
      {"ID", &Data_Param::Instrument_Id},
      {"CTEMP", nullptr, &Data_Param::CTEMP},
      {"CSPED", nullptr, &Data_Param::CSPED},
      {"PD", nullptr, &Data_Param::PD},
      {"ACQTM", nullptr, &Data_Param::ACQTM},
      {"SCANS", nullptr, nullptr, &Data_Param::SCANS},
      {"DUMMY", nullptr, nullptr, &Data_Param::DUMMY},
      {"RGAIN", nullptr, nullptr, &Data_Param::RGAIN},
  };
  return places;
}

const Field_Place* Find(const std::string& tag) {
  for (const Field_Place& p : Places())
    if (tag == p.tag) return &p;
  return nullptr;
}

bool Parse_Real(const std::string& text, float& out) {
  const std::string t = Trim(text);
  if (t.empty()) return false;
  char* end = nullptr;
  const double v = std::strtod(t.c_str(), &end);
  if (*end != '\0' || !std::isfinite(v) || std::fabs(v) > 3.4e38) return false;
  out = static_cast<float>(v);
  return true;
}

bool Parse_Integer(const std::string& text, int32_t& out) {
  const std::string t = Trim(text);
  const char* b = t.data();
  const char* e = b + t.size();
  if (b != e && *b == '+') ++b;
  const auto r = std::from_chars(b, e, out);
  return !t.empty() && r.ec == std::errc() && r.ptr == e;
}

}  // namespace

const std::vector<Param_Field>& Param_Edit_Fields() {
  static const std::vector<Param_Field> fields = [] {
    std::vector<Param_Field> f;
    for (const Field_Place& p : Places())
      f.push_back({p.tag, p.text ? Param_Kind::Text : p.real ? Param_Kind::Real : Param_Kind::Integer});
    return f;
  }();
  return fields;
}

std::string Param_Edit_Text(const Session& s, const std::string& tag) {
  const Field_Place* p = Find(tag);
  if (!p) return {};
  if (p->text) return s.Param.*(p->text);
  if (p->integer) return std::to_string(s.Param.*(p->integer));
  char buf[32];
  const auto r = std::to_chars(buf, buf + sizeof buf, s.Param.*(p->real));
  return std::string(buf, r.ptr);
}

bool Param_Edit_Valid(const std::string& tag, const std::string& text) {
  const Field_Place* p = Find(tag);
  if (!p) return false;
  float r = 0;
  int32_t i = 0;
  return p->text || (p->real ? Parse_Real(text, r) : Parse_Integer(text, i));
}

bool Param_Edit_OK(Session& s, const std::map<std::string, std::string>& texts, std::string* bad) {
  for (const auto& [tag, text] : texts) {
    if (!Param_Edit_Valid(tag, text)) {
      if (bad) *bad = tag;
      return false;
    }
  }
  const Data_Param before = s.Param;
  for (const auto& [tag, text] : texts) {
    const Field_Place* p = Find(tag);
    if (p->real) {
      Parse_Real(text, s.Param.*(p->real));
    } else if (p->integer) {
      Parse_Integer(text, s.Param.*(p->integer));
    } else {
      std::string t = Trim(text);
      if (p->text == &Data_Param::OBNUC || p->text == &Data_Param::IRNUC) {
        // An emptied irradiation nucleus stays empty; the observed one is
        // always named ("NUL" when nothing is given).
        if (!t.empty() || p->text == &Data_Param::OBNUC) t = datafiles::Normalize_Nucleus(t, s.Nuclei).text;
      } else if (p->text == &Data_Param::Instrument_Id) {
        t = Upper(t);
      }
      s.Param.*(p->text) = t;
    }
  }
  if (s.Param == before) return false;
  s.Data_Saved = 0;
  return true;
}

}  // namespace tevo::editing
