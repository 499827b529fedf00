// The caption line of a picture of the main plot: the main window's caption
// (its title bar) with the data set's comment behind it, for pictures that
// leave the window (render to a file), where no title bar names the data.
#pragma once

#include <string>

#include "platform/surface.h"

namespace tevo {
struct Session;
}

namespace tevo::display {

// "NMR 1D" padded to 20 characters, the open path in upper case, and the
// comment (COMNT) two blanks behind it when there is one.
std::string Caption_Line_Text(const Session& s);

// Draws the caption line in the Gothic face at 9 points into the top-right
// corner of the picture, plain text in copy mode.
void Draw_Caption_Line(const Session& s, platform::Surface& surf);

}  // namespace tevo::display
