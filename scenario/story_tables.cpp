#include "scenario/story_tables.h"

namespace qv {

namespace {

const StoryTables* currentTables = nullptr;

}  // namespace

const StoryTables& storyTables() {
  static const StoryTables none;
  return currentTables ? *currentTables : none;
}

void setStoryTables(const StoryTables* tables) {
  currentTables = tables;
}

}  // namespace qv
