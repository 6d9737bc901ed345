// The runner in a real window, on an X server of the bench's own: from its start to the first
// picture on the screen, against a bare program that shows one frame the same way, and what it
// takes of a processor while it waits for its player.

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <unistd.h>

#include "bench/ground.h"
#include "bench/ratio.h"
#include "bench/x_server.h"
#include "tools/picture_codec/picture_files.h"
#include "tools/qvtool/files.h"

namespace {

using qv::bench::Program, qv::bench::XServer;

constexpr uint8_t Entry = 40;
constexpr uint32_t Colour = 0xE0C040;

/// From exec to the picture on the screen.
double secondsToPicture(const XServer& screen, const std::vector<std::string>& command) {
  std::unique_ptr<Program> program;
  const double seconds = qv::bench::secondsOf([&] {
    program = std::make_unique<Program>(command);
    screen.await(Colour, true);
  });
  program.reset();
  screen.await(Colour, false);
  return seconds;
}

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

}  // namespace

int main() {
  qv::bench::Table table;
  const qv::bench::BenchFolder root;
  const std::filesystem::path player = root.folder("player");
  qv::codec::IndexedPicture picture;
  picture.width = 640, picture.height = 480;
  picture.colours[Entry] = Colour;
  picture.pixels.assign(640 * 480, Entry);
  std::filesystem::create_directories(player / "cg");
  qv::tool::writeFile(player / "cg/first.mcg", qv::codec::encodeMcg(picture));
  const XServer screen;
  std::vector<std::string> ours = {QV_BIN_DIR "/qvrun", "--user", player.string(),
                                   QV_OUTPUT_DIR "/first_picture"};
  const std::vector<std::string> bare = {QV_BIN_DIR "/bare_window", "E0C040"};

  constexpr int Rounds = 41;
  std::vector<double> oursSeconds, bareSeconds;
  for (int round = 0; round < Rounds; ++round) {
    oursSeconds.push_back(secondsToPicture(screen, ours));
    bareSeconds.push_back(secondsToPicture(screen, bare));
  }
  const qv::bench::Pair pair{median(oursSeconds), median(bareSeconds)};
  table.note("from start to the first picture on the screen, ms", pair.ours * 1000);
  table.note("a bare program's frame, ms", pair.theirs * 1000);
  table.atMost("first picture / a bare program's frame", 1.3, pair);

  constexpr int IdleSeconds = 20;
  ours.insert(ours.end(), {"--scene", "sc_windows"});
  const Program idle(ours);
  screen.await(Colour, true);
  sleep(2);
  const double before = idle.processorSeconds();
  sleep(IdleSeconds);
  table.atMost("an idle game with five windows on the screen, percent",
               (idle.processorSeconds() - before) / IdleSeconds * 100, 1);
  return table.status();
}
