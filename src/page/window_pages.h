// The pages of the line separation and of the T1/T2 window: the page of the
// main window with the window's own plot in the spectrum frame, drawn in the
// window's print styles, and the window's results in the parameter block.
#pragma once

#include <string>

#include "deconvolution/line_edit.h"
#include "page/draw_page.h"
#include "relaxation/relaxation_fit.h"

namespace tevo {
struct Session;
}

namespace tevo::page {

// The paper of the page as the windows' print item names it: "A3 ", "A5 ",
// "B4 ", "B5 ", "A4(Half Column) ", "A4(Full Column) ", or "A4 " for any
// other code, followed by "縦置" or "横置" ("PAPER SIZE", "PAPER ORIENT").
std::string Window_Paper_Caption(const Session& s);

// The line separation's page: the plot of its window in the "SIM ..." print
// styles (residual band, frames, line numbers, the spectrum's range at the
// left by the switches), the fitted lines' parameters in the block, the
// comment by "SIM PRNT COMNT". `y_mag` as in the window. The session and
// the state must outlive the content.
Page_Content Line_Page(const Session& s, const deconvolution::Sim_State& st, float y_mag);

// The T1/T2 window's page: its plot "CAL X LENGTH" x "CAL Y LENGTH" cm in
// the "CAL ..." print styles, the text of the fit and its criterion in the
// block in the font "CAL FONT COM". The fit must outlive the content.
Page_Content Relax_Page(const Session& s, const relaxation::Relax_Fit& fit, const relaxation::Relax_Limits& limits);

}  // namespace tevo::page
