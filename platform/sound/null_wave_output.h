#pragma once

/// A wave device without a sound: it keeps the time that the sound would take, on the kernel's
/// clock, and on request it keeps what it was sent. Runs without a device and all tests use it.
/// The caller's threads, one at a time; what was sent may be asked for from any thread.

#include <atomic>
#include <cstdint>
#include <vector>

#include "platform/sound/wave_output.h"

namespace qv {

class NullWaveOutput : public WaveOutput {
 public:
  enum class Keep { Nothing, Everything };
  struct Sent {
    WaveFormat format;
    std::vector<uint8_t> bytes;
    uint32_t times = 1;
    uint32_t startTick = 0;
    uint32_t endTick = 0;  ///< when it has ended or was cut
    bool ended = false;
    bool cut = false;
  };

  explicit NullWaveOutput(Keep keep = Keep::Nothing);
  ~NullWaveOutput() override;

  bool available() const override { return available_; }
  bool open(const WaveFormat& format, Event& done) override;
  bool write(std::span<const uint8_t> bytes, uint32_t times) override;
  void reset() override;
  void close() override;

  /// All that was written so far, the oldest first.
  std::vector<Sent> sent() const;
  bool isOpen() const { return done_ != nullptr; }

  // Faults of a device, for who wants to see what happens then.
  void setAvailable(bool available) { available_ = available; }
  void setTaken(bool taken) { taken_ = taken; }
  void setRefusingWrites(bool refusing) { refusesWrites_ = refusing; }

 private:
  void playOut(uint64_t millis);
  void noteEnd(bool cut);

  const Keep keep_;
  std::atomic<bool> available_ = true, taken_ = false, refusesWrites_ = false;
  WaveFormat format_;
  std::atomic<Event*> done_ = nullptr;  ///< null: closed
  Event stop_;
  Thread thread_;  ///< waits out what is played
  bool playing_ = false;
  mutable Lock lock_;  ///< guards sent_
  std::vector<Sent> sent_;
};

}  // namespace qv
