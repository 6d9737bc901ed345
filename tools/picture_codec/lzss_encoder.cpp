#include "tools/picture_codec/lzss_encoder.h"

#include <algorithm>
#include <cstring>

namespace qv::codec {

namespace {

/// The zeros that stand in a fresh ring before the first byte. The last places of the ring are
/// left out, because the classical SLD decoder does not clear them.
constexpr size_t ZerosBefore = LzssRingStart;
/// Of two repeats of one length the farther is better: a decoder copies it without overlap.
constexpr size_t FarEnough = 32;

struct Match {
  uint16_t distance = 0;
  uint8_t length = 0;
};

/// The longest repeat at every place, by chains of places that begin with the same three bytes.
class MatchFinder {
 public:
  explicit MatchFinder(std::span<const uint8_t> bytes)
      : bytes_(bytes), newest_(HashSize, None), before_(LzssRingBytes, None) {}

  /// Places are asked in rising order; each is entered when it is asked for, or by `enter`.
  Match longestAt(size_t place) {
    Match best;
    const size_t most = std::min(LzssLongest, bytes_.size() - place);
    if (most >= LzssShortest) {
      for (size_t other = newest_[hashAt(place)]; other != None && place - other <= LzssRingBytes;
           other = olderThan(other)) {
        if (isBetter(best, place, other, most) && isDone(best, most)) break;
      }
    }
    enter(place);
    return best;
  }

  void enter(size_t place) {
    if (place + LzssShortest > bytes_.size()) return;
    size_t& head = newest_[hashAt(place)];
    before_[place % LzssRingBytes] = head;
    head = place;
  }

 private:
  static constexpr size_t HashSize = size_t{1} << 15, None = SIZE_MAX;

  size_t hashAt(size_t place) const {
    const uint32_t three = static_cast<uint32_t>(bytes_[place]) << 16 |
                           static_cast<uint32_t>(bytes_[place + 1]) << 8 | bytes_[place + 2];
    return three * 2654435761u >> 17;
  }
  /// The chain's next place; what was overwritten since is no older place and ends it.
  size_t olderThan(size_t place) const {
    const size_t older = before_[place % LzssRingBytes];
    return older != None && older < place ? older : None;
  }
  bool isBetter(Match& best, size_t place, size_t other, size_t most) const {
    size_t length = 0;
    while (length < most && bytes_[place + length] == bytes_[other + length])
      ++length;
    const bool longer = length > best.length;
    const bool farther = length == best.length && best.distance < FarEnough;
    if (length < LzssShortest || !(longer || farther)) return false;
    best = {static_cast<uint16_t>(place - other), static_cast<uint8_t>(length)};
    return true;
  }
  static bool isDone(const Match& best, size_t most) {
    return best.length == most && best.distance >= FarEnough;
  }

  std::span<const uint8_t> bytes_;
  std::vector<size_t> newest_, before_;
};

/// Which length to take at each place so that the whole costs the fewest bits, and among those the
/// fewest steps for the decoder. 1 is a literal.
std::vector<uint8_t> cheapestLengths(const std::vector<Match>& matches) {
  constexpr uint64_t Step = 1, Bit = 16, Literal = 9 * Bit + Step, Repeat = 17 * Bit + Step;
  // Every shorter length of a repeat costs the same, so only the places behind them matter; no
  // more than the longest repeat of them is looked at again.
  constexpr size_t Kept = LzssLongest + 1;
  uint64_t costs[Kept] = {};
  std::vector<uint8_t> lengths(matches.size());
  for (size_t place = matches.size(); place-- > 0;) {
    uint64_t cheapest = Literal + costs[(place + 1) % Kept];
    lengths[place] = 1;
    for (size_t length = LzssShortest; length <= matches[place].length; ++length) {
      const uint64_t cost = Repeat + costs[(place + length) % Kept];
      if (cost < cheapest) {
        cheapest = cost;
        lengths[place] = static_cast<uint8_t>(length);
      }
    }
    costs[place % Kept] = cheapest;
  }
  return lengths;
}

/// Groups of eight under their byte of flags.
class GroupWriter {
 public:
  void literal(uint8_t byte) {
    begin(1);
    out_.push_back(byte);
  }
  void repeat(LzssPairs pairs, size_t place, size_t length) {
    begin(0);
    const size_t more = length - LzssShortest;
    out_.push_back(static_cast<uint8_t>(place));
    out_.push_back(static_cast<uint8_t>(pairs == LzssPairs::Mcg ? more << 4 | place >> 8
                                                                : (place >> 4 & 0xF0) | more));
  }
  std::vector<uint8_t> take() { return std::move(out_); }

 private:
  void begin(unsigned flag) {
    if (bit_ == 8) {
      bit_ = 0;
      flagsAt_ = out_.size();
      out_.push_back(0);
    }
    out_[flagsAt_] = static_cast<uint8_t>(out_[flagsAt_] | flag << bit_++);
  }
  std::vector<uint8_t> out_;
  size_t flagsAt_ = 0;
  unsigned bit_ = 8;
};

}  // namespace

std::vector<uint8_t> compressLzss(LzssPairs pairs, std::span<const uint8_t> bytes,
                                  const Progress& progress) {
  constexpr size_t ReportedEvery = 1 << 16;
  std::vector<uint8_t> history(ZerosBefore + bytes.size());
  std::copy(bytes.begin(), bytes.end(), history.begin() + ZerosBefore);

  MatchFinder finder(history);
  for (size_t place = 0; place < ZerosBefore; ++place)
    finder.enter(place);
  std::vector<Match> matches(bytes.size());
  for (size_t at = 0; at < bytes.size(); ++at) {
    if (progress && at % ReportedEvery == 0)
      progress(static_cast<double>(at) / static_cast<double>(bytes.size()));
    matches[at] = finder.longestAt(ZerosBefore + at);
  }
  const std::vector<uint8_t> lengths = cheapestLengths(matches);

  GroupWriter writer;
  for (size_t at = 0; at < bytes.size(); at += lengths[at]) {
    if (lengths[at] == 1)
      writer.literal(bytes[at]);
    else
      writer.repeat(pairs, (LzssRingStart + at - matches[at].distance) % LzssRingBytes,
                    lengths[at]);
  }
  if (progress) progress(1);
  return writer.take();
}

}  // namespace qv::codec
