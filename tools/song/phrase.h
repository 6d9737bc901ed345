#pragma once

/// The bars that one part plays in one section: tokens of the notation turned into notes at offsets
/// within their bar, with repeats written out. One thread.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/song/song.h"

namespace qv::song {

/// What stands at one place of a bar: a note, a chord, a rest, or "~" that holds what sounds.
struct Item {
  uint32_t offset = 0, length = 0;  ///< ticks, from the bar's start
  std::vector<int> keys;            ///< empty for a rest
  bool held = false, accent = false, staccato = false;
  int velocity = 0;
};

struct Bar {
  std::vector<Item> items;
  uint32_t filled = 0;  ///< ticks
};

class Phrase {
 public:
  using Complain = std::function<void(int line, std::string what)>;
  /// `room`: what the whole song may still write out, in items; shared by its phrases.
  Phrase(const Song& song, const Part& part, size_t& room, Complain complain);

  /// Another line of the part.
  void readLine(std::string_view text, int line);
  /// After the last line. The bars with their repeats.
  void finish(int line);
  const std::vector<Bar>& bars() const { return bars_; }

 private:
  void readToken(std::string_view token);
  void barLine(std::string_view token);
  void endBar();
  void keepBar(Bar bar);
  void copyBars(size_t from, size_t to);
  void setVelocity(int velocity);
  void startHairpin();
  bool readLength(std::string_view token);
  bool readDynamic(std::string_view token);
  void readNote(std::string_view token);
  int keyOf(std::string_view name, bool inChord);
  int drumOf(std::string_view name);
  void addItem(Item item);
  void complain(std::string what);

  const Song& song_;
  const Part& part_;
  size_t& room_;
  Complain complain_;
  int line_ = 0;
  std::vector<Bar> bars_;
  Bar bar_;
  bool barOpen_ = false, simile_ = false;
  size_t repeatFrom_ = 0;
  bool inRepeat_ = false, full_ = false;
  // What a note takes from those before it.
  uint32_t length_ = TicksPerQuarter;
  int octave_ = 4, velocity_ = 0;
  // A chord between its brackets.
  bool inChord_ = false;
  std::vector<int> chord_;
  // Notes since a hairpin began: the bar (bars_.size() for the open one) and the item.
  struct Place {
    size_t bar = 0, item = 0;
  };
  bool inHairpin_ = false;
  std::vector<Place> hairpin_;
  int hairpinVelocity_ = 0;
};

/// Longest song, in bars, and the items that its sections may write out: a slip of the pen must not
/// fill the memory.
constexpr size_t MostBars = 1000, MostItems = 200'000;

}  // namespace qv::song
