#pragma once

/// Where the test stories stand, and the program that plays one.

#include <string>

namespace qv::testing {

inline const std::string Stories = QV_OUTPUT_DIR "/test-stories/";

/// A static build has the scenes of each story in a host program of its own.
inline std::string hostOf(const std::string& story) {
  const std::string host = QV_BIN_DIR "/qvrun";
  return QV_ONE_EXECUTABLE ? host + "-" + story : host;
}

}  // namespace qv::testing
