// Spectra derived from the main spectrum and the overlay slots: the
// difference spectrum (main minus a slot, shifted and scaled) and the DEPT
// sub-spectra of CH, CH2 and CH3.
#pragma once

#include <cstdint>
#include <span>

namespace tevo {
struct Session;
struct Overlay_Slot;
}

namespace tevo::overlay {

// The slot's value at `ppm`, interpolated linearly between its two
// neighbouring points (its axis may run either way); false outside the
// slot's axis or for a slot of fewer than two points.
bool Slot_Value_At(const Overlay_Slot& o, double ppm, double& value);

// Spec_Re of the current row = Ft_Re − Diff_Mag × (slot `slot` read at the
// point's ppm − Diff_Shift), where the slot reaches; Ft_Re elsewhere. Slot 0
// or a slot of fewer than two points gives the plain spectrum. The display
// row is built again.
void Calc_Difference_Spec(Session& s, int slot);

// The DEPT sub-spectra from the main spectrum M (the DEPT-45 experiment) and
// slots 1, 2, 3 (S1, S2 = DEPT-90, S3 = DEPT-135), into the second trace
// (Slot_Y_Im) of slots 1 (CH), 2 (CH3) and 3 (CH2):
//   CH2 = (DEPT_CH2_45·M − S3) / 2
//   CH3 = (DEPT_CH3_135·S3 + M − DEPT_CH3_90·S2) / 2
//   CH  = DEPT_CH_MUL·(DEPT_CH_135·S3 + M) + S1
// on the main axis; a slot on another axis is read there by interpolation
// (0 beyond its ends). Does nothing unless all three slots hold points.
void Calc_DEPT_Spec(Session& s);

// True when slot k holds points; the difference needs one such slot, the
// DEPT sums slots 1, 2 and 3.
bool Slot_Filled(const Session& s, int k);
bool DEPT_Slots_Filled(const Session& s);

// The difference spectrum the session asks for: slot Diff_Slot taken away
// when Diff_On, the plain spectrum otherwise.
void Show_Difference(Session& s);
// One step of the difference controls: `shift` ppm added to Diff_Shift,
// Diff_Mag multiplied by `factor`; the spectrum is computed again.
void Step_Difference(Session& s, double shift, double factor);

// A DEPT coefficient moved by `steps` × 0.01, kept within −9.9 .. 9.9 and
// rounded to the 0.001 the controls show, so that repeated steps do not
// drift.
float Step_DEPT_Coefficient(float value, int steps);

// Turns the DEPT display on (computing the sub-spectra) or off, and keeps
// the flag under "DEPT MODE". Turning it on needs points in slots 1, 2 and 3
// and returns false without them.
bool Set_DEPT_Mode(Session& s, bool on);

// The DEPT flag and the nine coefficients copied to their settings keys
// ("DEPT MODE", "DEPT CH2 45", ...): the settings file and the native file's
// page block are written from there. The settings file never reads the
// coefficients back; a native file does, through Take_DEPT_Settings, which
// also computes the sub-spectra again when the file was saved showing them.
void Store_DEPT_Settings(Session& s);
void Take_DEPT_Settings(Session& s);

// What the plot draws for overlay slot k (1 .. 9): its own points on its own
// scale, or, in the DEPT display, for slots 1, 2 and 3 the sub-spectrum
// (Slot_Y_Im) on the main axis and on the main spectrum's scale, since the
// DEPT sums are in the main spectrum's units. `full` ≤ 0: nothing to draw.
struct Slot_Trace {
  std::span<const float> x, y;
  int32_t points = 0;
  double full = 0;
};
Slot_Trace Drawn_Slot(const Session& s, int k);

}  // namespace tevo::overlay
