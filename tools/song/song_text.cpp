#include "tools/song/song_text.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <memory>
#include <optional>
#include <utility>

#include "tools/song/phrase.h"

namespace qv::song {

namespace {

constexpr size_t MostProblems = 100, MostNotes = 60'000, MostSections = 64;

struct Section {
  std::string name;
  int line = 0;
  std::optional<int> tempo;
  const Section* like = nullptr;  ///< plays what this one does not write itself
  std::map<std::string, std::unique_ptr<Phrase>> phrases;
  size_t bars = 0;

  const Phrase* phraseOf(const std::string& part) const {
    const auto found = phrases.find(part);
    return found != phrases.end() ? found->second.get() : like ? like->phraseOf(part) : nullptr;
  }
};

std::vector<std::string> wordsOf(std::string_view text) {
  std::vector<std::string> words;
  size_t at = 0;
  while ((at = text.find_first_not_of(" \t\r", at)) != std::string_view::npos) {
    const size_t end = std::min(text.find_first_of(" \t\r", at), text.size());
    words.emplace_back(text.substr(at, end - at));
    at = end;
  }
  return words;
}

std::string_view withoutComment(std::string_view line) {
  // A sharp follows its letter, a comment stands by itself.
  for (size_t at = 0; at < line.size(); ++at)
    if (line[at] == '#' && (at == 0 || line[at - 1] == ' ' || line[at - 1] == '\t'))
      return line.substr(0, at);
  return line;
}

class Reader {
 public:
  ReadSong read(std::string_view text) {
    int line = 0;
    size_t at = 0;
    while (at < text.size()) {
      const size_t end = std::min(text.find('\n', at), text.size());
      readLine(withoutComment(text.substr(at, end - at)), ++line);
      at = end + 1;
    }
    lastLine_ = line;
    finish();
    std::stable_sort(result_.problems.begin(), result_.problems.end(),
                     [](const Problem& a, const Problem& b) { return a.line < b.line; });
    return std::move(result_);
  }

 private:
  Song& song() { return result_.song; }
  void complain(int line, std::string what) {
    if (result_.problems.size() < MostProblems) result_.problems.push_back({line, std::move(what)});
  }
  void readLine(std::string_view text, int line);
  void readSection(std::string_view text, int line);
  void readSectionWords(Section& section, const std::vector<std::string>& words);
  void readHeader(const std::vector<std::string>& words, std::string_view text, int line);
  void readMetre(const std::string& text, int line);
  void readKey(const std::vector<std::string>& words, int line);
  void readPart(const std::vector<std::string>& words, int line);
  void readInstrument(Part& part, const std::string& name, int line);
  void readForm(const std::vector<std::string>& words, int line);
  bool number(const std::string& text, int low, int high, int line, const std::string& what,
              int& value);
  Part* partNamed(const std::string& name);
  void giveChannels();
  void finish();
  void play(const Section& section);
  void playBars(Part& part, const Phrase& phrase, uint32_t start);

  ReadSong result_;
  int lastLine_ = 0;
  size_t noteCount_ = 0, room_ = MostItems;
  int tempo_ = 0;  ///< of sections that have none of their own
  bool tooMany_ = false;
  std::vector<std::unique_ptr<Section>> sections_;
  std::vector<std::string> form_;
  int formLine_ = 0;
};

bool Reader::number(const std::string& text, int low, int high, int line, const std::string& what,
                    int& value) {
  int read = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), read);
  if (error != std::errc() || end != text.data() + text.size() || read < low || read > high) {
    complain(line, what + " is a whole number from " + std::to_string(low) + " to " +
                       std::to_string(high) + ", not \"" + text + "\".");
    return false;
  }
  value = read;
  return true;
}

Part* Reader::partNamed(const std::string& name) {
  for (Part& part : song().parts)
    if (part.name == name) return &part;
  return nullptr;
}

void Reader::readLine(std::string_view text, int line) {
  const std::vector<std::string> words = wordsOf(text);
  if (words.empty()) return;
  if (words[0].front() == '[') return readSection(text, line);
  if (sections_.empty()) return readHeader(words, text, line);

  Part* const part = partNamed(words[0]);
  if (!part)
    return complain(line, "\"" + words[0] + "\" is no part; declare it above by \"part " +
                              words[0] + " ...\".");
  std::unique_ptr<Phrase>& phrase = sections_.back()->phrases[part->name];
  if (!phrase)
    phrase = std::make_unique<Phrase>(
        song(), *part, room_, [this](int at, std::string what) { complain(at, std::move(what)); });
  phrase->readLine(text.substr(text.find(words[0]) + words[0].size()), line);
}

