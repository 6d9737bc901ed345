#include "platform/devices/disc_folder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <optional>
#include <vector>

#include <sndfile.h>

#include "platform/sound/cue_sheet.h"
#include "platform/sound/wave_output.h"

namespace qv {

namespace fs = std::filesystem;

namespace {

constexpr uint32_t SectorBytes = 2352, SectorFrames = 588, ImageRate = 44100, FrameBytes = 4;
constexpr int MostChannels = 8;
/// Beyond this many times full scale, and where it is no number, a sample is silence.
constexpr float MostLevel = 16;

std::string small(std::string text) {
  for (char& c : text)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return text;
}

/// A file directly in the folder, whatever the case of its letters; folders in a sheet's names are
/// those of another machine. Empty when there is none.
fs::path findFile(const fs::path& folder, std::string name) {
  name = small(name.substr(name.find_last_of("/\\") + 1));
  std::error_code error;
  std::vector<fs::path> found;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder, error))
    if (entry.is_regular_file(error) && small(entry.path().filename().string()) == name)
      found.push_back(entry.path());
  return found.empty() ? fs::path() : *std::min_element(found.begin(), found.end());
}

fs::path findSheet(const fs::path& folder) {
  std::error_code error;
  std::vector<fs::path> found;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder, error))
    if (entry.is_regular_file(error) && small(entry.path().extension().string()) == ".cue")
      found.push_back(entry.path());
  return found.empty() ? fs::path() : *std::min_element(found.begin(), found.end());
}

/// A sound file through the library, from one of its frames to another.
class SoundFileReader : public TrackReader {
 public:
  static std::unique_ptr<SoundFileReader> open(const fs::path& path) {
    auto reader = std::make_unique<SoundFileReader>();
    reader->file_ = sf_open(path.c_str(), SFM_READ, &reader->info_);
    const SF_INFO& info = reader->info_;
    const bool good = reader->file_ && info.channels >= 1 && info.channels <= MostChannels &&
                      info.samplerate >= static_cast<int>(LeastSamplesPerSecond) &&
                      info.samplerate <= static_cast<int>(MostSamplesPerSecond) && info.frames >= 0;
    return good ? std::move(reader) : nullptr;
  }
  SoundFileReader() = default;
  ~SoundFileReader() override {
    if (file_) sf_close(file_);
  }
  SoundFileReader(const SoundFileReader&) = delete;
  SoundFileReader& operator=(const SoundFileReader&) = delete;

  uint32_t discFrames() const {
    const auto frames = static_cast<uint64_t>(info_.frames);
    return static_cast<uint32_t>(
        std::min<uint64_t>(frames / framesPerSecond() * DiscFramesPerSecond +
                               frames % framesPerSecond() * DiscFramesPerSecond / framesPerSecond(),
                           UINT32_MAX));
  }
  void setStart(uint32_t discFrame) {
    start_ = uint64_t{discFrame} * framesPerSecond() / DiscFramesPerSecond;
  }
  uint32_t framesPerSecond() const override { return static_cast<uint32_t>(info_.samplerate); }
  void seek(uint64_t frame) override {
    sf_seek(file_, static_cast<sf_count_t>(start_ + frame), SEEK_SET);
  }
  uint32_t read(float* stereo, uint32_t frames) override {
    const auto channels = static_cast<size_t>(info_.channels);
    buffer_.resize(frames * channels);
    const auto got = static_cast<uint32_t>(
        std::max<sf_count_t>(sf_readf_float(file_, buffer_.data(), frames), 0));
    const size_t second = channels > 1 ? 1 : 0;
    for (size_t i = 0; i < got; ++i) {
      stereo[2 * i] = heard(buffer_[i * channels]);
      stereo[2 * i + 1] = heard(buffer_[i * channels + second]);
    }
    return got;
  }

 private:
  static float heard(float sample) { return std::abs(sample) <= MostLevel ? sample : 0; }

  SNDFILE* file_ = nullptr;
  SF_INFO info_{};
  uint64_t start_ = 0;
  std::vector<float> buffer_;
};

