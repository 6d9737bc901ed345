#include "tests/story/random_play.h"

#include <array>

#include "tools/story/made_words.h"

namespace qv::testing {

namespace {

constexpr int ScreenWidth = 640, ScreenHeight = 480;

constexpr std::array AdvancingKeys{"Return", "Space", "Return"};
constexpr std::array OtherKeys{
    "Esc",   "F1",   "F2",   "F3",     "F4",       "F5",   "F6",  "F7",  "F8", "Up", "Down", "Left",
    "Right", "Num2", "Num8", "PageUp", "PageDown", "Home", "End", "Tab", "0",  "7",  "A",    "S"};

struct Spot {
  int x, y, width, height;
};
// Where something answers: the frame's buttons, the pendant, the plates, boxes in the middle.
constexpr std::array Spots{
    Spot{586, 364, 50, 30},  Spot{586, 395, 50, 30}, Spot{567, 414, 70, 60},
    Spot{0, 0, 62, 122},     Spot{40, 55, 565, 122}, Spot{40, 177, 565, 111},
    Spot{40, 288, 565, 111}, Spot{514, 55, 90, 60},  Spot{180, 160, 280, 160}};

class RandomPlayer {
 public:
  explicit RandomPlayer(uint64_t seed) : numbers_(seed) {}

  std::string play(int inputs) {
    for (int at = 0; at < inputs; ++at) {
      // Mostly a wait stands; sometimes the game is caught at work.
      if (numbers_.below(10) < 8) line("ready");
      if (numbers_.oneOf(12)) line("sleep " + std::to_string(numbers_.between(1, 1500)));
      input();
    }
    line("now restore");
    line("quit");
    return std::move(script_);
  }

 private:
  void line(const std::string& text) { script_ += text + "\n"; }
  void now(const std::string& text) { line("now " + text); }

  std::string place() {
    if (numbers_.oneOf(3))
      return std::to_string(numbers_.below(ScreenWidth)) + " " +
             std::to_string(numbers_.below(ScreenHeight));
    const Spot& spot = numbers_.pick(Spots);
    return std::to_string(spot.x + numbers_.below(spot.width)) + " " +
           std::to_string(spot.y + numbers_.below(spot.height));
  }

  void input() {
    const int kind = numbers_.below(100);
    if (kind < 45)
      now(std::string("key ") + numbers_.pick(AdvancingKeys));
    else if (kind < 65)
      now("click " + place());
    else if (kind < 85)
      now(std::string("key ") + numbers_.pick(OtherKeys));
    else if (kind < 90)
      now("move " + place());
    else if (kind < 94)
      now("right " + place());
    else if (kind < 96)
      now(numbers_.oneOf(2) ? "wheel UP" : "wheel DOWN");
    else if (kind < 98)
      now("drag " + place() + " " + place());
    else
      minimise();
  }

  void minimise() {
    now("minimise");
    line("sleep " + std::to_string(numbers_.between(1, 300)));
    now("restore");
  }

  story::MadeNumbers numbers_;
  std::string script_;
};

}  // namespace

std::string randomPlay(uint64_t seed, int inputs) {
  return RandomPlayer(seed).play(inputs);
}

}  // namespace qv::testing
