#include "platform/sdl/subsystem.h"

#define SDL_MAIN_HANDLED
#include <mutex>

#include <SDL2/SDL.h>

namespace qv {

namespace {

// A lock of the machine: it is held over calls of SDL alone, which take none of ours.
std::mutex counting;

}  // namespace

bool startSubsystem(uint32_t part) {
  const std::lock_guard guard(counting);
  SDL_SetMainReady();
  return SDL_InitSubSystem(part) == 0;
}

void quitSubsystem(uint32_t part) {
  const std::lock_guard guard(counting);
  SDL_QuitSubSystem(part);
}

}  // namespace qv
