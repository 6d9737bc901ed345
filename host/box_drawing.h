#pragma once

/// The few shapes that boxes are drawn with, and their colours. Everything is clipped to the
/// canvas. Texts are Shift-JIS.

#include <string>
#include <string_view>
#include <vector>

#include "host/floating_box.h"

namespace qv {

namespace box_look {

inline constexpr uint32_t Face = 0xE9E4DA, Light = 0xFFFDF8, Shade = 0x9A9284, Edge = 0x4C463C,
                          Ink = 0x2A2620, FaintInk = 0x8C8474, Field = 0xFFFEFA, BarLeft = 0x2C4A66,
                          BarRight = 0x6E93A8, BarInk = 0xFFFFFF, ChosenBack = 0x3D6482,
                          ChosenInk = 0xFFFFFF;
inline constexpr TextStyle BodyText{FontFace::Gothic, 16};

inline constexpr int FrameWidth = 3;
inline constexpr int CaptionHeight = 24;
inline constexpr int Margin = 14;  ///< round the inside and the buttons
inline constexpr int ButtonHeight = 26, ButtonWidth = 104, ButtonGap = 10;

}  // namespace box_look

/// Pixels 0x00RRGGBB, top row first, without padding: the game screen, or a window's own.
struct Canvas {
  Canvas(Frame& frame)  // NOLINT: a frame is one
      : pixels(frame.data()), width(ScreenWidth), height(ScreenHeight) {}
  Canvas(std::vector<uint32_t>& window, int windowWidth, int windowHeight)
      : pixels(window.data()), width(windowWidth), height(windowHeight) {}
  BoxRect bounds() const { return {0, 0, width, height}; }

  uint32_t* pixels;
  int width, height;
};

void fillRect(const Canvas& canvas, const BoxRect& rect, uint32_t colour);
/// A line of one pixel along the inner edge: left and top in one colour, right and bottom in
/// another.
void edgeRect(const Canvas& canvas, const BoxRect& rect, uint32_t leftTop, uint32_t rightBottom);
/// A bar whose colour runs from left to right.
void gradientRect(const Canvas& canvas, const BoxRect& rect, uint32_t left, uint32_t right);
/// Every second pixel along the inner edge.
void dottedRect(const Canvas& canvas, const BoxRect& rect, uint32_t colour);
void fillDisc(const Canvas& canvas, const BoxRect& around, uint32_t colour);
/// A raised frame with a caption bar along its top: what boxes and frame windows stand in.
void drawRaisedFrame(const Canvas& canvas, TextRenderer* text, const BoxRect& outer,
                     std::string_view caption);
/// Draws a run with its cell's corner at x, y, clipped to `clip`.
void drawRun(const Canvas& canvas, TextRenderer& text, const BoxRect& clip, int x, int y,
             const TextStyle& style, std::string_view run, uint32_t colour);
/// The run, or its start with "..." where it is wider.
std::string shortened(TextRenderer& text, const TextStyle& style, std::string_view run,
                      int widthPixels);

}  // namespace qv
