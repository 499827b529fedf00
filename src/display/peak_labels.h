// Peak values written upright beside the spectrum, spread sideways so that
// neighbouring labels don't overlap, each joined to its peak by a bent
// leader.
#pragma once

#include <span>
#include <vector>

#include "display/plot_geometry.h"
#include "platform/surface.h"

namespace tevo {
struct Session;
}

namespace tevo::display {

// Label positions for peaks at pixel columns x (peaks by ascending
// frequency, so x falls with the index) with labels `spacing` pixels wide,
// inside the frame x0..x1. A crowded label first pushes its right-hand
// neighbours (while there is slack to the right) and otherwise moves left;
// once labels reach x0 the pushes go right, once one passes x1 the labels
// simply stack `spacing` apart. Peaks outside the frame are pinned to its
// edges. `previous` holds the positions of the last pass (kept for a peak
// exactly on x0); it may be empty.
std::vector<double> Peak_Reduction_Pos(std::span<const int> x, double spacing, int x0, int x1,
                                       std::span<const double> previous = {});

// Draws the peak values and their leaders (below the axis or above the
// spectrum by "PEAK POSITION"); `axis_bottom` is the lowest y of the axis.
void Draw_Peak_Labels(Session& s, platform::Surface& surf, const Plot_Frame& f, int axis_bottom);

}  // namespace tevo::display
