#include "platform/devices/midi_devices.h"

#include "platform/devices/midi_port.h"
#include "platform/devices/synthesiser.h"

const qv::MidiDevices qvMidiDevices = {.makeSynthesiser = qv::makeSynthesiser,
                                       .makeMidiPort = qv::makeMidiPort};
