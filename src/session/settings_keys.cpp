// The keys of the settings file in their written order, with type, default
// and whether the reader takes them back.
#include "session/settings.h"

namespace tevo::session {

namespace {
using T = Setting_Type;
constexpr Setting_Def kKeys[] = {
    {"USER NAME", T::Text, 0, "", false},
    {"ACCESS COUNT", T::Int32, 0, nullptr, true},
    {"DISPLAY MIN", T::Int32, 131072, nullptr, true},
    {"DISP EXTEND MODE", T::Int16, 0, nullptr, true},
    {"ZEROFILLSIZE", T::Int32, 131072, nullptr, true},
    {"AUTO ZEROFILL", T::Int16, 0, nullptr, true},
    {"ALS SAVE OK", T::Int16, 1, nullptr, true},
};
}  // namespace

std::span<const Setting_Def> Setting_Keys() { return kKeys; }

}  // namespace tevo::session
