#pragma once

/// The services of the machine that the engine reaches from anywhere, as a classic program reached
/// its operating system. The host (or a test) makes them and holds them in a ServicesScope; they
/// are set before the first engine object exists and stay until the last is gone.

#include <string_view>

namespace qv {

class Dialogs;
class DiscPlayer;
class FileSystem;
class MidiOutput;
class SettingsStore;
class TextRenderer;
class WaveOutput;

/// One line of the run's trace: a scene entered, a line shown, a box, a wave, a song, a file
/// written. The tick and the line end are added by who keeps the trace. Text is UTF-8.
class TraceSink {
 public:
  virtual ~TraceSink() = default;
  virtual void line(std::string_view what, std::string_view detail) = 0;
};

struct Services {
  FileSystem* files = nullptr;
  SettingsStore* settings = nullptr;
  Dialogs* dialogs = nullptr;
  TextRenderer* text = nullptr;  ///< null: nothing is drawn
  WaveOutput* wave = nullptr;    ///< null: the machine has no wave device
  MidiOutput* midi = nullptr;    ///< null: the machine has no MIDI device
  DiscPlayer* disc = nullptr;    ///< null: the machine has no drive for audio
  TraceSink* trace = nullptr;    ///< null: nothing is traced
};

/// The current services; `files`, `settings` and `dialogs` are never null inside a scope.
const Services& services();
/// Writes a trace line where a trace is kept. Any thread.
void trace(std::string_view what, std::string_view detail);

class ServicesScope {
 public:
  explicit ServicesScope(const Services& services);
  ~ServicesScope();
  ServicesScope(const ServicesScope&) = delete;
  ServicesScope& operator=(const ServicesScope&) = delete;

 private:
  Services previous_;
};

}  // namespace qv
