#include "platform/sound/awaited_midi.h"

#include <memory>
#include <utility>

#include <gtest/gtest.h>

#include "platform/kernel/simulated_kernel.h"
#include "platform/sound/null_midi_output.h"
#include "tests/support/test_platform.h"

namespace qv::testing {
namespace {

class AwaitedMidiTest : public ::testing::Test {
 protected:
  TestPlatform platform_{false, makeSimulatedKernel({})};
};

TEST_F(AwaitedMidiTest, IsOpenedWhenItsDeviceIsThere) {
  uint32_t wantedAt = 0, openedAt = 0;
  AwaitedMidi midi([&] { wantedAt = tickCount(); });
  Thread opener;
  opener.start("opener", [&] {
    EXPECT_TRUE(midi.open());
    openedAt = tickCount();
  });
  const uint32_t start = tickCount();
  sleepMillis(70);
  midi.arrive(std::make_unique<NullMidiOutput>());
  opener.join();
  EXPECT_EQ(wantedAt - start, 0U);
  EXPECT_EQ(openedAt - start, 70U);
}

TEST_F(AwaitedMidiTest, IsNotOpenedByAThreadThatHasToEnd) {
  AwaitedMidi midi([] {});
  Thread opener;
  bool opened = true;
  opener.start("opener", [&] { opened = midi.open(); });
  sleepMillis(10);
  opener.terminate();
  opener.join();
  EXPECT_FALSE(opened);
}

TEST_F(AwaitedMidiTest, HandsEverythingOn) {
  AwaitedMidi midi([] {});
  auto device = std::make_unique<NullMidiOutput>(10);
  const NullMidiOutput* const behind = device.get();
  midi.arrive(std::move(device));
  EXPECT_TRUE(midi.open());
  EXPECT_FALSE(midi.open()) << "the device itself says that it is taken";
  midi.shortMessage(0x643C90);
  const uint8_t bytes[] = {0xF0, 0x7E, 0xF7};
  midi.longMessage(bytes);
  midi.reset();
  midi.close();
  using Kind = NullMidiOutput::Kind;
  std::vector<Kind> kinds;
  for (const NullMidiOutput::Sent& sent : behind->sent())
    kinds.push_back(sent.kind);
  EXPECT_EQ(kinds, (std::vector{Kind::Open, Kind::Short, Kind::Long, Kind::Reset, Kind::Close}));
  EXPECT_FALSE(behind->isOpen());
}

}  // namespace
}  // namespace qv::testing
