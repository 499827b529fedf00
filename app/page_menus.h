// The page editor's two menus: "設定" opens the windows of the frame
// (NMR1D_Form84), the peak list (NMR1D_Form82), the parameter block
// (NMR1D_Form88) and the parameter list (NMR1D_Form15), and puts the
// parameter block and the peak list back in their standard places; "画像"
// opens the size panel of a part of the sheet for the clipboard and BMP, or
// for PNG.
#pragma once

#include <functional>

#include "page/bitmap_export.h"
#include "session/session.h"

class QBoxLayout;
class QWidget;

namespace tevo::app {

// Adds the two menu buttons to `row` of `form`. `repaint` shows the sheet
// anew after a change; `range` gives the part of the sheet to copy (the
// whole sheet when not given), as a preview at `preview_dpi` shows it.
void Add_Page_Menus(Session& s, QWidget* form, QBoxLayout* row, std::function<void()> repaint, double preview_dpi,
                    std::function<page::Copy_Range()> range = {});

}  // namespace tevo::app
