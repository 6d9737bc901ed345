#include "scenes/generator/vocabulary.h"

#include <algorithm>

#include "scenario/register_numbers.h"

namespace qv::scenec {

namespace {

using enum ArgumentKind;

constexpr long Most = 999'999'999;
constexpr long LongestTime = 9998;  // 9999 means no limit and is said with a word

Argument text(const char* name) {
  return {.name = name};
}
Argument count(const char* name, long low, long high, const char* fallback = nullptr) {
  return {.name = name, .kind = Number, .low = low, .high = high, .fallback = fallback};
}
Argument picture(ArgumentKind kind) {
  return {.name = "PICTURE", .kind = kind};
}
Argument slot() {
  return {.name = "SLOT", .kind = Number, .low = 1, .high = 5};
}
Argument chapter() {
  return {.name = "CHAPTER", .kind = Number, .low = 0, .high = 99};
}
Argument form() {
  return {.name = "FORM", .kind = Number, .low = 0, .high = 1};
}
Argument millis(const char* name) {
  return {.name = name, .kind = Number, .low = 0, .high = Most};
}

const char* const SongWords = "fadeout=\"FADEOUT\" stop=nullptr";

std::vector<CommandForm> makeForms() {
  return {
      // Pictures.
      {"bg", "BgCommand($1);", {picture(Background)}},
      {"event", "EventCommand($1);", {picture(Event)}},
      {"title", "TitleCommand($1);", {picture(Title)}},
      {"sprite", "SpriteCommand($1, $2);", {picture(Figure), slot()}},
      {"sprite-kzc", "SpriteCommandKZC($1, $2);", {picture(Figure), slot()}},
      {"sprite-kyc", "SpriteCommandKYC($1, $2);", {picture(Figure), slot()}},
      {"sprite-kxs", "SpriteCommandKXS($1, $2);", {picture(Figure), slot()}},
      {"clear",
       "ClearSprite($1);",
       {{.name = "SLOT|all", .kind = Number, .low = 1, .high = 5, .words = "all=0"}}},
      {"effect",
       "EffectCommand($1, $2, EffectConstant);",
       {count("NUMBER", 0, 999), count("FRAMES", 1, 999, "16")}},
      {"fade", "FadeToBlack($1);", {count("STEPS", 1, 256, "16")}},
      {"fade-fast", "FadeScreenFast($1);", {count("STEPS", 1, 256)}},
      {"draw",
       "DrawFile($1, $2, 0, $3);",
       {text("FILE"), count("FRAMES", 1, 999), count("EFFECT", 0, 999)}},
      {"quake",
       "QuakeEffect($1, $2, $3, $4);",
       {count("DX", -640, 640), count("DY", -480, 480), count("ROUNDS", 0, 9999),
        count("EXTRA", -Most, Most, "0")}},
      {"flash-red", "FlashRed($1);", {count("COUNT", 0, 9999)}},
      {"special", "SpecialEffect($1);", {count("CODE", 0, Most)}},
      {"flashback", "FlashbackTint();", {}},
      {"flashback-end", "FlashbackEnd();", {}},
      {"chapter-preview", "ChapterPreview($1, $2);", {chapter(), form()}},
      {"chapter-catch", "ChapterCatch($1, $2);", {chapter(), form()}},
      {"chapter-cards", "ChapterCards($1, $2);", {chapter(), form()}},
      {"picture-run", "PictureRunFirst();", {}},
      // Sound.
      {"bgm",
       "PlayBgm($1, $2);",
       {{.name = "SONG|fadeout|stop", .kind = Song, .words = SongWords},
        {.name = "fadein",
         .kind = Number,
         .low = 1,
         .words = "fadein=\"FADEIN\"",
         .fallback = "nullptr"}}},
      {"se",
       "PlaySe($1, $2);",
       {{.name = "SOUND|stop", .kind = Effect, .words = "stop=nullptr"},
        {.name = "once|loop",
         .kind = Number,
         .low = 1,
         .words = "once=1 loop=0",
         .fallback = "1"}}},
      {"stop-se", "StopSe();", {}},
      {"wait-se",
       "WaitSe($1);",
       {{.name = "TIME|click", .kind = Time, .low = 1, .high = LongestTime, .words = "click=0"}}},
      {"wave", "PlayWave($1, 1, 1, $2);", {text("FILE"), {.name = "AREA", .fallback = "nullptr"}}},
      {"wait",
       "WaitSound($1);",
       {{.name = "TIME|song|sound",
         .kind = Time,
         .low = 1,
         .high = LongestTime,
         .words = "song=WaitForSong sound=WaitForWave"}}},
      // Windows and screens.
      {"hide-message", "HideMessageWindow();", {}},
      {"hide-system", "HideSystemWindow();", {}},
      {"show-system", "ShowSystemWindow();", {}},
      {"calendar", "ShowCalendar($1, $2);", {count("MONTH", 1, 12), count("DAY", 1, 31)}},
      {"ask-save", "AskSaveBeforeLeaving();", {}},
      {"text",
       "AreaText(standing.$1, $2, 0);",
       {{.name = "AREA", .kind = Area}, {.name = "TEXT", .kind = Rest}}},
      // State.
      {"flag", "Reg($1) = 1;", {{.name = "REGISTER", .kind = Register}}, true},
      {"count", "++Reg($1);", {{.name = "REGISTER", .kind = Register}}, true},
      {"set",
       "Reg($1) = $2;",
       {{.name = "REGISTER", .kind = Register}, count("NUMBER", -Most, Most)},
       true},
      {"setting",
       "SetSysReg($1, $2, 1);",
       {count("NUMBER", 0, SystemRegisterCount - 1), count("VALUE", -Most, Most)},
       true},
      {"affection",
       "ChangeParameter($1, $2);",
       {{.name = "NAME", .kind = Heroine}, count("AMOUNT", -2000, 2000)},
       true},
      // Films.
      {"film", "playOpeningFilm(film);", {}, false, true},
      {"film-start",
       "film.Restart($1);",
       {{.name = "demo", .kind = Number, .low = 1, .words = "demo=1", .fallback = "0"}},
       false,
       true},
      {"film-cue", "cueFilm(film, $1, $2);", {millis("MILLIS"), millis("LIMIT")}, false, true},
      {"film-wait", "film.CueWait($1);", {millis("MILLIS")}, false, true},
  };
}

}  // namespace

const std::vector<CommandForm>& commandForms() {
  static const std::vector<CommandForm> forms = makeForms();
  return forms;
}

const CommandForm* findCommand(std::string_view name) {
  const std::vector<CommandForm>& forms = commandForms();
  const auto found = std::find_if(forms.begin(), forms.end(),
                                  [&](const CommandForm& entry) { return name == entry.name; });
  return found == forms.end() ? nullptr : &*found;
}

std::string usageOf(const CommandForm& entry) {
  std::string usage = std::string("@") + entry.name;
  for (const Argument& argument : entry.arguments) {
    usage += argument.fallback ? " [" : " ";
    usage += argument.name;
    if (argument.fallback) usage += "]";
  }
  return usage;
}

std::vector<std::string> allCommandNames() {
  std::vector<std::string> names{
      "scene",  "chain",  "handwritten", "when", "otherwise",  "if",         "else", "end",  "go",
      "choose", "places", "click",       "step", "save-point", "save-offer", "cpp",  "leave"};
  for (const CommandForm& entry : commandForms())
    names.emplace_back(entry.name);
  return names;
}

}  // namespace qv::scenec
