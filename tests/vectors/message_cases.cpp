#include "message/history.h"
#include "message/line_voice.h"
#include "message/pending_text.h"
#include "message/speakers.h"
#include "scenario/register_numbers.h"
#include "tests/vectors/case.h"
#include "tests/vectors/manager.h"

namespace qv::vectors {
namespace {

void voiceSwitch(Case& given) {
  for (const Json& row : given["rows"])
    expectEqual("switch of class " + row[0].dump(), voiceSwitchOf(row[0].get<int32_t>()), row[1]);
}

void speakerTag(Case& given) {
  const Speaker speaker = speakerOf(given.bytes("tag"), given.bytes("given"));
  expectSameBytes("stored", speaker.shown, given.bytes("stored"));
  if (given["printed"].is_null())
    expectEqual("printed", speaker.printed.has_value(), false);
  else
    expectSameBytes("printed", speaker.printed.value_or(""), given.bytes("printed"));
  expectEqual("ends", speaker.ends, given["ends"]);
  if (!given["speaker_class"].is_null())
    expectEqual("class", speaker.speakerClass, given["speaker_class"]);
}

void heroNames(Case& given) {
  expectSameBytes("text",
                  withHeroNames(given.bytes("text"), given.bytes("family"), given.bytes("given")),
                  given.bytes("expect"));
}

void speakLine(Case& given) {
  const int32_t speakerClass = given.int32("speaker_class");
  MouthSlots slots;
  for (size_t k = 0; k < slots.size(); ++k)
    slots[k] = {given["slots"][k][0].get<int32_t>(), given["slots"][k][1].get<int32_t>()};
  const LineVoice line = voiceOfLine(speakerClass,
                                     {.hasVoice = given.integer("voice") != 0,
                                      .hasSwitch = voiceSwitchOf(speakerClass) != 0,
                                      .switchedOn = given.integer("voice_switch") == 1,
                                      .voiceEnabled = given.integer("voice_enabled") != 0,
                                      .skip = given.integer("skip") != 0},
                                     slots);
  const bool moves = line.mouthSlot != NoMouthSlot;
  const Json area = moves ? Json("CG_AREA0" + std::to_string(line.mouthSlot) + "_MOUTH") : Json();
  expectEqual("plays", line.plays, given["plays"]);
  expectEqual("area", line.plays ? area : Json(), given["area"]);
  expectEqual("mouth_started", line.plays ? Json() : area, given["mouth_started"]);
  expectEqual("mouth_register", !line.plays && moves ? line.mouthSlot : NoMouthRuns,
              given["mouth_register"]);
  expectEqual("r68", line.speakerOnScreen ? 1 : 0, given["r68"]);
  expectEqual("r69_set", line.plays, given["r69_set"]);
}

void printPending(Case& given) {
  Registers registers(given);
  registers.set(HeroFamilyName, given["family"]);
  registers.set(HeroGivenName, given["given"]);
  Json printed = Json::array(), log = Json::array();
  for (const Json& entry : given["script"]) {
    const std::string what = entry[0];
    if (what == "speak") {
      registers.set(SpeakerName, entry[1]);
      registers.set(MessageAccumulator, "");
    } else if (what == "print") {
      appendPending(bytesOfHex(entry[1].get<std::string>()).c_str());
    } else if (what == "names") {
      registers.set(HeroFamilyName, entry[1]);
      registers.set(HeroGivenName, entry[2]);
    } else if (const auto text = takePending()) {
      printed.push_back(hexOfBytes(*text));
    }
    log.push_back(
        {hexOfBytes(registers.text(MessageAccumulator)), hexOfBytes(registers.text(MessagePending)),
         hexOfBytes(registers.text(MessageLast)), printed.size(), registers.historyLines()});
  }
  expectEqual("log", log, given["log"]);
  expectEqual("printed", printed, given["printed"]);
  for (size_t line = 0; line < given["names"].size(); ++line) {
    const auto entry = static_cast<int32_t>(line);
    expectEqual("name", hexOfBytes(registers.text(HistoryNames + entry)), given["names"][line]);
    expectEqual("message", hexOfBytes(registers.text(HistoryMessages + entry)),
                given["messages"][line]);
  }
}

std::string joined(Registers& registers, int32_t first) {
  std::string all;
  for (int32_t entry = 0; entry < HistoryLength; ++entry)
    all += (entry ? std::string(1, '\0') : std::string()) + registers.text(first + entry);
  return all;
}

std::string digest(const std::string& bytes) {
  char text[17];
  std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(fnv64(bytes)));
  return text;
}

void addHistory(Case& given) {
  Registers registers(given);
  for (const Json& pair : given["pairs"]) {
    registers.set(SpeakerName, pair[0]);
    AddHistory(bytesOfHex(pair[1].get<std::string>()).c_str());
  }
  for (size_t k = 0; k < given["probe"].size(); ++k) {
    const int32_t entry = given["probe"][k].get<int32_t>();
    expectEqual("name", hexOfBytes(registers.text(HistoryNames + entry)), given["names"][k]);
    expectEqual("message", hexOfBytes(registers.text(HistoryMessages + entry)),
                given["messages"][k]);
  }
  expectEqual("names", digest(joined(registers, HistoryNames)), given["names_fnv64"]);
  expectEqual("messages", digest(joined(registers, HistoryMessages)), given["messages_fnv64"]);
}

constexpr Kind Kinds[] = {
    {"add_history", addHistory}, {"hero_names", heroNames},   {"print_pending", printPending},
    {"speak_line", speakLine},   {"speaker_tag", speakerTag}, {"voice_switch", voiceSwitch},
};

}  // namespace

std::span<const Kind> messageKinds() {
  return Kinds;
}

}  // namespace qv::vectors
