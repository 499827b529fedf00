// Numbers printed through picture patterns such as "####0.0###", "0.000E+"
// or "###0.0# Hz", the way every field, label and list of the program shows
// them.
#pragma once

#include <string>
#include <string_view>

namespace tevo {

// Formats `value` by a picture pattern.
//   '0' before the point: a digit that is always printed; '#': printed only
//   when needed (so "#.00" prints 0.5 as ".50").
//   '0' after the point: a decimal that is always printed; '#': printed when
//   not a trailing zero. The point itself is always printed, so "0.##"
//   prints 5 as "5.".
//   "E+" / "E-" (or "e+" / "e-"): scientific form; the '0's behind it give
//   the least number of exponent digits (none: as many as needed); "E+"
//   always shows the sign of the exponent, "E-" only a minus.
//   Text before the first and after the last placeholder is copied.
// The value is rounded to the decimals the pattern allows; a negative value
// that rounds to zero prints without its sign.
std::string Format_Number(double value, std::string_view pattern);

}  // namespace tevo
