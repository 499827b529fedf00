#include "signal/sine_table.h"

#include <cmath>

namespace tevo::signal {

namespace {

std::vector<float> Build_Sine_Table() {
  // The step uses the same 15-digit pi as every other angle of the program,
  // so the table and the per-point sin/cos variants agree to float precision.
  const double step = 2.0 * 3.14159265358979 / Fft_Table_Size;
  std::vector<float> t(Fft_Sine_Entries);
  for (int32_t k = 0; k < Fft_Sine_Entries; ++k)
    t[k] = static_cast<float>(std::sin(k * step));
  return t;
}

}  // namespace

const std::vector<float>& Fft_Sine() {
  static const std::vector<float> table = Build_Sine_Table();
  return table;
}

}  // namespace tevo::signal
