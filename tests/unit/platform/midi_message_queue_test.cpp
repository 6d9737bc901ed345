#include "platform/sound/midi_message_queue.h"

#include <algorithm>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace qv::testing {
namespace {

class MidiMessageQueueTest : public ::testing::Test {
 protected:
  /// What comes out: "reset", a number, or the bytes of a long message.
  std::vector<std::string> taken() {
    std::vector<std::string> all;
    queue->take([&] { all.push_back("reset"); },
                [&](uint32_t message) { all.push_back(std::to_string(message)); },
                [&](std::span<const uint8_t> message) {
                  all.emplace_back(message.begin(), message.end());
                });
    return all;
  }
  void putLong(const std::string& bytes) {
    queue->put({reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()});
  }
  using All = std::vector<std::string>;
  std::unique_ptr<MidiMessageQueue> queue = std::make_unique<MidiMessageQueue>();
};

TEST_F(MidiMessageQueueTest, GivesMessagesInTheirOrderAndOnce) {
  queue->put(1);
  putLong("abcde");
  putLong("");
  queue->put(0x7F4090);
  EXPECT_EQ(taken(), (All{"1", "abcde", "", std::to_string(0x7F4090)}));
  EXPECT_EQ(taken(), All{});
}

TEST_F(MidiMessageQueueTest, AResetOvertakesWhatStandsBeforeIt) {
  queue->put(1);
  queue->putReset();
  queue->put(2);
  EXPECT_EQ(taken(), (All{"reset", "2"}));
  EXPECT_EQ(taken(), All{});
  queue->put(3);
  EXPECT_EQ(taken(), All{"3"});
  queue->putReset();
  EXPECT_EQ(taken(), All{"reset"});
}

TEST_F(MidiMessageQueueTest, WhenFullLosesMessagesButNoReset) {
  for (uint32_t message = 0; message < MidiMessageQueue::Words + 10; ++message)
    queue->put(message);
  EXPECT_TRUE(queue->takeLost());
  EXPECT_FALSE(queue->takeLost());
  queue->putReset();
  EXPECT_EQ(taken(), All{"reset"});
  queue->put(5);
  EXPECT_EQ(taken(), All{"5"});
  EXPECT_FALSE(queue->takeLost());
}

TEST_F(MidiMessageQueueTest, TakesLongMessagesAcrossItsOwnEnd) {
  const std::string message(1001, 'x');
  for (int round = 0; round < 200; ++round) {
    putLong(message);
    queue->put(7);
    EXPECT_EQ(taken(), (All{message, "7"}));
  }
  putLong(std::string(MidiMessageQueue::LongestMessage + 1, 'x'));
  EXPECT_EQ(taken(), All{});
}

TEST_F(MidiMessageQueueTest, BetweenTwoThreadsLosesNothingBehindAReset) {
  constexpr uint32_t Count = 200'000, PerRound = 1000;
  std::vector<uint32_t> order;
  size_t resets = 0;
  std::thread writer([&] {
    for (uint32_t message = 1; message <= Count; ++message) {
      while (queue->takeLost()) {
      }
      if (message % PerRound == 1) queue->putReset();
      queue->put(message);
      while (queue->takeLost())
        queue->put(message);
    }
  });
  // What is taken rises; what is missing was void by the reset behind it.
  while (order.empty() || order.back() != Count)
    queue->take([&] { ++resets; }, [&](uint32_t message) { order.push_back(message); },
                [](std::span<const uint8_t>) {});
  writer.join();
  EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
  EXPECT_EQ(std::adjacent_find(order.begin(), order.end()), order.end());
  EXPECT_GE(resets, 1u);
  for (size_t at = 1; at < order.size(); ++at)
    if (order[at] != order[at - 1] + 1) {
      EXPECT_EQ(order[at] % PerRound, 1u);
    }
}

}  // namespace
}  // namespace qv::testing
