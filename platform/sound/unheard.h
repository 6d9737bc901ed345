#pragma once

/// What stands in for an output where the machine has none.

namespace qv {

class Event;
class SoundMixer;

/// Asks the mixer for its samples at their pace, by the kernel's clock, and drops them, until
/// `stop` is set: what sounds keeps its time. Thread: the one that stands for the output's.
void playUnheard(SoundMixer& mixer, Event& stop);

}  // namespace qv