void Reader::readSection(std::string_view text, int line) {
  const size_t open = text.find('['), close = text.find(']');
  const std::vector<std::string> name = close == std::string_view::npos
                                            ? std::vector<std::string>{}
                                            : wordsOf(text.substr(open + 1, close - open - 1));
  if (name.size() != 1) return complain(line, "A section is one word in brackets, as [A].");
  if (sections_.size() == MostSections)
    return complain(line, "A song has at most " + std::to_string(MostSections) + " sections.");
  for (const auto& other : sections_)
    if (other->name == name[0]) complain(line, "The section " + name[0] + " stands there twice.");
  auto section = std::make_unique<Section>();
  section->name = name[0];
  section->line = line;
  readSectionWords(*section, wordsOf(text.substr(close + 1)));
  sections_.push_back(std::move(section));
}

void Reader::readSectionWords(Section& section, const std::vector<std::string>& words) {
  for (size_t at = 0; at < words.size(); at += 2) {
    const bool last = at + 1 == words.size();
    int tempo = 0;
    if (!last && words[at] == "tempo") {
      if (number(words[at + 1], SlowestTempo, FastestTempo, section.line, "A tempo", tempo))
        section.tempo = tempo;
    } else if (!last && words[at] == "like") {
      for (const auto& other : sections_)
        if (other->name == words[at + 1]) section.like = other.get();
      if (!section.like) complain(section.line, "No section " + words[at + 1] + " stands above.");
    } else {
      return complain(section.line,
                      "After a section's name stand \"tempo 80\" and \"like A\", or nothing.");
    }
  }
}

void Reader::readHeader(const std::vector<std::string>& words, std::string_view text, int line) {
  const std::string& key = words[0];
  const auto rest = [&] {
    const size_t from = text.find_first_not_of(" \t", text.find(key) + key.size());
    if (from == std::string_view::npos) return std::string();
    return std::string(text.substr(from, text.find_last_not_of(" \t\r") + 1 - from));
  };
  if (key == "title") {
    song().title = rest().substr(0, 120);
  } else if (key == "composer") {
    song().composer = rest().substr(0, 120);
  } else if (words.size() == 1) {
    complain(line, "\"" + key +
                       "\" stands alone; before the first section stand title, composer, "
                       "tempo, metre, key, volume, part and form.");
  } else if (key == "tempo") {
    number(words[1], SlowestTempo, FastestTempo, line, "A tempo", song().tempi[0].beatsPerMinute);
  } else if (key == "metre") {
    readMetre(words[1], line);
  } else if (key == "key") {
    readKey(words, line);
  } else if (key == "volume") {
    number(words[1], 1, 127, line, "The volume", song().volume);
  } else if (key == "part") {
    readPart(words, line);
  } else if (key == "form") {
    readForm(words, line);
  } else {
    complain(line, "\"" + key +
                       "\" is not known here; before the first section stand title, "
                       "composer, tempo, metre, key, volume, part and form.");
  }
}

void Reader::readMetre(const std::string& text, int line) {
  const size_t slash = text.find('/');
  int beats = 0, unit = 0;
  if (slash == std::string::npos) return complain(line, "A metre is written as 4/4 or 6/8.");
  if (!number(text.substr(0, slash), 1, 16, line, "The number of beats", beats) ||
      !number(text.substr(slash + 1), 2, 16, line, "The unit of a beat", unit))
    return;
  if ((unit & (unit - 1)) != 0) return complain(line, "The unit of a beat is 2, 4, 8 or 16.");
  song().beats = beats;
  song().beatUnit = unit;
}

