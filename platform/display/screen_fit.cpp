#include "platform/display/screen_fit.h"

#include <algorithm>
#include <cstdint>

namespace qv {

namespace {

/// The game's coordinate under an output coordinate, on one axis.
int toGameAxis(int output, int start, int length, int gameLength) {
  const int64_t inside = int64_t{output} - start;
  if (inside < 0) return 0;
  return static_cast<int>(std::min<int64_t>(inside * gameLength / length, gameLength - 1));
}

int toOutputAxis(int game, int start, int length, int gameLength) {
  const int64_t pixel = std::clamp(game, 0, gameLength - 1);
  // The first output coordinate of the game's pixel, then half of what it surely covers.
  const int64_t first = (pixel * length + gameLength - 1) / gameLength;
  const int64_t half = std::max(0, length / gameLength - 1) / 2;
  return static_cast<int>(start + first + half);
}

}  // namespace

ScreenPoint ScreenFit::toGame(int outputX, int outputY) const {
  return {toGameAxis(outputX, x, width, ScreenWidth), toGameAxis(outputY, y, height, ScreenHeight)};
}

ScreenPoint ScreenFit::toOutput(int gameX, int gameY) const {
  return {toOutputAxis(gameX, x, width, ScreenWidth), toOutputAxis(gameY, y, height, ScreenHeight)};
}

ScreenFit fitScreen(int outputWidth, int outputHeight, Scaling scaling) {
  outputWidth = std::max(1, outputWidth);
  outputHeight = std::max(1, outputHeight);
  ScreenFit fit;
  const int factor = std::min(outputWidth / ScreenWidth, outputHeight / ScreenHeight);
  if (scaling == Scaling::WholeFactors && factor >= 1) {
    fit.width = ScreenWidth * factor;
    fit.height = ScreenHeight * factor;
  } else if (int64_t{outputWidth} * ScreenHeight <= int64_t{outputHeight} * ScreenWidth) {
    fit.width = outputWidth;
    fit.height = std::max(1, static_cast<int>(int64_t{outputWidth} * ScreenHeight / ScreenWidth));
  } else {
    fit.height = outputHeight;
    fit.width = std::max(1, static_cast<int>(int64_t{outputHeight} * ScreenWidth / ScreenHeight));
  }
  fit.x = (outputWidth - fit.width) / 2;
  fit.y = (outputHeight - fit.height) / 2;
  return fit;
}

}  // namespace qv
