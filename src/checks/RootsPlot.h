#pragma once

#include <vector>

#include "checks/Stability.h"
#include "platform/Surface.h"

namespace lorvane {

// Draws the roots of the companion matrix as dots in the complex plane on a cleared surface of
// logical size 1 by 1, with the unit circle, the axes through 0 and the title below. The plane
// reaches a little beyond the unit circle or the largest root, whichever is further out.
void DrawRootsPlot(Surface& surface, const std::vector<CompanionRoot>& roots);

} // namespace lorvane
