#include "session/settings.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>
#include <unordered_map>

namespace tevo::session {

namespace {

// `value` rounded to a whole number and held within [lo, hi] (NaN gives 0):
// a setting read from a damaged file must not overflow its field.
double Whole_Within(double value, double lo, double hi) {
  if (std::isnan(value)) return 0;
  return std::clamp(std::nearbyint(value), lo, hi);
}
constexpr double Int16_Lo = std::numeric_limits<int16_t>::min(), Int16_Hi = std::numeric_limits<int16_t>::max();
constexpr double Int32_Lo = std::numeric_limits<int32_t>::min(), Int32_Hi = std::numeric_limits<int32_t>::max();

// Key text -> value index, for the written keys and the read-only keys.
struct Key_Index {
  std::unordered_map<std::string_view, int> all;  // typed access
  std::unordered_map<std::string_view, int> reader;  // what the reader takes
};

const Key_Index& Index() {
  static const Key_Index index = [] {
    Key_Index m;
    const auto keys = Setting_Keys();
    const int n = static_cast<int>(keys.size());
    for (int i = 0; i < n; ++i) {
      m.all.emplace(keys[i].key, i);
      if (keys[i].read_back && keys[i].type != Setting_Type::List) m.reader.emplace(keys[i].key, i);
    }
    int own = n;
    for (const auto& r : Read_Only_Keys()) {
      const int i = r.target ? m.all.at(r.target) : own++;
      m.all.emplace(r.key, i);
      m.reader.emplace(r.key, i);
    }
    return m;
  }();
  return index;
}

int Find(const std::unordered_map<std::string_view, int>& m, std::string_view key) {
  auto it = m.find(key);
  return it == m.end() ? -1 : it->second;
}

}  // namespace

int Setting_Index(std::string_view key) { return Find(Index().all, key); }
int Reader_Index(std::string_view key) { return Find(Index().reader, key); }

std::string Format_Setting_Number(Setting_Type type, double value) {
  char buf[64];
  std::to_chars_result r{};
  switch (type) {
    case Setting_Type::Real32:
      r = std::to_chars(buf, buf + sizeof buf, static_cast<float>(value));
      break;
    case Setting_Type::Real64:
      r = std::to_chars(buf, buf + sizeof buf, value);
      break;
    default:
      r = std::to_chars(buf, buf + sizeof buf, static_cast<long long>(std::nearbyint(value)));
      break;
  }
  return std::string(buf, r.ptr);
}

bool Parse_Setting_Number(Setting_Type type, std::string_view text, double& out) {
  // Blanks and tabs around the number are allowed, nothing else.
  const auto b = text.find_first_not_of(" \t");
  if (b == std::string_view::npos) return false;
  const auto e = text.find_last_not_of(" \t");
  std::string t(text.substr(b, e - b + 1));
  if (t.front() == '+') t.erase(t.begin());
  double v = 0;
  const auto [end, ec] = std::from_chars(t.data(), t.data() + t.size(), v);
  if (ec != std::errc() || end != t.data() + t.size() || !std::isfinite(v)) return false;
  switch (type) {
    case Setting_Type::Int16:
      v = std::nearbyint(v);
      if (v < -32768 || v > 32767) return false;
      break;
    case Setting_Type::Int32:
      v = std::nearbyint(v);
      if (v < -2147483648.0 || v > 2147483647.0) return false;
      break;
    case Setting_Type::Real32:
      if (std::fabs(v) > std::numeric_limits<float>::max()) return false;
      v = static_cast<float>(v);
      break;
    default:
      break;
  }
  out = v;
  return true;
}

Settings::Settings() { Reset(); }

void Settings::Reset() {
  values_.assign(static_cast<std::size_t>(Setting_Value_Count()), {});
  for (int i = 0; i < Setting_Value_Count(); ++i) {
    const Setting_Def& def = Setting_Def_Of(i);
    if (def.type == Setting_Type::Text)
      values_[static_cast<std::size_t>(i)].text = def.def_text ? def.def_text : "";
    else
      values_[static_cast<std::size_t>(i)].num = def.def_num;
  }
  Instrument_Ids.clear();
  Instrument.fill({});
  Fid_Shift_Val.fill({});
  Ref_Center_Frq.fill({});
  Ref_Center_Ex.fill({});
  Recent_Files.clear();
  Operators.clear();
  Para_Table.clear();
}

const Settings::Value& Settings::At(std::string_view key) const {
  int i = Setting_Index(key);
  if (i < 0) throw std::out_of_range("unknown settings key: " + std::string(key));
  return values_[static_cast<std::size_t>(i)];
}

Settings::Value& Settings::At(std::string_view key) {
  return const_cast<Value&>(static_cast<const Settings*>(this)->At(key));
}

int32_t Settings::Int(std::string_view key) const {
  return static_cast<int32_t>(Whole_Within(At(key).num, Int32_Lo, Int32_Hi));
}
double Settings::Real(std::string_view key) const { return At(key).num; }
const std::string& Settings::Text(std::string_view key) const { return At(key).text; }

void Settings::Set(std::string_view key, double value) {
  Value& v = At(key);
  const auto& def = Setting_Def_Of(Setting_Index(key));
  switch (def.type) {
    case Setting_Type::Int16:
      v.num = Whole_Within(value, Int16_Lo, Int16_Hi);
      break;
    case Setting_Type::Int32:
      v.num = Whole_Within(value, Int32_Lo, Int32_Hi);
      break;
    case Setting_Type::Real32:
      v.num = static_cast<float>(value);
      break;
    case Setting_Type::Real64:
      v.num = value;
      break;
    case Setting_Type::Text:
      v.text = Format_Setting_Number(Setting_Type::Real64, value);
      break;
    case Setting_Type::List:
      break;
  }
}

void Settings::Set(std::string_view key, std::string value) { At(key).text = std::move(value); }

std::string Settings::Value_Text(std::string_view key) const {
  const Value& v = At(key);
  const auto& def = Setting_Def_Of(Setting_Index(key));
  if (def.type == Setting_Type::Text) return v.text;
  if (def.type == Setting_Type::List) return {};
  return Format_Setting_Number(def.type, v.num);
}

}  // namespace tevo::session
