#include "tools/story/engine_files.h"

#include <array>

namespace qv::story {

namespace {

constexpr std::array Files{
    // The message frame with its prompt, buttons and regions.
    "dat\\mframeR.mcg",
    "dat\\mframe.mcg",
    "dat\\MDButton.mcg",
    "dat\\Blink.mcg",
    "dat\\MButton1.mcg",
    "dat\\MButton2.mcg",
    "dat\\MButton3.mcg",
    "dat\\mcframe.mcg",
    // The choices.
    "dat\\select01.mcg",
    "dat\\select02.mcg",
    "dat\\select03.mcg",
    "dat\\select1R.mcg",
    "dat\\select2R.mcg",
    "dat\\select3R.mcg",
    "dat\\mcsel.mcg",
    "dat\\SButton1.mcg",
    "dat\\SButton2.mcg",
    // The pendant.
    "dat\\SysCut.mcg",
    "dat\\SysCut2.mcg",
    "dat\\stone1.mcg",
    "dat\\stone2.mcg",
    // Questions and notices.
    "dat\\YesNo.mcg",
    "dat\\yes.mcg",
    "dat\\no.mcg",
    "dat\\ok.mcg",
    // The story's signs and the system's colours.
    "dat\\Quvex.tte",
    "dat\\L0pal.dat",
};

}  // namespace

std::span<const char* const> engineFiles() {
  return Files;
}

}  // namespace qv::story
