#include "session/settings.h"

#include <cmath>
#include <stdexcept>
#include <string>
#include <unordered_map>

namespace tevo::session {

int Setting_Index(std::string_view key) {
  static const std::unordered_map<std::string_view, int> index = [] {
    std::unordered_map<std::string_view, int> m;
    auto keys = Setting_Keys();
    for (int i = 0; i < static_cast<int>(keys.size()); ++i) m.emplace(keys[i].key, i);
    return m;
  }();
  auto it = index.find(key);
  return it == index.end() ? -1 : it->second;
}

Settings::Settings() { Reset(); }

void Settings::Reset() {
  auto keys = Setting_Keys();
  values_.assign(keys.size(), {});
  for (std::size_t i = 0; i < keys.size(); ++i) {
    if (keys[i].type == Setting_Type::Text)
      values_[i].text = keys[i].def_text ? keys[i].def_text : "";
    else
      values_[i].num = keys[i].def_num;
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
  return static_cast<int32_t>(std::nearbyint(At(key).num));
}
double Settings::Real(std::string_view key) const { return At(key).num; }
const std::string& Settings::Text(std::string_view key) const { return At(key).text; }

void Settings::Set(std::string_view key, double value) {
  const auto& def = Setting_Keys()[static_cast<std::size_t>(Setting_Index(key))];
  Value& v = At(key);
  switch (def.type) {
    case Setting_Type::Int16:
      v.num = static_cast<int16_t>(std::nearbyint(value));
      break;
    case Setting_Type::Int32:
      v.num = static_cast<int32_t>(std::nearbyint(value));
      break;
    case Setting_Type::Real32:
      v.num = static_cast<float>(value);
      break;
    case Setting_Type::Text:
      v.text = std::to_string(value);
      break;
  }
}

void Settings::Set(std::string_view key, std::string value) { At(key).text = std::move(value); }

}  // namespace tevo::session
