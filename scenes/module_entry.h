#pragma once

/// The entry points that every module has, and what its generated table adds to them.

#include "scenario/scene_function.h"
#include "scenario/start/start.h"
#include "scenario/story_tables.h"

extern "C" {
qv::SceneFunction sc_start(qv::ScenarioHost* host);
qv::SceneFunction END();
qv::SceneFunction EXCEPTION_ENTRY();

/// Both are in the table that scenec writes.
extern const qv::StoryStart qvStoryStart;
extern const qv::GameModule qvGameModule;
}
