#include "tools/song/phrase.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace qv::song {

namespace {

constexpr size_t MostChordKeys = 8;
constexpr int MostRepeats = 16;
constexpr std::pair<std::string_view, int> Dynamics[] = {{"(ppp)", 28}, {"(pp)", 40},  {"(p)", 54},
                                                         {"(mp)", 68},  {"(mf)", 82},  {"(f)", 97},
                                                         {"(ff)", 111}, {"(fff)", 124}};
constexpr int MezzoForte = 82;

bool isSpace(char c) {
  return c == ' ' || c == '\t' || c == '\r';
}

bool readNumber(std::string_view text, int& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size();
}

/// What a key signature does to a letter: 1 sharp, -1 flat.
int signatureOf(int sharps, int letter) {
  static constexpr std::string_view Sharps = "fcgdaeb", Flats = "beadgcf";
  const std::string_view order = sharps > 0 ? Sharps : Flats;
  const auto count = static_cast<size_t>(sharps > 0 ? sharps : -sharps);
  const size_t at = order.find(static_cast<char>(letter));
  return at < count ? (sharps > 0 ? 1 : -1) : 0;
}

}  // namespace

Phrase::Phrase(const Song& song, const Part& part, size_t& room, Complain complain)
    : song_(song),
      part_(part),
      room_(room),
      complain_(std::move(complain)),
      velocity_(MezzoForte) {}

void Phrase::complain(std::string what) {
  complain_(line_, std::move(what));
}

void Phrase::readLine(std::string_view text, int line) {
  line_ = line;
  size_t at = 0;
  while (at < text.size()) {
    if (isSpace(text[at])) {
      ++at;
      continue;
    }
    size_t end = at;
    if (text[at] == '[') {
      end = at + 1;
    } else {
      // A bracket that closes takes its marks along: "]!".
      while (end < text.size() && !isSpace(text[end]) && text[end] != '[' &&
             (text[end] != ']' || end == at))
        ++end;
    }
    readToken(text.substr(at, end - at));
    at = end;
  }
}

void Phrase::readToken(std::string_view token) {
  if (token.find('|') != std::string_view::npos) return barLine(token);
  if (token == "%") {
    if (barOpen_ || bars_.empty())
      return complain("\"%\" repeats the bar before it; it stands alone in its bar.");
    simile_ = barOpen_ = true;
    return;
  }
  if (simile_) return complain("\"%\" repeats the bar before it; it stands alone in its bar.");
  if (readLength(token) || readDynamic(token)) return;
  if (token == "[") {
    if (inChord_) return complain("A chord begins within a chord; a \"]\" is missing.");
    inChord_ = true;
    chord_.clear();
    return;
  }
  readNote(token);
}

void Phrase::barLine(std::string_view token) {
  if (inChord_) complain("The chord has no \"]\" in this bar.");
  inChord_ = false;
  const bool endsRepeat = token.front() == ':', beginsRepeat = token.ends_with(":") && !endsRepeat;
  int times = 2;
  const std::string_view rest = token.substr(token.find('|') + 1);
  if ((!endsRepeat && token != "|" && token != "|:" && token != "||") ||
      (endsRepeat &&
       (!token.starts_with(":|") ||
        (!rest.empty() && (!readNumber(rest, times) || times < 2 || times > MostRepeats)))))
    return complain("\"" + std::string(token) + "\" is no bar line; write |, |:, :| or :|3.");
  endBar();
  if (endsRepeat) {
    if (!inRepeat_) return complain("\":|\" without a \"|:\" before it.");
    inRepeat_ = false;
    if (inHairpin_) complain("A hairpin ends before its repeat does.");
    const size_t end = bars_.size();
    for (int time = 1; time < times; ++time)
      copyBars(repeatFrom_, end);
  }
  if (beginsRepeat) {
    if (inRepeat_) complain("\"|:\" within a repeat; end the first by \":|\".");
    inRepeat_ = true;
    repeatFrom_ = bars_.size();
  }
}

