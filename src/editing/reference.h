// Referencing: which point is which ppm.
//
// The axis follows two fixed relations between the reference point SMTMS,
// its shift SMEXR (ppm), the observe frequency and Spectrum_Frequency (the
// frequency of 0 ppm, MHz):
//   Spectrum_Frequency = ((SMTMS / N - 0.5) FREQU 1e-6 + Observe_Frequency)
//                        / (SMEXR 1e-6 + 1)
//   Spec_Axis[i] = (i - SMTMS) RESOL / Spectrum_Frequency + SMEXR
// The reference mode of the main window (mode 1) moves the scale by a click
// on the spectrum, a range dragged over a peak, or from the instrument table.
#pragma once

#include <cstdint>
#include <string>

namespace tevo {
struct Session;
}

namespace tevo::editing {

// Spec_Axis from SMTMS, SMEXR, RESOL and Spectrum_Frequency.
void Axis_From_Reference(Session& s);

// Sets display point p (index into Disp_X/Disp_Y) to `ppm`: SMTMS is the
// spectrum point under it, Ref_Origin the ppm that point needs so that the
// display point reads exactly `ppm`, Spectrum_Frequency follows from the
// relation above. The axis and display copy are rebuilt and the view keeps
// the same points in sight.
void Set_Reference_At(Session& s, int32_t p, float ppm);

// The range a .. b (Spec_* points, either order) dragged over a peak: the
// largest Disp_Y of the current row in it (first on a tie) takes the value
// of "Ref値" (Reference_Value). An empty range (a = b) does nothing.
void Set_Reference_On_Range(Session& s, int32_t a, int32_t b);

// A click on the spectrum at display point `index` (into Disp_X/Disp_Y):
// that point, as it is and not the nearest summit, takes the value of
// "Ref値" (Reference_Value). Out-of-range indices do nothing.
void Set_Reference_On_Click(Session& s, int32_t index);

// Where the reference of the moment the mode was entered stands on the
// axis as it is now, in ppm: the spot that then read Ref_Ppm, carried over
// to the moved scale. NaN when no reference mode has been entered.
double Entry_Reference_Ppm(const Session& s);

// A new 0 ppm frequency, e.g. from the instrument table: SMTMS stays, SMEXR
// is recomputed from the relation, the axis and display copy rebuilt.
void Reference_From_Frequency(Session& s, double zero_freq_mhz);

// ---- the reference mode of the main window ----

// The value shown in "Ref値", " ####0.0###".
std::string Ref_Text(float ppm);

// Enters the mode (after the interlock of other modes), remembering the
// reference and the view for a cancel; "Ref値" starts at SMEXR. False when
// the mode was not entered.
bool m21_Click(Session& s);

// A typed "Ref値"; false (the field restored) when it is not a number.
bool RefText1_Typed(Session& s, const std::string& text);

// "確定": "REF INITITAL" = SMEXR; the mode ends, the data count as changed
// if they were; the centre of the spectrum (Observe_Frequency and the ppm
// at N/2) is remembered for this Observe_Text in the 100-row table and in
// the pair of the nucleus ("HCENTRE" 1H, "CCENTRE" 13C, "XCENTRE" others)
// and the general pair; then the instrument table row is updated.
void RefCommand1_Click(Session& s);

// "ｷｬﾝｾﾙ": the reference and view as they were on entering; the mode ends.
void RefCommand2_Click(Session& s);

// "装置データで設定": the operator picks a row of the instrument table
// (pre-selected: the data's own) and its 0 ppm frequency is applied.
// 0 applied, 1 cancelled or declined.
int RefCommand3_Click(Session& s);

// After a transform with "REF FINE SET" on: the peak nearest 0 ppm is set
// to exactly 0 ppm. A peak is a local maximum of the real part reaching 5 %
// of the row's largest real value; only a peak within 1 ppm of 0 counts.
// True when the reference was moved.
bool Reference_Fine_Set(Session& s);

// The last step of a transform's commit, after the axis is built: runs
// Reference_Fine_Set when "REF FINE SET" is on.
void Reference_After_Transform(Session& s);

}  // namespace tevo::editing
