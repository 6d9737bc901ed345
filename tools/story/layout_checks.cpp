// Texts in their areas. The areas are the engine's own, shaped as the start-up shapes them; only
// the drawing is left out.

#include "graphics/surface.h"
#include "message/area_forms.h"
#include "message/speakers.h"
#include "message/text_areas.h"
#include "platform/text/shift_jis.h"
#include "scenes/generator/story_rows.h"
#include "tools/story/story_checks.h"

namespace qv::story {

using scenec::Act;
using scenec::Place;
using scenec::Problems;
using scenec::Scene;
using scenec::Story;

namespace {

constexpr int32_t FaceWidth = 640, FaceHeight = 127;
/// Names and messages have the same room in both presentations: one stands for both.
constexpr bool InDrama = false;

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

 private:
  void take(const TextRun& run) { bytes += run.text.size(); }
  TextDevice& widths_;
};

struct Printed {
  bool overflows = false;  ///< a page was full
  bool isCut = false;      ///< not all of it was drawn
};

class LayoutCheck {
 public:
  LayoutCheck(const Story& story, TextDevice& widths, Problems& problems)
      : story_(story), widths_(widths), problems_(problems) {
    face_.create(FaceWidth, FaceHeight);
  }

  void names() {
    for (const scenec::SpeakerData& speaker : story_.speakerData) {
      std::string shown =
          speaker.shown.empty() ? scenec::withoutTrueName(speaker.tag) : speaker.shown;
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
  /// `place` puts the area where a line has it; null leaves it as its form says.
  Printed print(const AreaForm& form, const std::string& utf8,
                void (*place)(QVPrintArea&) = nullptr) {
    MeasuringDevice device(widths_);
    QVPrintArea area;
    area.setTextDevice(device);
    area.setSurface(&face_);
    shapeArea(area, form);
    if (place) place(area);
    const uint32_t before = area.fullPages();
    const std::string text = withHeroNames(sjis(utf8.c_str()), sjis(story_.familyName.c_str()),
                                           sjis(story_.givenName.c_str()));
    area.printText(text.c_str());
    return {area.fullPages() != before, device.bytes < text.size()};
  }

  static void placeMessage(QVPrintArea& area) {
    LineAreas areas;
    areas.name = nullptr;
    areas.message = &area;
    areas.place(InDrama);
    areas.home();
  }
  static void placeName(QVPrintArea& area) {
    LineAreas areas;
    areas.message = nullptr;
    areas.name = &area;
    areas.place(InDrama);
    areas.home();
  }

  void name(const std::string& text, Place place) {
    if (print(NameAreaForm, text, placeName).isCut)
      problems_.add(place, "the name " + text +
                               " is wider than the frame's line and would be cut; shorten it.");
  }

  void message(const Act& act) {
    std::string text;
    for (const std::string& line : act.lines)
      text += (text.empty() ? "" : "\n") + line;
    messageText(text, act.place);
  }

  void messageText(const std::string& text, Place place) {
    if (print(MessageAreaForm, text, placeMessage).overflows)
      problems_.add(place,
                    "this message is longer than the frame, and its beginning would scroll away "
                    "unread; make two of it.");
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