void Phrase::keepBar(Bar bar) {
  if (full_) return;
  if (bars_.size() == MostBars || bar.items.size() > room_) {
    full_ = true;
    return complain("The song is too long: a section has at most " + std::to_string(MostBars) +
                    " bars, and all together " + std::to_string(MostItems) + " notes.");
  }
  room_ -= bar.items.size();
  bars_.push_back(std::move(bar));
}

void Phrase::copyBars(size_t from, size_t to) {
  for (size_t at = from; at < to && !full_; ++at)
    keepBar(bars_[at]);
}

void Phrase::endBar() {
  if (!barOpen_) return;
  if (simile_) {
    copyBars(bars_.size() - 1, bars_.size());
  } else {
    const uint32_t wanted = song_.barTicks();
    if (bar_.filled != wanted)
      complain("Bar " + std::to_string(bars_.size() + 1) + " of " + part_.name + " is " +
               (bar_.filled < wanted ? "too short: " : "too long: ") + std::to_string(bar_.filled) +
               " ticks of " + std::to_string(wanted) + " (a quarter has " +
               std::to_string(TicksPerQuarter) + ").");
    keepBar(std::move(bar_));
  }
  bar_ = Bar{};
  barOpen_ = simile_ = false;
}

void Phrase::finish(int line) {
  line_ = line;
  if (inChord_) complain("The last chord of " + part_.name + " has no \"]\".");
  endBar();
  if (inRepeat_) complain("A repeat of " + part_.name + " has no \":|\".");
  if (inHairpin_) complain("A hairpin of " + part_.name + " does not lead to a dynamic mark.");
}

bool Phrase::readLength(std::string_view token) {
  size_t digits = 0;
  while (digits < token.size() && token[digits] >= '0' && token[digits] <= '9')
    ++digits;
  if (digits == 0) return false;
  int value = 0;
  const std::string_view marks = token.substr(digits);
  static constexpr int Values[] = {1, 2, 4, 8, 16, 32};
  if (!readNumber(token.substr(0, digits), value) ||
      std::find(std::begin(Values), std::end(Values), value) == std::end(Values) ||
      (!marks.empty() && marks != "." && marks != ".." && marks != "t") ||
      (value == 32 && marks == "..")) {
    complain("\"" + std::string(token) +
             "\" is no length; write 1 2 4 8 16 32, dotted as 4. or a triplet as 8t.");
    return true;
  }
  if (inChord_) complain("A length stands before its chord, not in it.");
  length_ = TicksPerQuarter * 4 / static_cast<uint32_t>(value);
  if (marks == ".") length_ += length_ / 2;
  if (marks == "..") length_ += length_ / 2 + length_ / 4;
  if (marks == "t") length_ = length_ * 2 / 3;
  return true;
}

bool Phrase::readDynamic(std::string_view token) {
  if (token == "<" || token == ">") {
    startHairpin();
    return true;
  }
  for (const auto& [name, velocity] : Dynamics) {
    if (name != token) continue;
    setVelocity(velocity);
    return true;
  }
  int velocity = 0;
  if (token.size() < 2 || token[0] != 'v' || !readNumber(token.substr(1), velocity)) return false;
  if (velocity < 1 || velocity > 127)
    complain("\"" + std::string(token) + "\": a velocity is v1 to v127.");
  else
    setVelocity(velocity);
  return true;
}

void Phrase::startHairpin() {
  if (inHairpin_) complain("A hairpin begins within a hairpin; write a dynamic mark between them.");
  inHairpin_ = true;
  hairpin_.clear();
  hairpinVelocity_ = velocity_;
}

/// Ends a hairpin too: its notes rise or fall in even steps towards the new velocity.
void Phrase::setVelocity(int velocity) {
  velocity_ = velocity;
  if (!inHairpin_) return;
  inHairpin_ = false;
  const int count = static_cast<int>(hairpin_.size());
  for (int at = 0; at < count; ++at) {
    const Place place = hairpin_[static_cast<size_t>(at)];
    Bar& bar = place.bar < bars_.size() ? bars_[place.bar] : bar_;
    if (place.item < bar.items.size())
      bar.items[place.item].velocity =
          hairpinVelocity_ + (velocity - hairpinVelocity_) * at / count;
  }
}

