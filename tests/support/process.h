#pragma once

/// Runs a program of the build as a person would, and keeps what it said.

#include <filesystem>
#include <string>
#include <vector>

namespace qv::testing {

struct ProcessResult {
  int status = -1;     ///< exit status; 128 + signal where one ended it
  std::string output;  ///< standard output
  std::string errors;  ///< standard error
  double seconds = 0;
};

/// Waits for the program at most `limitSeconds`; then it is killed and the status is 128 + 9.
/// `environment` holds "NAME=VALUE" entries over those of this process; "NAME=" alone removes.
ProcessResult runProcess(const std::vector<std::string>& command,
                         const std::vector<std::string>& environment = {}, int limitSeconds = 60);

std::string readWhole(const std::filesystem::path& file);
void writeWhole(const std::filesystem::path& file, const std::string& bytes);

}  // namespace qv::testing
