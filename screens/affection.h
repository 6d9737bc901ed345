#pragma once

/// How the heroines stand: the arithmetic of their registers, apart from what shows it. The
/// commands are in screens/commands.h. Scenario thread.

#include <cstdint>
#include <optional>

namespace qv {

/// What a standing is after it has moved: at the ends of its range it stays.
int32_t movedStanding(int32_t value, int32_t amount);

/// The register of a name's standing; nothing for a name that the story does not keep.
std::optional<int32_t> standingRegisterOf(const char* name);

/// Who leads, for the pendant's gem.
enum class Leader { Neither, First, Second };
/// The gem's cell by who leads and by how much; registers may lie further apart than one could
/// hold.
int32_t gemCellX(Leader leader, int64_t difference);

}  // namespace qv
