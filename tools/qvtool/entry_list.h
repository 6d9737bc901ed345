#pragma once

/// Sets of palette entries as a person reads them.

#include <array>
#include <cstdint>
#include <string>

namespace qv::tool {

/// The entries that a use table gives to the picture: "0-9, 42, 246-255", or "none".
std::string entryList(const std::array<uint32_t, 256>& use, size_t count = 256);

}  // namespace qv::tool
