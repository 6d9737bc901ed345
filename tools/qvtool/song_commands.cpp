// song: music, from notation to Standard MIDI Files, and what stands in those.

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <CLI/CLI.hpp>

#include "tools/failure.h"
#include "tools/qvtool/commands.h"
#include "tools/qvtool/files.h"
#include "tools/song/listing.h"
#include "tools/song/smf_writer.h"
#include "tools/song/song_text.h"

namespace qv::tool {

namespace {

namespace fs = std::filesystem;

struct SongOptions {
  fs::path source, target;
  std::string variant = "a";
};

song::Song readNotation(const fs::path& path) {
  const std::vector<uint8_t> bytes = readFile(path);
  song::ReadSong read = song::readSong({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
  if (read.problems.empty()) return std::move(read.song);
  std::string lines;
  for (const song::Problem& problem : read.problems) {
    if (!lines.empty()) lines += '\n';
    lines += path.string() + ":" + (problem.line == 0 ? "" : std::to_string(problem.line) + ":") +
             " " + problem.what;
  }
  throw Failure(lines);
}

void encode(const SongOptions& options) {
  const song::Variant* const variant =
      options.variant.size() == 1 ? song::variantOf(options.variant[0]) : nullptr;
  if (!variant) throw Failure("The variant is a, b, c, d or e, not \"" + options.variant + "\".");
  writeFile(options.target, song::writeSmf(readNotation(options.source), *variant));
}

song::SmfFile readMidi(const fs::path& path) {
  song::SmfFile file = song::readSmf(readFile(path));
  if (file.tracks.empty() && !file.faults.empty())
    throw Failure(path.string() + ": " + file.faults.front());
  return file;
}

}  // namespace

void addSongCommands(CLI::App& program) {
  CLI::App* group = program.add_subcommand("song", "Music: notation and MIDI files");
  group->require_subcommand(1);
  const auto options = std::make_shared<SongOptions>();

  CLI::App* encoded = group->add_subcommand("encode", "Write a MIDI file from a song's notation");
  encoded->add_option("SOURCE", options->source, "The notation")->required();
  encoded->add_option("TARGET", options->target, "The MIDI file to write")->required();
  encoded->add_option("--variant", options->variant,
                      "The kind of device: a General MIDI (as without it), b variation banks, "
                      "c 24 voices, d General MIDI 2, e a small one");
  encoded->callback([options] { encode(*options); });

  CLI::App* listed = group->add_subcommand("list", "List the events of a MIDI file");
  listed->add_option("FILE", options->source, "The MIDI file")->required();
  listed->callback(
      [options] { std::fputs(song::listSmf(readMidi(options->source)).c_str(), stdout); });

  CLI::App* decoded = group->add_subcommand("decode", "Write a MIDI file as notation");
  decoded->add_option("SOURCE", options->source, "The MIDI file")->required();
  decoded->add_option("TARGET", options->target, "The notation to write; without it, shown");
  decoded->callback([options] {
    const std::string text = song::notationOf(readMidi(options->source));
    if (options->target.empty())
      std::fputs(text.c_str(), stdout);
    else
      writeFile(options->target, {reinterpret_cast<const uint8_t*>(text.data()), text.size()});
  });
  CLI::App* checked = group->add_subcommand("check", "Read a song's notation and tell its length");
  checked->add_option("SOURCE", options->source, "The notation")->required();
  checked->callback([options] {
    const song::Song song = readNotation(options->source);
    size_t notes = 0;
    for (const song::Part& part : song.parts)
      notes += part.notes.size();
    std::printf("%s: %u bars, %.1f s, %zu parts, %zu notes\n", song.title.c_str(),
                song.length / song.barTicks(), song::secondsOf(song), song.parts.size(), notes);
  });
}

}  // namespace qv::tool