void Reader::readKey(const std::vector<std::string>& words, int line) {
  static constexpr std::string_view Fifths[] = {"Cb", "Gb", "Db", "Ab", "Eb", "Bb",
                                                "F",  "C",  "G",  "D",  "A",  "E",
                                                "B",  "F#", "C#", "G#", "D#", "A#"};
  const bool minor = words.size() > 2 && words[2] == "minor";
  const auto found = std::find(std::begin(Fifths), std::end(Fifths), words[1]);
  const int sharps = static_cast<int>(found - std::begin(Fifths)) - 7 - (minor ? 3 : 0);
  if (found == std::end(Fifths) || sharps < -7 || sharps > 7 || words.size() > 3 ||
      (words.size() == 3 && !minor && words[2] != "major"))
    return complain(line, "A key is written as \"key Bb major\" or \"key F# minor\".");
  song().sharps = sharps;
  song().minor = minor;
}

void Reader::readInstrument(Part& part, const std::string& name, int line) {
  if (name.find_first_not_of("0123456789") == std::string::npos) {
    int number1 = 1;
    if (number(name, 1, 128, line, "A program", number1)) part.program = number1 - 1;
    return;
  }
  const int program = programOf(name);
  if (program < 0)
    return complain(line, "\"" + name + "\" is no instrument; docs/song-notation.md lists them.");
  part.program = program;
}

void Reader::readPart(const std::vector<std::string>& words, int line) {
  Part part;
  part.name = words[1];
  part.line = line;
  if (part.name.find_first_of("[]|") != std::string::npos)
    return complain(line, "A part's name has no brackets and bars.");
  if (partNamed(part.name)) return complain(line, "The part " + part.name + " stands there twice.");
  if (song().parts.size() == Channels)
    return complain(line, "A song has at most 16 parts, one for each channel.");

  size_t at = 2;
  if (at < words.size() && words[at] == "drums") {
    part.drums = true;
    part.channel = DrumChannel;
    ++at;
  } else if (at < words.size()) {
    readInstrument(part, words[at++], line);
  } else {
    complain(line,
             "The part " + part.name + " has no instrument, as \"part " + part.name + " flute\".");
  }
  int channel = 0;
  const struct {
    const char* name;
    int low, high;
    int* value;
  } attributes[] = {{"pan", 0, 127, &part.pan},        {"expression", 0, 127, &part.expression},
                    {"reverb", 0, 127, &part.reverb},  {"chorus", 0, 127, &part.chorus},
                    {"gate", 10, 100, &part.gate},     {"transpose", -48, 48, &part.transpose},
                    {"channel", 1, Channels, &channel}};
  for (; at < words.size(); at += 2) {
    const auto* const found =
        std::find_if(std::begin(attributes), std::end(attributes),
                     [&](const auto& attribute) { return words[at] == attribute.name; });
    if (found == std::end(attributes) || at + 1 == words.size())
      return complain(line,
                      "\"" + words[at] +
                          "\": after the instrument stand pan, expression, "
                          "reverb, chorus, gate, transpose and channel, each with its number.");
    number(words[at + 1], found->low, found->high, line, found->name, *found->value);
  }
  if (channel != 0) {
    if ((channel - 1 == DrumChannel) != part.drums)
      complain(line, "Channel 10 is the drums', and no other is.");
    part.channel = channel - 1;
  }
  song().parts.push_back(std::move(part));
}

void Reader::readForm(const std::vector<std::string>& words, int line) {
  if (!form_.empty()) return complain(line, "The form stands there twice.");
  form_.assign(words.begin() + 1, words.end());
  formLine_ = line;
  if (form_.size() > MostSections)
    complain(line, "A form has at most " + std::to_string(MostSections) + " sections.");
}

void Reader::giveChannels() {
  std::vector<const Part*> taken(Channels);
  for (const Part& part : song().parts) {
    if (part.channel < 0) continue;
    const Part*& owner = taken[static_cast<size_t>(part.channel)];
    if (owner)
      complain(part.line, "The parts " + owner->name + " and " + part.name + " both have channel " +
                              std::to_string(part.channel + 1) + ".");
    owner = &part;
  }
  for (Part& part : song().parts) {
    for (int channel = 0; part.channel < 0 && channel < Channels; ++channel)
      if (channel != DrumChannel && !taken[static_cast<size_t>(channel)]) part.channel = channel;
    if (part.channel < 0) {
      complain(part.line, "No channel is left for " + part.name + ": fifteen parts and the drums.");
      part.channel = 0;
      continue;
    }
    taken[static_cast<size_t>(part.channel)] = &part;
  }
}

