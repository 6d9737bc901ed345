#include <dlfcn.h>

#include "host/midi_module.h"

namespace qv {

const MidiDevices* midiDevices(std::string& whyNot) {
  // Found as the engine's own library is.
  void* const library = dlopen("libqv_midi.so", RTLD_NOW | RTLD_LOCAL);
  const auto* const devices =
      library ? static_cast<const MidiDevices*>(dlsym(library, "qvMidiDevices")) : nullptr;
  if (!devices)
    whyNot =
        std::string("The MIDI devices cannot be loaded: ") + dlerror() + "; songs stay silent.";
  return devices;
}

}  // namespace qv