/// Sectors of a raw image: 44,100 frames a second of two 16-bit words.
class ImageReader : public TrackReader {
 public:
  ImageReader(const fs::path& path, uint32_t startSector)
      : file_(path, std::ios::binary), start_(uint64_t{startSector} * SectorFrames) {}
  uint32_t framesPerSecond() const override { return ImageRate; }
  void seek(uint64_t frame) override {
    file_.clear();
    file_.seekg(static_cast<std::streamoff>((start_ + frame) * FrameBytes));
  }
  uint32_t read(float* stereo, uint32_t frames) override {
    buffer_.resize(size_t{frames} * FrameBytes);
    file_.read(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
    const auto got = static_cast<uint32_t>(file_.gcount()) / FrameBytes;
    for (size_t i = 0; i < size_t{2} * got; ++i) {
      const auto low = static_cast<uint8_t>(buffer_[2 * i]);
      const auto high = static_cast<uint8_t>(buffer_[2 * i + 1]);
      stereo[i] = static_cast<float>(static_cast<int16_t>(low | high << 8)) / 32768;
    }
    return got;
  }

 private:
  std::ifstream file_;
  uint64_t start_;
  std::vector<char> buffer_;
};

class FolderTracks : public DiscTracks {
 public:
  FolderTracks(const fs::path& folder, CueSheet sheet, std::string& whyNot)
      : sheet_(std::move(sheet)) {
    for (const CueFile& file : sheet_.files) {
      files_.push_back(measured(folder, file));
      if (files_.back().discFrames == 0 && whyNot.empty())
        whyNot = "The disc's file " + file.name + " cannot be read.";
    }
  }

  int32_t count() const override { return sheet_.tracks.empty() ? 0 : sheet_.tracks.back().number; }
  DiscTime length(int32_t track) const override {
    const auto at = indexOf(track);
    if (!at) return {};
    const uint32_t end = sheet_.endFrame(*at, files_[sheet_.tracks[*at].file].discFrames);
    const uint32_t start = sheet_.tracks[*at].startFrame;
    return discTimeOf(end > start ? end - start : 0);
  }
  std::unique_ptr<TrackReader> open(int32_t track) override {
    const auto at = indexOf(track);
    if (!at) return nullptr;
    const CueTrack& wanted = sheet_.tracks[*at];
    const fs::path& path = files_[wanted.file].path;
    if (sheet_.files[wanted.file].binary)
      return std::make_unique<ImageReader>(path, wanted.startFrame);
    auto reader = SoundFileReader::open(path);
    if (reader) reader->setStart(wanted.startFrame);
    return reader;
  }

 private:
  struct File {
    fs::path path;
    uint32_t discFrames = 0;  ///< 0: it cannot be read
  };

  static File measured(const fs::path& folder, const CueFile& file) {
    File found{findFile(folder, file.name)};
    if (found.path.empty()) return found;
    if (file.binary) {
      std::error_code error;
      const uintmax_t bytes = fs::file_size(found.path, error);
      if (!error)
        found.discFrames =
            static_cast<uint32_t>(std::min<uintmax_t>(bytes / SectorBytes, INT32_MAX));
    } else if (const auto reader = SoundFileReader::open(found.path)) {
      found.discFrames = reader->discFrames();
    }
    return found;
  }
  /// Of an audio track.
  std::optional<size_t> indexOf(int32_t number) const {
    for (size_t at = 0; at < sheet_.tracks.size(); ++at)
      if (sheet_.tracks[at].number == number && sheet_.tracks[at].audio) return at;
    return std::nullopt;
  }

  CueSheet sheet_;
  std::vector<File> files_;  ///< as the sheet's
};

}  // namespace

std::unique_ptr<DiscTracks> openDiscFolder(const fs::path& folder, std::string& whyNot) {
  whyNot.clear();
  if (folder.empty()) return nullptr;
  const fs::path path = findSheet(folder);
  if (path.empty()) return nullptr;
  std::ifstream stream(path, std::ios::binary);
  std::string text(MostCueBytes + 1, '\0');
  stream.read(text.data(), static_cast<std::streamsize>(text.size()));
  text.resize(static_cast<size_t>(stream.gcount()));
  CueSheet sheet = parseCueSheet(text);
  if (!sheet.complaint.empty()) {
    whyNot = "The cue sheet " + path.filename().string() +
             " of the disc cannot be used: " + sheet.complaint + ".";
    return nullptr;
  }
  return std::make_unique<FolderTracks>(folder, std::move(sheet), whyNot);
}

}  // namespace qv
