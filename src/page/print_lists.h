// Printed lists: the peak list and the integral list laid out on a sheet,
// page by page. Each routine paints one page and says whether more follow;
// the same routine serves the preview, the printer and a PDF file.
//
// Layout: the list font "LISTS FONT ..." (10 points when none is set); h the
// height of "X" in it; rows p = Scale x size x 1.07 apart; the columns start
// 2 h from the margin, 2 h apart, each as wide as the larger of its head and
// a template of digits, with the numbers aligned on their decimal point.
// With "PRNT LIST HEAD" a head block names the file and the comment.
#pragma once

#include "platform/surface.h"
#include "session/records.h"

namespace tevo {
struct Session;
namespace deconvolution {
struct Sim_Peaks;
}
}  // namespace tevo

namespace tevo::page {

// One page of a list on a surface: its number (from 0), the margin in
// pixels and the pixels per point of the surface.
struct List_Page {
  int page = 0;
  int margin = 0;
  double scale = 1;
};

// The list paper of the settings in cm, width across: "PAPER SIZE LIST"
// (A4 when none is set) or the size `code` when > 0, turned by "PAPER
// ORIENTLIST".
void List_Paper_Cm(const Session& s, int code, double& width, double& height);

// Page n of a list on a surface of `dpi` pixels per inch, 1.5 cm inside
// the edges of the paper.
List_Page List_Page_At(int n, double dpi);

// The list font of the settings, checked against the faces of the system.
Font_Rec List_Font(const Session& s);

// The list paper's turn, 0 portrait, 1 landscape.
int List_Orient(const Session& s);

// Stores the list paper's turn ("PAPER ORIENTLIST": 0 portrait "縦置き",
// 1 landscape "横置き") and the list font. The font keys are written only
// when the name, size, bold or italic differ from the font the settings
// give. True when anything changed.
bool Store_List_Setup(Session& s, int orient, const Font_Rec& font);

// The peak list, compact form: "\< No.", "\< ppm", "\< Hz" (or "\< kHz"
// when the axis counts kHz), "\< Height", "\< Amp." as the "PRNT LIST ..."
// switches choose. Returns true when more pages follow.
bool Print_Peak_List(Session& s, platform::Surface& surf, const List_Page& page);

// The peak list of the page inside its rectangle (pixels), in the font
// "PEAKLIST FONT" with the "PRNT PEAK ..." columns and head block; rows
// that do not fit are left out.
void Draw_Page_Peak_List(Session& s, platform::Surface& surf, int left, int top, int right,
                         int bottom, double scale);

// The integral list under "\< List of Integral Intensity": number, start and
// end in ppm and in Hz (kHz), the value, B0 and B1.
bool Print_Integral_List(Session& s, platform::Surface& surf, const List_Page& page);

// The peak list in the spectrometer's own layout: "COMNT", "EXREF" (ppm),
// "ABOBS" (MHz), "RESOL", "MXINT", "NGAIN" and "PEAK" above the columns
// "NO.", "PPM", "INT(%)", "FREQ(HZ)", "POSITION" in the axis unit (" PPM",
// " Hz", " KHz") and a bar of "+" as long as the intensity (22 at 100 %).
bool Print_Peak_List_Jeol(Session& s, platform::Surface& surf, const List_Page& page);

// The array list: per row its delay and the sum of Spec_Re over the
// selected region, divided by the largest magnitude (at least 0.1), under
// the region's start and end in ppm.
bool Print_Array_List(Session& s, platform::Surface& surf, const List_Page& page);

// The fitted lines of the line separation: position (ppm), width (Hz),
// height and integral in percent of the largest, Gaussian share.
bool Print_Sim_List(Session& s, const deconvolution::Sim_Peaks& peaks, platform::Surface& surf,
                    const List_Page& page);

// The T1/T2 intensity pairs: delay (X) and normalised intensity (Y), under
// the operator's name.
bool Print_T1_List(Session& s, platform::Surface& surf, const List_Page& page);

// What a list preview shows, and the start of its caption (the page text
// and ")" follow).
enum class List_Kind { Peaks, Integrals, Array, Sim, T1 };
const char* List_Caption(List_Kind kind);

// Page `page` of a list of the session; the peaks in the compact form
// (`form` 0) or the spectrometer's (1). The simulated lines are not the
// session's: they print through Print_Sim_List.
bool Print_List(Session& s, List_Kind kind, int16_t form, platform::Surface& surf, const List_Page& page);

}  // namespace tevo::page
