#pragma once

/// Calls of all the numbered effects with arguments that bring the whole source onto the view.

#include <vector>

#include "graphics/transition/transition_engine.h"

namespace qv::testing {

struct EffectCase {
  EffectCall call;
  bool masks = false;
};

/// All that there are for a key; of effect 9, which has none, only with KeyNone. The numbers that
/// are a cut stand in it with 1, 64 and 127.
inline std::vector<EffectCase> everyEffect(ColourKey key) {
  std::vector<EffectCase> cases;
  const auto add = [&](int32_t first, int32_t last, int32_t a, int32_t b, bool masks) {
    for (int32_t effect = first; effect <= last; ++effect)
      cases.push_back({{effect, key, a, b}, masks});
  };
  add(1, 5, 0, 0, false);
  if (key == KeyNone) cases.push_back({{9, 8, 0, 0}, false});
  add(10, 23, 0, 0, false);
  add(26, 52, 0, 0, false);
  add(60, 63, 5, 0, false);
  add(64, 64, 0, 0, false);
  add(65, 80, 4, 10, true);
  add(127, 127, 0, 0, false);
  return cases;
}

}  // namespace qv::testing
