// Array data sets for relaxation: the labels of the varied delay, the rows
// ordered by delay, and one intensity per row taken out for the fit and for
// the printed array list.
#pragma once

#include <cstdint>
#include <vector>

#include "session/session.h"

namespace tevo::relaxation {

// Delay_Label and Delay_Axis_Label from Delay_Name: "t(name)" and
// "\i(t)\-((name)) / s"; sequences named "T2" or "T2COM" count the delay as
// name*2 + PW2.
void Set_Delay_Labels(Session& s);

// Sorts the rows by delay, `direction` 1 ascending, 2 descending: an exchange
// sort of Delay_List with Delay_Raw that never swaps equal delays, then each
// sorted place takes the first row not yet taken whose delay matches, so
// that equal delays keep distinct spectra. Spec_Re/Spec_Im hold the new
// order and Ft_Re/Ft_Im are copied from them.
void Sort_Array_Rows(Session& s, int16_t direction);

struct Intensity_Pair {
  float t = 0;  // delay, s
  float y = 0;  // intensity, normalised by the largest magnitude
};

// One intensity per row against its delay. `selection` 0 sums Spec_Re over
// region_first..region_last (both from 1 up, else 0 for every row); k >= 1
// takes the height at the point of peak k of the current row's list. The
// values are divided by the largest magnitude, counted from `least_largest`
// (0.1 at the first extraction, 1e-28 at a new selection), then sorted by
// delay with an exchange sort that also swaps equal delays when
// `swap_equal` is set. `largest` returns that divisor.
std::vector<Intensity_Pair> Extract_Intensities(const Session& s, int32_t selection, int32_t region_first,
                                                int32_t region_last, float least_largest, bool swap_equal,
                                                float* largest = nullptr);

// The row whose phase serves every row of a series: the longest delay (the
// recovered row of a T1 series), the shortest for a "T2" or "T2COM" series.
int32_t Phase_Row(const Session& s);

// The printed array list: each row's sum of Spec_Re over first..last,
// divided by the largest magnitude of these sums (at least 0.1).
std::vector<double> Array_List_Values(const Session& s, int32_t first, int32_t last);

}  // namespace tevo::relaxation
