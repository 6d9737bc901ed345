// The page for authors: every example of docs/animation.md is played.

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "graphics/animation/animation_sequence.h"
#include "tests/support/test_platform.h"

namespace qv::testing {
namespace {

struct Example {
  std::string form, sequence, result;
};

std::string trimmed(const std::string& text) {
  const size_t first = text.find_first_not_of(' ');
  return first == std::string::npos ? ""
                                    : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

/// Lines "SEQUENCE => RESULT" of the fenced blocks, with the name of their block.
std::vector<Example> examples() {
  std::ifstream page(QV_SOURCE_DIR "/docs/animation.md");
  std::vector<Example> found;
  std::string form;
  for (std::string line; std::getline(page, line);) {
    if (line.starts_with("```")) {
      form = form.empty() ? line.substr(3) : "";
    } else if (!form.empty()) {
      const size_t arrow = line.find("=>");
      if (arrow == std::string::npos)
        ADD_FAILURE() << "no example: " << line;
      else
        found.push_back({form, trimmed(line.substr(0, arrow)), trimmed(line.substr(arrow + 2))});
    }
  }
  return found;
}

std::string letterOf(int32_t cell) {
  if (cell == AnimationSequence::NoChange) return ".";
  if (cell == AnimationSequence::Ended) return "#";
  return std::string(1, static_cast<char>('A' + cell));
}

TEST(AnimationPage, TellsWhatItsSequencesDo) {
  const TestPlatform platform;
  int ticks = 0, places = 0;
  for (const Example& example : examples()) {
    SCOPED_TRACE(example.sequence);
    AnimationSequence sequence;
    sequence.setText(example.sequence.c_str(), example.form == "ticks, stopping");
    std::string played;
    if (example.form == "places") {
      ++places;
      while (played.size() < example.result.size()) {
        const AnimationSequence::Frame frame = sequence.step(false);
        if (!played.empty()) played += "  ";
        played +=
            letterOf(frame.cell) + " " + std::to_string(frame.x) + "," + std::to_string(frame.y);
      }
    } else {
      EXPECT_TRUE(example.form == "ticks" || example.form == "ticks, stopping") << example.form;
      ++ticks;
      while (played.size() < example.result.size())
        played += letterOf(sequence.step(false).cell);
    }
    EXPECT_EQ(played, example.result);
  }
  EXPECT_GE(ticks, 15);
  EXPECT_GE(places, 7);
}

}  // namespace
}  // namespace qv::testing
