// Editing one overlay slot like the main spectrum. The editor works on a
// session of its own built from the slot (its working record), so that the
// phase, reference, baseline, peak and integral routines and the paint run
// on it unchanged; closing the editor writes the working session back into
// the slot.
#pragma once

#include <string>

#include "display/view_commands.h"
#include "overlay/slot_read.h"

namespace tevo {
struct Session;
struct Overlay_Slot;
}

namespace tevo::overlay {

// The slot a row of the editor's menu opens: menu index n (1 .. 9) gives
// slot 10 - n, so "スペクトル(10)" (n = 1) is slot 9 and "スペクトル(2)" slot 1.
int Edit_Menu_Slot(int n);
// A slot opens in the editor when it holds at least two points.
bool Slot_Editable(const Session& s, int slot);
// The editor's title: "重書き(" number ") データ編集: " and the name of
// the slot's file.
std::string Slot_Edit_Title(int slot, const std::string& file);

// The working session of slot `slot` of `main`: the slot's points, axis,
// parameters, lists, level lines and integral reference, with the
// operator's settings and tables of `main`. Values never set in the slot
// take defaults (noise level 0.005, detection level 0.01, integral
// reference and scale 1.0, peak and integral digits 4), the Hz per point
// is derived from the axis when the slot carries none, the view opens at
// the main plot's window and axis unit, and the spectrum is drawn in the
// slot's colour. It has no overlays and no insets of its own.
Session Session_From_Slot(const Session& main, int slot);

// Closing the editor: the working session becomes the slot's data (points,
// axis, scale, parameters, lists, levels); the slot keeps its row fields
// (offset, magnification, colour, show flags, file, comment) as `row`
// holds them. Changed data leave the main data set unsaved.
void Slot_Back_From_Session(Session& main, int slot, const Session& working, const Overlay_Slot& row);

// The editor's "読込" (m11): asks "データを置き換えますか？", titled
// "データの置き換え"; on Yes the open dialog (skipped when `path` is given) and a
// "CHEM" read of the file. The working session is then the new data and
// `row` takes its file name and comment. Returns the read status, 1 when
// cancelled.
int Replace_Edit_Slot(Session& main, int slot, Session& working, Overlay_Slot& row, const std::string& path = {});

// SMulti_Form33 ("表示/表示範囲の変更　印刷には反映されません"): what the
// editor shows, held in the working session's own settings so that it
// reaches neither the main window nor the print.
struct Slot_Display {
  bool integrals = true, integ_base = true, peak_values = true, peak_tops = false, peak_numbers = false;
  bool peaks_above = true;  // "ピーク値の表示位置": "上" or "下"
  int peak_digits = 4, integ_digits = 4;  // digits after the point
  int peak_unit = 0;  // peak positions in 0 "δppm", 1 Hz, 2 kHz
  display::Range_Values range;  // "表示範囲(印刷には反映されません)", in the axis unit
};
Slot_Display Slot_Display_Values(const Session& working);
// OK: the values into the working session; the range as the range dialog
// takes it. Digits are kept within 0 .. 9.
void Slot_Display_OK(Session& working, const Slot_Display& d);

}  // namespace tevo::overlay
