#pragma once

/// Virtual key codes of the classic platform: what scenes compare with (as 2048 + code).

namespace qv {

inline constexpr int KeyBack = 8, KeyTab = 9, KeyReturn = 13, KeyShift = 16, KeyControl = 17,
                     KeyAlt = 18, KeyEscape = 27, KeySpace = 32, KeyPageUp = 33, KeyPageDown = 34,
                     KeyEnd = 35, KeyHome = 36, KeyLeft = 37, KeyUp = 38, KeyRight = 39,
                     KeyDown = 40, KeyInsert = 45, KeyDelete = 46;
inline constexpr int Key0 = 48;     ///< to Key0 + 9
inline constexpr int KeyA = 65;     ///< to KeyA + 25
inline constexpr int KeyNum0 = 96;  ///< to KeyNum0 + 9
inline constexpr int KeyF1 = 112;   ///< to KeyF1 + 11

}  // namespace qv
