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
}

namespace tevo::page {

// One page of a list on a surface: its number (from 0), the margin in
// pixels and the pixels per point of the surface.
struct List_Page {
  int page = 0;
  int margin = 0;
  double scale = 1;
};

// The list font of the settings, checked against the faces of the system.
Font_Rec List_Font(const Session& s);

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

}  // namespace tevo::page