void Reader::finish() {
  if (song().parts.empty()) complain(0, "The song has no part.");
  if (sections_.empty()) complain(0, "The song has no section; a line [A] begins one.");
  giveChannels();
  for (size_t index = 0; index < sections_.size(); ++index) {
    Section& section = *sections_[index];
    const int last = index + 1 < sections_.size() ? sections_[index + 1]->line - 1 : lastLine_;
    if (section.like) section.bars = section.like->bars;
    for (auto& [name, phrase] : section.phrases) {
      phrase->finish(last);
      section.bars = std::max(section.bars, phrase->bars().size());
    }
    for (auto& [name, phrase] : section.phrases)
      if (phrase->bars().size() != section.bars)
        complain(section.line, "In section " + section.name + " the part " + name + " has " +
                                   std::to_string(phrase->bars().size()) + " bars of " +
                                   std::to_string(section.bars) + ".");
  }
  if (!result_.problems.empty()) return;

  if (form_.empty())
    for (const auto& section : sections_)
      form_.push_back(section->name);
  for (const std::string& name : form_) {
    const auto found = std::find_if(sections_.begin(), sections_.end(),
                                    [&](const auto& section) { return section->name == name; });
    if (found == sections_.end()) {
      complain(formLine_, "The form names the section " + name + ", which is not there.");
      continue;
    }
    play(**found);
  }
  if (tooMany_)
    complain(0, "The song is too long: at most " + std::to_string(MostBars) + " bars and " +
                    std::to_string(MostNotes) + " notes.");
  if (noteCount_ == 0) complain(0, "The song has no note.");
  // The player repeats the whole file and stops no note by itself: all end before the end.
  constexpr uint32_t Breath = TicksPerQuarter / 16;
  for (Part& part : song().parts)
    for (Note& note : part.notes)
      note.length = std::min(note.length, song().length - Breath - note.tick);
}

void Reader::play(const Section& section) {
  const uint32_t start = song().length, bars = start / song().barTicks();
  if (tooMany_ || bars + section.bars > MostBars) {
    tooMany_ = true;
    return;
  }
  if (start == 0) tempo_ = song().tempi.front().beatsPerMinute;
  const int tempo = section.tempo.value_or(tempo_);
  if (start == 0)
    song().tempi.front().beatsPerMinute = tempo;
  else if (song().tempi.back().beatsPerMinute != tempo)
    song().tempi.push_back({start, tempo});
  for (Part& part : song().parts)
    if (const Phrase* const phrase = section.phraseOf(part.name)) playBars(part, *phrase, start);
  song().length += static_cast<uint32_t>(section.bars) * song().barTicks();
}

void Reader::playBars(Part& part, const Phrase& phrase, uint32_t start) {
  constexpr int Accent = 16;
  constexpr uint32_t StaccatoPercent = 45, DrumTicks = TicksPerQuarter / 8;
  // Of the notes that sound last: where they stand, and their written length.
  size_t from = part.notes.size(), count = 0;
  uint32_t written = 0;
  bool staccato = false;
  const auto sounding = [&](uint32_t length) {
    if (part.drums) return std::min(DrumTicks, length);
    const uint32_t percent = staccato ? StaccatoPercent : static_cast<uint32_t>(part.gate);
    return std::max(length * percent / 100, 1u);
  };
  for (size_t bar = 0; bar < phrase.bars().size(); ++bar) {
    for (const Item& item : phrase.bars()[bar].items) {
      const uint32_t tick = start + static_cast<uint32_t>(bar) * song().barTicks() + item.offset;
      if (item.held) {
        written += item.length;
        for (size_t note = from; note < from + count; ++note)
          part.notes[note].length = sounding(written);
        continue;
      }
      from = part.notes.size();
      count = item.keys.size();
      written = item.length;
      staccato = item.staccato;
      if ((noteCount_ += count) > MostNotes) {
        tooMany_ = true;
        return;
      }
      const int velocity = std::min(item.velocity + (item.accent ? Accent : 0), 127);
      for (const int key : item.keys)
        part.notes.push_back(
            {tick, sounding(written), static_cast<uint8_t>(key), static_cast<uint8_t>(velocity)});
    }
  }
}

}  // namespace

ReadSong readSong(std::string_view text) {
  return Reader().read(text);
}

}  // namespace qv::song
