#pragma once

/// What ends a command with a sentence for its user: bad files and bad wishes, never our mistakes.

#include <stdexcept>
#include <string>

namespace qv::tool {

class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Ends a command with this status; its sentence has been said.
struct ToldFailure {
  int status;
};

}  // namespace qv::tool