void Phrase::readNote(std::string_view token) {
  Item item;
  std::string_view name = token;
  while (!name.empty() && (name.back() == '!' || name.back() == '.')) {
    (name.back() == '!' ? item.accent : item.staccato) = true;
    name.remove_suffix(1);
  }
  if (name == "]") {
    if (!inChord_) return complain("\"]\" without a \"[\" before it.");
    inChord_ = false;
    if (chord_.empty()) return complain("The chord is empty; a rest is r.");
    item.keys = chord_;
    return addItem(std::move(item));
  }
  if (name == "r" || name == "~") {
    if (inChord_) return complain("\"" + std::string(name) + "\" stands in a chord.");
    item.held = name == "~";
    return addItem(std::move(item));
  }
  const int key = part_.drums ? drumOf(name) : keyOf(name, inChord_);
  if (key < 0) return;
  if (!inChord_) {
    item.keys.push_back(key);
    return addItem(std::move(item));
  }
  if (item.accent || item.staccato) complain("Marks of a chord stand after its \"]\".");
  if (std::find(chord_.begin(), chord_.end(), key) != chord_.end())
    return complain("\"" + std::string(name) + "\" stands in the chord twice.");
  if (chord_.size() == MostChordKeys) return complain("A chord has at most 8 notes.");
  chord_.push_back(key);
}

int Phrase::drumOf(std::string_view name) {
  const int key = drumKey(std::string(name));
  if (key < 0)
    complain("\"" + std::string(name) + "\" is no drum; docs/song-notation.md lists them.");
  return key;
}

/// Negative, with the problem told, for what is no note.
int Phrase::keyOf(std::string_view name, bool inChord) {
  static constexpr int Steps[] = {9, 11, 0, 2, 4, 5, 7};
  const auto wrong = [&] {
    complain("\"" + std::string(name) + "\" is no note; write c, f#4, bb3, r for a rest.");
    return -1;
  };
  if (name.empty() || name[0] < 'a' || name[0] > 'g') return wrong();
  int key = Steps[name[0] - 'a'];
  size_t at = 1;
  if (at < name.size() && name[at] == '=') {
    ++at;
  } else if (at < name.size() && (name[at] == '#' || name[at] == 'b')) {
    const char sign = name[at];
    for (int signs = 0; signs < 2 && at < name.size() && name[at] == sign; ++signs, ++at)
      key += sign == '#' ? 1 : -1;
  } else {
    key += signatureOf(song_.sharps, name[0]);
  }
  int octave = octave_;
  if (at < name.size()) {
    if (!readNumber(name.substr(at), octave) || octave < 0 || octave > 9) return wrong();
    if (!inChord || chord_.empty()) octave_ = octave;
    key += 12 * (octave + 1);
  } else {
    key += 12 * (octave + 1);
    // Within a chord a note without its octave is the next one above.
    if (inChord && !chord_.empty()) {
      key %= 12;
      while (key + part_.transpose <= chord_.back())
        key += 12;
    }
  }
  key += part_.transpose;
  if (key < 0 || key > 127) {
    complain("\"" + std::string(name) + "\" is beyond the keys of an instrument.");
    return -1;
  }
  return key;
}

void Phrase::addItem(Item item) {
  barOpen_ = true;
  item.offset = bar_.filled;
  item.length = length_;
  item.velocity = velocity_;
  // A bar that is too long is told once, at its end; what lies beyond it is not kept.
  if (bar_.filled < song_.barTicks()) {
    if (inHairpin_ && !item.keys.empty()) hairpin_.push_back({bars_.size(), bar_.items.size()});
    bar_.items.push_back(std::move(item));
  }
  bar_.filled = std::min(bar_.filled + length_, song_.barTicks() + TicksPerQuarter * 64);
}

}  // namespace qv::song
