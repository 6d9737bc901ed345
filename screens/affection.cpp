#include "screens/affection.h"

#include <algorithm>
#include <cstring>

#include "scenario/commands.h"
#include "scenario/register_numbers.h"
#include "scenario/story_tables.h"
#include "screens/commands.h"

namespace qv {

namespace {

constexpr int32_t Highest = 1000, FirstTooLow = -999, Lowest = -1000;

// The gem's bands are twenty wide but the last, which is half of that on purpose: so the strongest
// colour is within reach.
constexpr int32_t BandWidth = 20, LastBandFrom = 190, LastBand = 10;
constexpr int32_t NeutralGemX = 320, CellWidth = 32;

int32_t standingOf(const char* name) {
  const std::optional<int32_t> number = standingRegisterOf(name);
  return number ? Reg(*number) : 0;
}

}  // namespace

int32_t movedStanding(int32_t value, int32_t amount) {
  const int64_t moved = int64_t{value} + amount;
  if (moved >= Highest) return Highest;
  return moved < FirstTooLow ? Lowest : static_cast<int32_t>(moved);
}

std::optional<int32_t> standingRegisterOf(const char* name) {
  const auto& names = storyTables().parameterNames;
  const auto found = std::ranges::find_if(
      names, [&](const char* known) { return known && name && std::strcmp(known, name) == 0; });
  if (found == names.end()) return std::nullopt;
  return AffectionFirstRegister + static_cast<int32_t>(found - names.begin());
}

int32_t gemCellX(Leader leader, int64_t difference) {
  const int32_t within = static_cast<int32_t>(std::clamp<int64_t>(difference, 0, LastBandFrom));
  const int32_t band =
      within == LastBandFrom ? LastBand : std::min(within / BandWidth, LastBand - 1);
  return NeutralGemX + (leader == Leader::Second ? -band : band) * CellWidth;
}

void ChangeParameter(const char* name, int32_t amount) {
  const std::optional<int32_t> number = standingRegisterOf(name);
  if (number) Reg(*number) = movedStanding(Reg(*number), amount);
  UpdatePendant();
}

const char* CompareAffection(const char* first, const char* second) {
  // The names that are given, in order; a missing one stands for nobody with nothing.
  if (!first) {
    first = second;
    second = nullptr;
  }
  const int32_t left = first ? standingOf(first) : 0, right = second ? standingOf(second) : 0;
  return left < right ? second : first;
}

int32_t AffectionAbove(const char* name, int32_t limit) {
  return standingOf(name) > limit ? 1 : 0;
}

}  // namespace qv
