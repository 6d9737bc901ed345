#pragma once

/// Golden pictures: what a picture must look like, kept as a PNG that a person has looked at.

#include <filesystem>

#include <gtest/gtest.h>

#include "platform/display/png_file.h"

namespace qv::testing {

/// Compares colours with the golden picture of that path. On a mismatch it says how many pixels
/// differ and where the first one is, and writes what was drawn (NAME.actual.png) and where it
/// differs (NAME.diff.png) beside it. With QV_REWRITE_GOLDENS=1 in the environment the picture
/// becomes the golden one, and somebody has to look at it.
::testing::AssertionResult matchesGolden(const Picture& drawn, const std::filesystem::path& golden);

}  // namespace qv::testing
