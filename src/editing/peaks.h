// Peak picking of the main window (mode 4): the hysteresis search over the
// display copy, the offer rule every add goes through, and the mouse tools.
// Each toolbar action is one function here and pushes its undo record.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace tevo {
struct Session;
}

namespace tevo::editing {

// Walks Disp_Y of the current row from `first` to `last` and adds every peak
// it finds (through Offer_Peak), stopping at Peak_Max entries. With
// T = Peak_Level * Max_Abs and N = |Noise_Level * Max_Abs - Base_Level *
// Max_Abs|, a peak is a point that rose more than N above the running low
// and is followed by a fall of more than N, with its height above T. So the
// last rising edge of a range is not reported, and negative peaks never are.
// No undo record; see the toolbar actions below.
void Peak_Search(Session& s, int32_t first, int32_t last);

// Adds display point `at` to the list unless an entry lies within 0.01 Hz of
// it: Freq_Hz = (Disp_X[at] - Spec_Axis[0]) * Spectrum_Frequency and Point =
// round((Disp_X[at] - Spec_Axis[0]) / (Spec_Axis[N-1] - Spec_Axis[0]) * N),
// N = Spec_Points (so the top of the range gives N), kept in ascending
// frequency. True when added.
bool Offer_Peak(Session& s, int32_t at);

// Toolbar 2: searches the shown range X_Left .. X_Right, only when the index
// of X_Right is the smaller one. Toolbar 3: the whole display copy. Both push
// undo kind 3 first. They return the number of peaks added.
int32_t Peak_Search_Shown(Session& s);
int32_t Peak_Search_All(Session& s);

// The display index of the peak nearest to display index c within c - 40 ..
// c + 40: the nearest positive peak of the walk, or the nearest negative
// peak of the same walk on -y when that is nearer (a tie goes to the
// positive one). -1 when none is found.
int32_t Nearest_Peak(Session& s, int32_t c);

// Tool 1 (add nearest) and tool 2 (add at the cursor) on mouse up at display
// index c; undo kind 2 when a peak is added. Nothing with the list full.
bool Peak_Add_Nearest(Session& s, int32_t c);
bool Peak_Add_At(Session& s, int32_t c);

// Delete tool on mouse up at pixel click_x: the first peak whose pixel
// (by `pixel_of_ppm`, the plot's mapping) lies within 2 of it; undo kind 1.
bool Peak_Delete_At(Session& s, double click_x, const std::function<double(double)>& pixel_of_ppm);

// "全削除": empties the list, undo kind 4. False when it was empty.
bool PeakCommand3_Click(Session& s);

// True when the list holds Peak_Max entries (the add tools are disabled).
bool Peak_List_Full(const Session& s);

// Position of peak i in ppm.
double Peak_Ppm(const Session& s, int32_t i);

// One line of the peak list: number (counting down under "PEAK LIST
// DIRECT"), position in ppm and in Hz (kHz when `khz`), the height of the
// display copy at the peak and that height in percent of the largest (from
// a floor of 0.001). In list order, reversed under "PEAK LIST DIRECT".
struct Peak_Row {
  int32_t number = 0;
  double ppm = 0, freq = 0, height = 0, strength = 0;
};
std::vector<Peak_Row> Peak_List_Rows(Session& s, bool khz);

// m24_Click: enters the peak mode after the mode interlock. Leaving it
// (PeakCommand1_Click, "閉じる") keeps the list, marks the data changed if
// anything changed and clears undo.
bool m24_Click(Session& s);
void PeakCommand1_Click(Session& s);

}  // namespace tevo::editing
