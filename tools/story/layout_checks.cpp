// Texts in their areas. The areas are the engine's own, shaped as the start-up shapes them; only
// the drawing is left out.

#include "graphics/surface.h"
#include "message/area_forms.h"
#include "message/text_areas.h"
#include "platform/text/shift_jis.h"
#include "scenes/generator/text.h"
#include "tools/story/story_checks.h"

namespace qv::story {

using scenec::Act;
using scenec::Place;
using scenec::Problems;
using scenec::Scene;
using scenec::Story;

namespace {

constexpr int32_t FaceWidth = 640, FaceHeight = 127;
constexpr const char *GivenNameMark = "＊＊＊", *FamilyNameMark = "※※※";
constexpr std::string_view TrueNameOpens = "《", TrueNameCloses = "》";

/// Another device's widths; what would be drawn is counted.
class MeasuringDevice : public TextDevice {
 public:
  explicit MeasuringDevice(TextDevice& widths) : widths_(widths) {}
  size_t fitBytes(const TextStyle& style, std::string_view text, int32_t width) override {
    return widths_.fitBytes(style, text, width);
  }
  int32_t measure(const TextStyle& style, std::string_view text) override {
    return widths_.measure(style, text);
  }
  void draw(const TextRun& run, ColourRef) override { take(run); }
  void drawOutlined(const TextRun& run, ColourRef, ColourRef) override { take(run); }

  size_t bytes = 0;  ///< of all runs
  int lines = 0;     ///< that begin a new height

 private:
  void take(const TextRun& run) {
    bytes += run.text.size();
    if (lines == 0 || run.y != lastY_) ++lines;
    lastY_ = run.y;
  }
  TextDevice& widths_;
  int32_t lastY_ = 0;
};

struct Printed {
  bool overflows = false;  ///< a page was full
  size_t bytes = 0;        ///< that were drawn
  int lines = 0;
};

void replaceAll(std::string& text, const std::string& from, const std::string& to) {
  for (size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
    text.replace(at, from.size(), to);
}

std::string withoutTrueName(std::string tag) {
  const size_t opens = tag.find(TrueNameOpens), closes = tag.find(TrueNameCloses);
  if (opens != std::string::npos && closes != std::string::npos && opens < closes)
    tag.erase(opens, closes + TrueNameCloses.size() - opens);
  return tag;
}

class LayoutCheck {
 public:
  LayoutCheck(const Story& story, TextDevice& widths, Problems& problems)
      : story_(story), widths_(widths), problems_(problems) {
    face_.create(FaceWidth, FaceHeight);
  }

  void names() {
    for (const scenec::SpeakerData& speaker : story_.speakerData) {
      std::string shown = speaker.shown.empty() ? withoutTrueName(speaker.tag) : speaker.shown;
      name(speaker.printed.empty() ? shown : speaker.printed, speaker.place);
    }
  }

  void read(const Scene& scene) {
    eachAct(scene, [&](const Act& act) {
      if (act.kind == Act::Kind::Message) message(act);
      if (act.kind == Act::Kind::Choose)
        for (size_t index = 0; index < act.options.size(); ++index)
          choice(index, act.options[index].text, act.options[index].place);
      if (act.command == "text" && act.arguments.size() == 2) area(act);
    });
  }

 private:
  std::string withNames(std::string text) const {
    replaceAll(text, GivenNameMark, story_.givenName);
    replaceAll(text, FamilyNameMark, story_.familyName);
    return text;
  }

  /// `place` puts the area where it stands in the presentation; null leaves it as its form says.
  Printed print(const AreaForm& form, const std::string& utf8,
                void (*place)(QVPrintArea&, bool drama) = nullptr, bool drama = false) {
    MeasuringDevice device(widths_);
    QVPrintArea area;
    area.setTextDevice(device);
    area.setSurface(&face_);
    shapeArea(area, form);
    if (place) place(area, drama);
    const uint32_t before = area.fullPages();
    area.printText(sjis(withNames(utf8).c_str()).c_str());
    return {area.fullPages() != before, device.bytes, device.lines};
  }

  static void placeMessage(QVPrintArea& area, bool drama) {
    LineAreas areas;
    areas.name = nullptr;
    areas.message = &area;
    areas.place(drama);
    areas.home();
  }
  static void placeName(QVPrintArea& area, bool drama) {
    LineAreas areas;
    areas.message = nullptr;
    areas.name = &area;
    areas.place(drama);
    areas.home();
  }

  void name(const std::string& text, Place place) {
    for (const bool drama : {false, true}) {
      const Printed printed = print(NameAreaForm, text, placeName, drama);
      if (printed.bytes >= sjis(withNames(text).c_str()).size()) continue;
      problems_.add(place, "the name " + text + " is wider than the frame's line and would be cut" +
                               (drama ? " in drama." : "; shorten it."));
      return;
    }
  }

  void message(const Act& act) {
    std::string text;
    for (const std::string& line : act.lines)
      text += (text.empty() ? "" : "\n") + line;
    messageText(text, act.place);
  }

  void messageText(const std::string& text, Place place) {
    for (const bool drama : {false, true}) {
      if (!print(MessageAreaForm, text, placeMessage, drama).overflows) continue;
      problems_.add(place, std::string("this message is longer than the frame") +
                               (drama ? " in drama" : "") +
                               ", and its beginning would scroll away unread; make two of it.");
      return;
    }
  }

  void choice(size_t index, const std::string& text, Place place) {
    if (index < std::size(TitleAreaForms) && print(TitleAreaForms[index], text).overflows)
      problems_.add(place, "the choice \"" + text + "\" has more than two lines; shorten it.");
  }

  void area(const Act& act) {
    const std::string& where = act.arguments[0];
    if (where == MessageAreaForm.name) return messageText(act.arguments[1], act.place);
    if (where == NameAreaForm.name) return name(act.arguments[1], act.place);
    for (size_t index = 0; index < std::size(TitleAreaForms); ++index)
      if (where == TitleAreaForms[index].name) choice(index, act.arguments[1], act.place);
  }

  const Story& story_;
  TextDevice& widths_;
  Problems& problems_;
  QVVSurface face_;
};

}  // namespace

void checkLayout(const Story& story, TextDevice& widths, Problems& problems) {
  LayoutCheck check(story, widths, problems);
  check.names();
  for (const Scene& scene : story.scenes)
    check.read(scene);
}

}  // namespace qv::story
