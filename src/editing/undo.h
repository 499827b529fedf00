// The undo stack of the list edits of the main window. Each edit takes a
// full copy of the list as it was before the edit (not a difference); undo
// puts the newest copy back and drops it from the stack.
#pragma once

#include <cstdint>
#include <string>

namespace tevo {
struct Session;
}

namespace tevo::editing {

// Undo kinds pushed by the editing modes.
enum Undo_Kind : int16_t {
  Undo_Peak_Delete = 1,
  Undo_Peak_Add = 2,
  Undo_Peak_Search = 3,
  Undo_Peak_Delete_All = 4,
  Undo_Array_Ratio = 11,
  Undo_Base_Delete = 21,
  Undo_Base_Add = 22,
  Undo_Base_Auto = 23,
  Undo_Integ_Delete = 51,
  Undo_Integ_Split = 52,
  Undo_Integ_Move = 53,
  Undo_Integ_Widen = 54,
  Undo_Integ_Add = 55,
  Undo_Integ_Delete_All = 56,
  Undo_Integ_Adjust = 57,
  Undo_Integ_Reference = 58,
  Undo_Integ_Trim = 59,
  Undo_Inset_Delete = 61,
  Undo_Inset_Move = 62,
  Undo_Inset_Align = 63,
  Undo_Inset_Add = 64,
  Undo_Inset_Window = 65,
  Undo_Inset_Shift = 66,
  Undo_Inset_X_Mag = 67,
  Undo_Inset_Y_Mag = 68,
  Undo_Inset_Offset = 69,
  Undo_Inset_Resize = 71,
};

// Moves every record one place down (record 20 falls off); record 0 is then
// free to fill.
void Undo_Push(Session& s);

// The caption and state of the menu item m20 by the newest record's kind.
struct Undo_Menu {
  std::string caption;
  bool enabled = false;
};
Undo_Menu Undo_Caption(const Session& s);

// Push a record of `kind` holding the list as it stands: the peaks
// (List_A Point, List_B Freq_Hz, List_C and List_D the placement values,
// Sub_A the label height kept with them),
// the baseline points (List_A Base_Point, List_B Base_Re, List_C Base_Im) or
// the integrals (List_A B0, List_B B1, Sub_A End_Point, Sub_B Start_Point,
// Sub_C Curve_Y, Sub_D Value, Val[0] Integ_Scale, Val[1] Integ_Ref,
// Val[2] Integ_Ref_Index, Cur Integ_Cur).
void Undo_Take_Peaks(Session& s, int16_t kind);
void Undo_Take_Baseline(Session& s, int16_t kind);
void Undo_Take_Integrals(Session& s, int16_t kind);
// The insets: the whole list of records as it stands and Cur Inset_Cur, so
// that undoing an add removes the inset and undoing a delete puts it back
// at its old place with the ones behind it moved up.
void Undo_Take_Insets(Session& s, int16_t kind);

// The core of m20_Click: restores the newest record by its kind (peaks,
// baseline points with the subtraction re-run, integrals, insets), then
// drops it.
// False when there was nothing to undo or the kind is not one of these.
bool Undo_Step(Session& s);

// Undo becomes unreachable: the newest record's kind is set to none, on
// opening a file and on entering and leaving a mode.
void Undo_Clear(Session& s);

}  // namespace tevo::editing
