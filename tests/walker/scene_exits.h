#pragma once

// Where a scene's text leads on, and by which of these ways a scene has just gone: its text is read
// once more with the registers as they stand, apart from the C++ that was made of it. Scenario
// thread.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "scenes/generator/story.h"

namespace qv::testing {

/// One place in the text that leads on.
struct SceneExit {
  enum class Kind { Go, Choice, Place };
  const scenec::Option* option;  ///< its target; the exit's identity
  Kind kind = Kind::Go;
  std::string words{};       ///< the choice, or the conditions that lead there
  bool conditional = false;  ///< in a part of a scene or in a branch
};
std::vector<SceneExit> exitsOf(const scenec::Scene& scene);

/// Whether the condition holds now; nothing where chance decides.
std::optional<bool> holds(std::string_view words, const scenec::Story& story);

/// What can be told of a scene that has just returned.
struct ScenePassage {
  const scenec::StepList* list = nullptr;      ///< the part that ran
  std::vector<const scenec::Option*> exits{};  ///< several where chance decides
  const scenec::Act* selection = nullptr;      ///< the choices or places it ended with
  bool open = false;                           ///< it may have gone where its text does not say
};
/// `step`: where it returned. `choice`: the plate that was taken, from 1.
ScenePassage passageOf(const scenec::Scene& scene, const scenec::Story& story, int32_t step,
                       int32_t choice);

/// Settings that the scene's conditions ask, as registers of the system.
std::vector<int32_t> askedSettingsOf(const scenec::Scene& scene);

}  // namespace qv::testing
