#include "tools/picture_codec/lzss_encoder.h"

#include <algorithm>
#include <cstring>

namespace qv::codec {

namespace {

/// The zeros that stand in a fresh ring before the first byte. The last places of the ring are
/// left out, because the classical SLD decoder does not clear them.
constexpr size_t ZerosBefore = LzssRingStart;
/// A decoder copies this many bytes at once. A repeat from nearer overlaps itself, which costs it
/// as much time as several others; it is taken only where it saves more than these bits.
constexpr size_t FarEnough = 16;
constexpr uint64_t NearBits = 6;

struct Match {
  uint16_t distance = 0;
  uint8_t length = 0;
};

struct Matches {
  Match far, near;  ///< the near one only when it is longer
  uint16_t distanceFor(size_t length) const {
    return length <= far.length ? far.distance : near.distance;
  }
};

/// The longest repeat at every place, by chains of places that begin with the same three bytes.
class MatchFinder {
 public:
  explicit MatchFinder(std::span<const uint8_t> bytes)
      : bytes_(bytes), newest_(HashSize, None), before_(LzssRingBytes, None) {}

  /// Places are asked in rising order; each is entered when it is asked for, or by `enter`.
  Matches longestAt(size_t place) {
    Matches best;
    const size_t most = std::min(LzssLongest, bytes_.size() - place);
    if (most >= LzssShortest) {
      for (size_t other = newest_[hashAt(place)]; other != None && place - other <= LzssRingBytes;
           other = olderThan(other)) {
        const size_t distance = place - other;
        Match& kind = distance >= FarEnough ? best.far : best.near;
        const size_t length = commonLength(place, other, most);
        if (length < LzssShortest || length <= kind.length) continue;
        kind = {static_cast<uint16_t>(distance), static_cast<uint8_t>(length)};
        if (best.far.length == most) break;
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
  size_t commonLength(size_t place, size_t other, size_t most) const {
    size_t length = 0;
    while (length < most && bytes_[place + length] == bytes_[other + length])
      ++length;
    return length;
  }

  std::span<const uint8_t> bytes_;
  std::vector<size_t> newest_, before_;
};

/// Which length to take at each place so that the whole costs the fewest bits (near repeats count
/// some more), and among those the fewest steps for the decoder. 1 is a literal.
std::vector<uint8_t> cheapestLengths(const std::vector<Matches>& matches) {
  constexpr uint64_t Step = 1, Bit = 16, Literal = 9 * Bit + Step, Repeat = 17 * Bit + Step;
  // Every shorter length of a repeat costs the same, so only the places behind them matter; no
  // more than the longest repeat of them is looked at again.
  constexpr size_t Kept = LzssLongest + 1;
  uint64_t costs[Kept] = {};
  std::vector<uint8_t> lengths(matches.size());
  for (size_t place = matches.size(); place-- > 0;) {
    uint64_t cheapest = Literal + costs[(place + 1) % Kept];
    lengths[place] = 1;
    const size_t far = matches[place].far.length, near = matches[place].near.length;
    for (size_t length = LzssShortest; length <= std::max(far, near); ++length) {
      const uint64_t cost =
          Repeat + (length > far ? NearBits * Bit : 0) + costs[(place + length) % Kept];
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
  std::vector<Matches> matches(bytes.size());
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
      writer.repeat(pairs,
                    (LzssRingStart + at - matches[at].distanceFor(lengths[at])) % LzssRingBytes,
                    lengths[at]);
  }
  if (progress) progress(1);
  return writer.take();
}

}  // namespace qv::codec
