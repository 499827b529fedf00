// The strokes a recording surface received: each a Move_To point followed
// by the ends of the Line_To calls after it.
#pragma once

#include <vector>

#include "platform/recording_surface.h"

namespace tevo::test {

inline std::vector<std::vector<platform::Point>> Strokes(const platform::RecordingSurface& surf) {
  std::vector<std::vector<platform::Point>> out;
  for (const platform::Recorded_Op& op : surf.Ops()) {
    if (op.kind == platform::Recorded_Op::Kind::Move_To) out.push_back({op.at});
    if (op.kind == platform::Recorded_Op::Kind::Line_To && !out.empty()) out.back().push_back(op.at);
  }
  return out;
}

}  // namespace tevo::test
