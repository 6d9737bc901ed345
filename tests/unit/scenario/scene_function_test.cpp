#include "scenario/scene_function.h"

#include <iterator>

#include <gtest/gtest.h>

namespace qv {
namespace {

SceneFunction first() {
  return {};
}
SceneFunction second() {
  return {};
}
SceneFunction third() {
  return {};
}

GameModule moduleOf(const SceneEntry* scenes, size_t count) {
  GameModule module{};
  module.scenes = scenes;
  module.sceneCount = count;
  return module;
}

TEST(FindScene, FindsExactNamesOnly) {
  // By byte order capitals come before the underscore, which comes before small letters.
  constexpr SceneEntry Scenes[] = {{"sc000000", first}, {"sc000000_1", second}, {"sc_menu", third}};
  const GameModule module = moduleOf(Scenes, std::size(Scenes));
  EXPECT_EQ(findScene(module, "sc000000"), SceneFunction(first));
  EXPECT_EQ(findScene(module, "sc000000_1"), SceneFunction(second));
  EXPECT_EQ(findScene(module, "sc_menu"), SceneFunction(third));
  for (const char* name : {"", "sc", "sc00000", "sc000000_", "SC_MENU", "sc_menu3", "zz", "\xff"})
    EXPECT_FALSE(findScene(module, name)) << name;
  EXPECT_FALSE(findScene(module, nullptr));
}

TEST(FindScene, RefusesTheEntryPointsEvenInTheTable) {
  constexpr SceneEntry Scenes[] = {
      {"END", first}, {"EXCEPTION_ENTRY", second}, {"sc_start", third}};
  const GameModule module = moduleOf(Scenes, std::size(Scenes));
  for (const SceneEntry& entry : Scenes)
    EXPECT_FALSE(findScene(module, entry.name)) << entry.name;
}

TEST(FindScene, InAnEmptyTableFindsNothing) {
  EXPECT_FALSE(findScene(moduleOf(nullptr, 0), "sc_menu"));
}

}  // namespace
}  // namespace qv
