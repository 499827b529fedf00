// Manual phase and the main window's phase mode, without widgets.
//
// The processing dialog and the main window share the controls: steps from
// the label arrays, typed values, scroll bars in tenths of a degree, the two
// markers and the automatic buttons. The dialog holds one pair (Phase0,
// Phase1) and rotates the current row by table; the main window keeps a
// pair per row (Phase0_Row, Phase1_Row), applies by table to the current row
// or, with Phase_Together, to all rows, and commits or discards on leaving.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "signal/phase_auto.h"

namespace tevo {
struct Session;
}

namespace tevo::signal {

// Degrees added by the step labels, by the label's Index.
inline constexpr std::array<float, 14> Phase_Steps = {-10.0f, -5.0f, -2.0f, -1.0f, -0.5f, -0.2f, -0.1f,
                                                      0.1f,   0.2f,  0.5f,  1.0f,  2.0f,  5.0f,  10.0f};

// Order 0 is the zero-order phase, 1 the first-order phase.
float Phase_Limit(int order);

// The phase value shown in the fields, "####0.0#".
std::string Phase_Text(float degrees);
// The scroll bar position of a phase: tenths of a degree, rounded (16-bit).
int16_t Phase_Scroll_Value(float degrees);

// The value a place holds for an order: Phase0/Phase1 in the dialog, the
// current row's entry in the main window (the per-row vectors are sized to
// the rows on demand).
float& Phase_Value(Session& s, Phase_Place place, int order);

// Applies the place's current pair: the dialog previews the current row,
// the main window applies by table to the current row or all rows.
void Phase_Apply_Current(Session& s, Phase_Place place);

// Adds Phase_Steps[index] to the value, clamps it to its range and applies.
void Phase_Step(Session& s, Phase_Place place, int order, int index);

// A typed value, accepted only strictly inside (-360, 360) or (-1800,
// 1800); false when refused (the field then shows the old value again).
bool Phase_Typed(Session& s, Phase_Place place, int order, const std::string& text);

// A scroll bar position (tenths of a degree) becomes the value and is applied.
void Phase_Scroll(Session& s, Phase_Place place, int order, int value);

// Marker placed by a click: which 0 is "pp", 1 is "p2"; clamped to 0 .. N-1.
void Phase_Set_Marker(Session& s, int which, int32_t point);

// ---- main window phase mode ----

// "位相補正(Phase) (&P)": enters phase mode. After a baseline correction the
// operator is asked whether to go on; another open mode is closed through
// the common interlock. Every row starts from Phase0/Phase1, the markers are
// clamped into the spectrum. Returns false when nothing was entered.
bool m22_Click(Session& s);

// The full ("全自動", mode 0) or semi ("半自動", mode 1) automatic method on
// the current row, applied to the rows as the main window does.
void Phase_Auto_Main(Session& s, int mode);

// Tool button 6: the current row returns to Phase0/Phase1 and is applied.
void Phase_Reset_Row(Session& s);

// "確定": the rotated spectrum becomes the transformed one (Ft_* = Spec_*, all
// rows), Phase0 = Phase1 = 0, the mode ends and the zoom history is cleared.
void PhaseCommand1_Click(Session& s);

// "ｷｬﾝｾﾙ": Spec_* = Ft_* for all rows, display rebuilt, the mode ends.
void PhaseCommand2_Click(Session& s);

// "Powerスペクトル表示": toggles the magnitude display and rebuilds every
// display row; the complex data stay as they are.
void m34_Click(Session& s);

}  // namespace tevo::signal
