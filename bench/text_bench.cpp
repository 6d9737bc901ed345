// What a line of text costs: sixty Japanese characters onto a surface of 8 bits, beside Pango with
// Cairo onto a picture of 8 bits, both with the fonts' glyphs known already and without smoothing.
// A line is new to Pango each time, as each line of a story is; its layout and its picture stay.

#include <array>
#include <cstring>
#include <string>

#include <pango/pangocairo.h>

#include "bench/ground.h"
#include "bench/ratio.h"
#include "graphics/surface.h"
#include "message/print_area.h"
#include "platform/text/shift_jis.h"
#include "platform/text/text_renderer.h"

namespace {

using namespace qv;

constexpr int32_t Width = 1200, Height = 40, CellHeight = 18;
constexpr int Rounds = 51;
constexpr size_t Characters = 60;
constexpr ColourRef White = 0xFFFFFF, Black = 0;

/// Four lines of sixty characters, so that nobody draws the same one twice in a row.
constexpr std::array<const char*, 4> Lines = {
    "雨の降る午後の図書室は静かで、彼女は窓ぎわの席に座り、古い本のページをゆっくりとめくっていた。"
    "ぼくはその横顔を、声もかけ",
    "放課後の廊下に夕日がさしこみ、だれもいない教室の机が長い影をのばしている。遠くで吹奏楽部の音合"
    "わせが聞こえ、やがてそれも",
    "駅前の小さな喫茶店で、二人は向かい合って座った。注文した紅茶が冷めるまで、どちらも話しはじめよ"
    "うとはせず、ただ時計の針が",
    "あの夏の日に交わした約束を、いまでもときどき思い出す。海からの風、砂の熱さ、それから君が最後に"
    "言った言葉。それはこういう"};

/// The line of a round, so that both draw the same ones.
class Turns {
 public:
  const std::string& next() { return lines_[turn_++ % lines_.size()]; }
  explicit Turns(bool shiftJis) {
    for (size_t i = 0; i < Lines.size(); ++i) {
      lines_[i] = shiftJis ? sjis(Lines[i]) : std::string(Lines[i]);
      if (sjis(Lines[i]).size() != 2 * Characters) std::abort();
    }
  }

 private:
  std::array<std::string, Lines.size()> lines_;
  size_t turn_ = 0;
};

class PangoLine {
 public:
  PangoLine() {
    cairo_ = cairo_create(picture_);
    cairo_set_operator(cairo_, CAIRO_OPERATOR_OVER);
    layout_ = pango_cairo_create_layout(cairo_);
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_NONE);
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_FULL);
    pango_cairo_context_set_font_options(pango_layout_get_context(layout_), options);
    cairo_font_options_destroy(options);
    PangoFontDescription* font = pango_font_description_from_string("IPAPMincho");
    pango_font_description_set_absolute_size(font, CellHeight * PANGO_SCALE);
    pango_layout_set_font_description(layout_, font);
    pango_font_description_free(font);
  }
  ~PangoLine() {
    g_object_unref(layout_);
    cairo_destroy(cairo_);
    cairo_surface_destroy(picture_);
  }
  PangoLine(const PangoLine&) = delete;
  PangoLine& operator=(const PangoLine&) = delete;

  void draw(const std::string& utf8) {
    pango_layout_set_text(layout_, utf8.data(), static_cast<int>(utf8.size()));
    show();
  }
  /// The line that was laid out last.
  void show() {
    cairo_move_to(cairo_, 2, 2);
    pango_cairo_show_layout(cairo_, layout_);
  }
  int ink() {
    cairo_surface_flush(picture_);
    int count = 0;
    for (int i = 0; i < cairo_image_surface_get_stride(picture_) * Height; ++i)
      count += cairo_image_surface_get_data(picture_)[i] != 0;
    return count;
  }

 private:
  cairo_surface_t* picture_ = cairo_image_surface_create(CAIRO_FORMAT_A8, Width, Height);
  cairo_t* cairo_ = nullptr;
  PangoLayout* layout_ = nullptr;
};

template <class Work>
auto often(int times, Work work) {
  return [times, work] {
    for (int i = 0; i < times; ++i)
      work();
  };
}

/// Each side runs as often as takes some milliseconds; the ratio is of one line each.
bench::Pair perLine(int ourTimes, const std::function<void()>& ours, int theirTimes,
                    const std::function<void()>& theirs) {
  bench::Pair pair = bench::measure(often(ourTimes, ours), often(theirTimes, theirs), Rounds,
                                    bench::threadSecondsOf);
  pair.ours /= ourTimes;
  pair.theirs /= theirTimes;
  return pair;
}

}  // namespace

int main() {
  bench::Table table;
  const bench::Ground ground;
  TextRenderer text;
  Services all = services();
  all.text = &text;
  const ServicesScope scope(all);
  if (!text.hasFont(FontFace::ProportionalMincho)) {
    std::fprintf(stderr, "The fonts are not installed; there is nothing to compare.\n");
    return 2;
  }

  QVVSurface surface;
  surface.create(Width, Height);
  TextDevice& device = systemTextDevice();
  const TextStyle style = {FontFace::ProportionalMincho, CellHeight};
  Turns ours(true), theirs(false);
  PangoLine pango;
  const auto plain = [&] { device.draw({{&surface, nullptr}, 2, 2, style, ours.next()}, White); };
  const auto outlined = [&] {
    device.drawOutlined({{&surface, nullptr}, 2, 2, style, ours.next()}, White, Black);
  };
  QVPrintArea area;
  area.setSurface(&surface);
  area.setRect(0, 0, Width, Height);
  area.setColour(White, 0);
  area.setColour(Black, 1);
  area.setFont(CellHeight, 500, 0, TextFont::VariablePitch, 128, sjis("ＭＳ Ｐ明朝").c_str());
  area.setFlags(QVPrintArea::FlagHomeAfterPrint);
  const auto printed = [&] { area.printText(ours.next().c_str()); };

  constexpr int OurTimes = 2000, TheirTimes = 40;
  const bench::Pair line = perLine(OurTimes, plain, TheirTimes, [&] { pango.draw(theirs.next()); });
  table.fasterBy("a line of 60 characters / Pango with Cairo", 20, line);
  table.note("  ours, microseconds", line.ours * 1e6);
  table.note("  Pango with Cairo, microseconds", line.theirs * 1e6);
  const bench::Pair shown = perLine(OurTimes, plain, TheirTimes, [&] { pango.show(); });
  table.note("  the same, laid out before: times as fast", shown.theirs / shown.ours);
  table.atMost("outlined line / plain line", 4,
               bench::measure(often(OurTimes, outlined), often(OurTimes, plain), Rounds,
                              bench::threadSecondsOf));
  const bench::Pair whole =
      perLine(OurTimes, printed, TheirTimes, [&] { pango.draw(theirs.next()); });
  table.note("printText, measured and laid out: times as fast", whole.theirs / whole.ours);
  table.note("  ours, microseconds", whole.ours * 1e6);

  // A glyph's first use: a renderer that knows none yet, with its font open.
  constexpr int Fresh = 20;
  double first = 0;
  for (int i = 0; i < Fresh; ++i) {
    TextRenderer fresh;
    fresh.measure(style, sjis("永"));
    first += bench::threadSecondsOf([&] { fresh.measure(style, ours.next()); });
  }
  table.note("a line of unknown glyphs, microseconds", first / Fresh * 1e6);
  if (pango.ink() == 0 || surface.pixel(0, 0) != 0) {
    std::fprintf(stderr, "Nobody drew anything.\n");
    return 2;
  }
  return table.status();
}
