#include <filesystem>

#include <dlfcn.h>

#include "host/midi_module.h"
#include "platform/kernel/kernel.h"

namespace qv {

namespace {

/// It stands beside the engine's own library.
std::filesystem::path modulePath() {
  Dl_info engine{};
  const bool found = dladdr(reinterpret_cast<const void*>(&tickCount), &engine) != 0;
  const std::filesystem::path library = found ? engine.dli_fname : "";
  return std::filesystem::absolute(library).parent_path() / "libqv_midi.so";
}

}  // namespace

const MidiDevices* midiDevices(std::string& whyNot) {
  void* const library = dlopen(modulePath().c_str(), RTLD_NOW | RTLD_LOCAL);
  const auto* const devices =
      library ? static_cast<const MidiDevices*>(dlsym(library, "qvMidiDevices")) : nullptr;
  if (!devices)
    whyNot =
        std::string("The MIDI devices cannot be loaded: ") + dlerror() + "; songs stay silent.";
  return devices;
}

}  // namespace qv
