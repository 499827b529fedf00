// Array data sets for relaxation: the labels of the varied delay, the rows
// ordered by delay, and one intensity per row taken out for the fit and for
// the printed array list.
#pragma once

#include <cstdint>
#include <string>
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

// ---- how an array is read and committed ----

// NMR1D_Form20 ("Multi(Array) データ"): DEPT rows, an array ordered by the
// parameter (ascending or descending), an array in read order (the answer
// offered first), or rows as overlays (ten at most). Returns "OK" with the
// choice in Array_Read_Dept, Array_Read_Array and Array_Sort (and
// remembered in the settings "ARRAY MODE" and "ARRAY SORT"), or "CANCEL".
std::string NMR1D_Form20(Session& s);

// The array step of the commit, on a freshly transformed set of Array_Rows
// >= 2 rows. DEPT rows, or rows not kept as an array, go to overlay slots
// 1 .. 9 (rows beyond the tenth are dropped; occupied slots are replaced
// only after "重ね書きデータに上書きしますか。"): each slot gets the row's
// spectrum and axis, its largest magnitude, the vertical zoom 0.95 / rows,
// the offset row / rows and the label "t= " + delay ("CH", "CH2", "CH3" for
// DEPT); Array_Rows becomes 1. A kept array is sorted by delay when
// Array_Sort asks for it. Returns the vertical zoom of the main spectrum.
float Commit_Array_Rows(Session& s);

// ---- a series read from individual files ----

// Several files as one text, the form of the recent-file list and of a drop:
// the folder of the first file, then each file's name, joined with "|". A
// file of another folder keeps its whole path.
std::string Join_Individual_Paths(const std::vector<std::string>& paths);
// The files of such a text, each with its folder; a text without "|" is
// the one file it names.
std::vector<std::string> Split_Individual_Paths(const std::string& joined);

// The delay a data set of one row stores for itself, in s: the first of
// its value list, else the start of a linear list.
float Stored_Delay(const Session& s);

// Makes the session's one row and the one row of each of `others`, in that
// order, one array data set of individual delays ("INDIV", Delay_Linear 0):
// every point array gets the rows, Delay_List and Delay_Raw each file's
// stored delay, the delay labels follow the first file's delay name.
// Returns false, changing nothing, when a set has several rows, other
// points, or is a FID where the first is a spectrum or the other way round.
bool Join_Individual_Rows(Session& s, const std::vector<Session>& others);

// NMR1D_Form21 ("T1/T2個別データ", "位相補正を行うデータは？"): which row of
// an individual-delay series is phased for all: "START" the first row
// ("一番始めのデータ(T2)"), "END" the last ("一番最後のデータ(T1)"). The
// row becomes Array_Row. "CANCEL" leaves it.
std::string NMR1D_Form21(Session& s);

// NMR1D_Form32 ("Array(T1/T2)データ表示の配置") on "OK": Array_Span_X, the
// sideways shift of the stack from first to last row as a part of the frame
// width (the stack's "X AXIS RATIO"), takes `x_text` if -1 < x < 1 (negative
// leans the stack left); Array_Span_Y, the lift as a part of the height
// ("Y AXIS RATIO"), takes `y_text` if 0 <= y < 1. A value outside or not a
// number leaves the old one without a word. The zoom is reset to the whole
// spectrum.
void NMR1D_Form32_OK(Session& s, const std::string& x_text, const std::string& y_text);

}  // namespace tevo::relaxation
