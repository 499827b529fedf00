// Spectra derived from the main spectrum and the overlay slots: the
// difference spectrum (main minus a slot, shifted and scaled) and the DEPT
// sub-spectra of CH, CH2 and CH3.
#pragma once

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

}  // namespace tevo::overlay
