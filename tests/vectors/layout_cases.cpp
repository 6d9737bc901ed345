#include "graphics/surface.h"
#include "message/no_line_start.h"
#include "message/print_area.h"
#include "tests/support/fixed_text_device.h"
#include "tests/vectors/case.h"

namespace qv::vectors {
namespace {

constexpr int32_t TargetWidth = 640, TargetHeight = 480;

/// An area on a surface as its case describes it.
class AreaOfCase {
 public:
  explicit AreaOfCase(Case& given) : platform_(given.platform()) {
    surface_.create(TargetWidth, TargetHeight);
    area_.setTextDevice(device_);
    area_.setSurface(&surface_);
    const Json& rect = given["rect"];
    const int32_t left = rect.at(0), top = rect.at(1), right = rect.at(2), bottom = rect.at(3);
    area_.setRect(left, top, right - left, bottom - top);
    if (given.has("line_height")) area_.setLineHeight(given.int32("line_height"));
    if (given.has("indent_left")) area_.setIndent(given.int32("indent_left"), 0);
    if (given.has("indent_right")) area_.setIndent(given.int32("indent_right"), 1);
    if (given.has("flags")) area_.setFlags(given.uint32("flags"));
    if (given.has("no_line_start")) area_.setNoLineStart(noLineStart(given).c_str());
  }

  QVPrintArea& area() { return area_; }
  const Json& runs() const { return device_.runs; }
  Json reports() const {
    Json texts = Json::array();
    for (const testing::ShownBox& box : platform_.dialogs.shown)
      texts.push_back(hexOfBytes(box.text));
    return texts;
  }
  Json pen() const { return {area_.position().x, area_.position().y}; }

 private:
  /// Writes down each run with the pages before it; an outlined one counts once.
  class Device : public testing::FixedTextDevice {
   public:
    explicit Device(const QVPrintArea& area) : area_(area) {}
    void draw(const TextRun& run, ColourRef) override {
      runs.push_back({area_.fullPages(), run.x, run.y, hexOfBytes(run.text)});
    }
    void drawOutlined(const TextRun& run, ColourRef colour, ColourRef) override {
      draw(run, colour);
    }
    Json runs = Json::array();

   private:
    const QVPrintArea& area_;
  };

  static std::string noLineStart(Case& given) {
    const std::string which = given.ascii("no_line_start");
    if (which == "short") return shortNoLineStart();
    return which == "long" ? longNoLineStart() : std::string();
  }

  testing::TestPlatform& platform_;
  QVVSurface surface_;
  QVPrintArea area_;
  Device device_{area_};
};

void printText(Case& given) {
  AreaOfCase on(given);
  on.area().setPosition(given["position"].at(0), given["position"].at(1));
  on.area().printText(given.bytes("text").c_str());
  expectEqual("runs", on.runs(), given["runs"]);
  expectEqual("pages_cleared", on.area().fullPages(), given["pages_cleared"]);
  expectEqual("pen", on.pen(), given["pen"]);
  expectEqual("reports", on.reports(), given["reports"]);
}

void noLineStart(Case& given) {
  given.expectBytes("short", shortNoLineStart());
  given.expectBytes("long", longNoLineStart());
}

/// An area with FlagOutline on a device that draws an outline as it is told.
void outlineOrder(Case& given) {
  given.platform();
  constexpr ColourRef TextColour = 1, OutlineColour = 2;
  testing::FixedTextDevice device;
  QVVSurface surface;
  surface.create(TargetWidth, TargetHeight);
  QVPrintArea area;
  area.setTextDevice(device);
  area.setSurface(&surface);
  area.setRect(0, 0, TargetWidth, TargetHeight);
  area.setFlags(QVPrintArea::FlagOutline);
  area.setColour(TextColour, 0);
  area.setColour(OutlineColour, 1);
  area.setPosition(100, 100);
  area.printText("a");
  Json calls = Json::array();
  for (const testing::DrawnRun& run : device.drawn)
    calls.push_back({run.x - 100, run.y - 100, run.colour == TextColour ? "text" : "outline"});
  expectEqual("calls", calls, given["calls"]);
}

void home(Case& given) {
  AreaOfCase on(given);
  on.area().home();
  expectEqual("pen", on.pen(), given["pen"]);
}

void setPosition(Case& given) {
  AreaOfCase on(given);
  on.area().setPosition(given.int32("x"), given.int32("y"));
  expectEqual("pen", on.pen(), given["pen"]);
  expectEqual("report", !on.reports().empty(), given["report"]);
}

constexpr Kind Kinds[] = {{"home", home},
                          {"no_line_start", noLineStart},
                          {"outline_order", outlineOrder},
                          {"print_text", printText},
                          {"set_position", setPosition}};

}  // namespace

std::span<const Kind> layoutKinds() {
  return Kinds;
}

}  // namespace qv::vectors
