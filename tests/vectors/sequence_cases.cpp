/// The kinds of 06_sequence.json.

#include "graphics/animation/animation_sequence.h"
#include "tests/vectors/case.h"

namespace qv::vectors {

namespace {

void sequence(Case& given) {
  given.platform();
  AnimationSequence sequence;
  sequence.setText(given.ascii("text").c_str(), given.int32("stop_at_end") != 0);
  expectEqual("first_next", sequence.next(), given["first_next"]);

  const std::string force = given.ascii("force");
  expectEqual("number of steps", force.size(), given["steps"].size());
  const auto rewound =
      given.has("rewind_before_step") ? given.place("rewind_before_step") : std::nullopt;
  for (size_t step = 0; step < force.size(); ++step) {
    if (rewound && *rewound == static_cast<int64_t>(step)) sequence.rewind();
    const AnimationSequence::Frame frame = sequence.step(force[step] == '1');
    const Json after = {frame.cell, sequence.shown().cell, frame.x, frame.y, sequence.next()};
    expectEqual("after step " + std::to_string(step), after, given["steps"][step]);
  }
}

void mouth(Case& given) {
  given.platform();
  AnimationSequence sequence;
  sequence.setText(given.ascii("text").c_str(), given.int32("stop_at_end") != 0);
  Json results = Json::array();
  while (results.size() < given["results"].size())
    results.push_back(sequence.step(false).cell);
  expectEqual("results", results, given["results"]);
}

constexpr Kind Kinds[] = {
    {"mouth", mouth},
    {"sequence", sequence},
};

}  // namespace

std::span<const Kind> sequenceKinds() {
  return Kinds;
}

}  // namespace qv::vectors
