#pragma once

/// The few shapes that boxes are drawn with, and their colours. Everything is clipped to the game
/// screen. Texts are Shift-JIS.

#include <string>
#include <string_view>

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

void fillRect(Frame& frame, const BoxRect& rect, uint32_t colour);
/// A line of one pixel along the inner edge: left and top in one colour, right and bottom in
/// another.
void edgeRect(Frame& frame, const BoxRect& rect, uint32_t leftTop, uint32_t rightBottom);
/// A bar whose colour runs from left to right.
void gradientRect(Frame& frame, const BoxRect& rect, uint32_t left, uint32_t right);
/// Every second pixel along the inner edge.
void dottedRect(Frame& frame, const BoxRect& rect, uint32_t colour);
void fillDisc(Frame& frame, const BoxRect& around, uint32_t colour);
/// Draws a run with its cell's corner at x, y, clipped to `clip`.
void drawRun(Frame& frame, TextRenderer& text, const BoxRect& clip, int x, int y,
             const TextStyle& style, std::string_view run, uint32_t colour);
/// The run, or its start with "..." where it is wider.
std::string shortened(TextRenderer& text, const TextStyle& style, std::string_view run,
                      int widthPixels);

}  // namespace qv
