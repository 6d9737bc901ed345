#pragma once

/// The sixteen patterns of 4 by 4 cells by which a picture of 256 colours is mixed with another.
/// Pattern k has exactly k set cells; a set cell takes the source's pixel.

namespace qv {

inline constexpr int DitherLevels = 16;

/// By level and row, from the top; 'X' is a set cell. Level 0 is here so that the index is the
/// level: no caller uses it.
inline constexpr const char* DitherCells[DitherLevels][4] = {
    {"....", "....", "....", "...."},  //
    {"X...", "....", "....", "...."},  //
    {"X...", "....", "..X.", "...."},  //
    {"X.X.", "....", "..X.", "...."},  //
    {"X.X.", "....", "X.X.", "...."},  //
    {"X.X.", ".X..", "X.X.", "...."},  //
    {"X.X.", ".X..", "X.X.", "...X"},  //
    {"X.X.", ".X.X", "X.X.", ".X.."},  //
    {"X.X.", ".X.X", "X.X.", ".X.X"},  //
    {"X.XX", ".X.X", "X.X.", ".X.X"},  //
    {"X.XX", ".X.X", "XXX.", ".X.X"},  //
    {"X.XX", ".X.X", "XXXX", ".X.X"},  //
    {"XXXX", ".X.X", "XXXX", ".X.X"},  //
    {"XXXX", ".XXX", "XXXX", ".X.X"},  //
    {"XXXX", ".XXX", "XXXX", "XX.X"},  //
    {"XXXX", "XXXX", "XXXX", "XX.X"},  //
};

}  // namespace qv
