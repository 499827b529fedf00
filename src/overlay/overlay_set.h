// The overlay set: up to nine spectra held in slots 1 .. 9 beside the main
// one (slot 0), each drawn over it with its own offset, magnification and
// colour. These are the commands of the overlay window ("Multi Spectrum"):
// loading a file into a slot, delete with its one-step undo, copy and
// exchange, and the checks of the row fields. Slots are given by index
// (0 = the main spectrum); the window shows index + 1.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "display/view_commands.h"
#include "overlay/slot_read.h"

namespace tevo {
struct Session;
}

namespace tevo::overlay {

// Rows of the overlay window: the main spectrum and nine slots.
inline constexpr int Overlay_Rows = 10;

// The row texts of a slot: the number, and what is written in the row.
std::string Slot_Number_Text(int slot);  // "1　  (基本)" for slot 0, else "2" .. "10"
bool Slot_In_Use(const Session& s, int slot);

// ---- load ("読込" of a row) ----

// Loads a file into slot `slot` (1 .. 9): a slot in use asks first
// ("スペクトルの上書き", only Yes goes on); NMR1D_Form12 ("重ね書き指定")
// asks for the alignment; then the open dialog of the main window (skipped
// when `path` is given) and the slot read. Slot 0 is refused with a message.
// Returns 0 loaded, 1 cancelled or refused, -1 reader failure,
// Slot_Off_Frequency for a "CENT" file more than 1 % off.
int Load_Slot(Session& s, int slot, const std::string& path = {});

// ---- delete, undo ----

// Asks "<number>: <comment>を削除します" ("スペクトルの削除"); on Yes the
// slot's record moves into the undo record and the slot is empty again,
// keeping its offset. Returns true when deleted.
bool Delete_Slot(Session& s, int slot);
// "取り消し": the last delete is put back, or the last exchange swapped back.
// False when there is nothing to undo.
bool Undo_Slot_Change(Session& s);

// ---- copy (NMR1D_Form18) and exchange (NMR1D_Form19) ----

// Copies slot `source` (0: the main spectrum's current row with its
// parameters and lists) into slot `target` (1 .. 9), which keeps its offset.
// Asks before overwriting ("上書き確認"); an empty source is refused
// ("コピー確認"). Returns true when copied.
bool Copy_Slot(Session& s, int source, int target);
// Exchanges the spectra of slots a and b (1 .. 9; one may be empty): the
// data trade places, the offsets stay with the rows. Both empty is refused
// ("データ確認"). The exchange is the undo record. Returns true when done.
bool Exchange_Slots(Session& s, int a, int b);

// ---- row fields and buttons ----

// Text1: the vertical magnification (> 0); row 0 is Y_Mag. The full scale
// follows: Slot_Y_Full = Slot_Max_Abs / Slot_Y_Mag. The text is what the
// field shows afterwards.
display::Typed_Result Type_Slot_Mag(Session& s, int slot, const std::string& text);
// Text2: the vertical offset, -1 < value < 1; row 0 is Y_Offset.
display::Typed_Result Type_Slot_Offset(Session& s, int slot, const std::string& text);
// Text5: the slant Overlay_Shift, clamped into -1 .. 1.
display::Typed_Result Type_Overlay_Shift(Session& s, const std::string& text);
double Slot_Mag(const Session& s, int slot);
double Slot_Offset(const Session& s, int slot);

// One step of the hold-to-repeat buttons; false at the limit (nothing
// changed). YMag_Up/YMag_Down multiply or divide by 1.1 within 1e-4 .. 1e4,
// YLevel_Up/YLevel_Down move the offset by 0.01 inside -1 .. 1,
// MultiX_Left/MultiX_Right move Overlay_Shift by 0.01 within -1 .. 1.
bool Slot_Mag_Step(Session& s, int slot, bool up);
bool Slot_Offset_Step(Session& s, int slot, bool up);
bool Overlay_Shift_Step(Session& s, bool right);

// Check1, Check4 and the integral column: refused (false) on an empty slot.
bool Set_Slot_Show(Session& s, int slot, bool on);
bool Set_Slot_Show_Peaks(Session& s, int slot, bool on);
bool Set_Slot_Show_Integrals(Session& s, int slot, bool on);

// The colour of slot 1 .. 9 from "COLOR-1" .. "COLOR-9" (0xBBGGRR); the
// colour label's dialog stores a new one there.
int32_t Slot_Colour(const Session& s, int slot);
void Set_Slot_Colour(Session& s, int slot, int32_t colour);

// The full scale a slot is drawn with: its own, or the main spectrum's when
// Overlay_Compare is on, so that intensities compare.
double Slot_Draw_Full(const Session& s, int slot);
// The ppm limits a slot is drawn between: the view moved by the part
// Overlay_Shift × offset of its width, so that higher slots slant.
void Slot_Draw_Limits(const Session& s, int slot, double& left, double& right);

// Stack order on paper: the slots in use by ascending offset (the main
// spectrum, slot 0, among them); with `no_cross` each entry's upper clip is
// the next higher slot's offset less 0.01 (1 when none is above).
struct Stack_Entry {
  int slot = 0;
  double clip = 1;  // fraction of the height, from the base
};
std::vector<Stack_Entry> Stack_Order(const Session& s, bool no_cross);

}  // namespace tevo::overlay
