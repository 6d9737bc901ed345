// A program that does nothing but show one frame in a window, as directly as SDL2 lets it, and
// stay: what window_bench holds the runner against. The frame's colour is its argument, as RRGGBB.

#define SDL_MAIN_HANDLED
#include <cstdint>
#include <cstdlib>
#include <vector>

#include <SDL2/SDL.h>

int main(int count, char** arguments) {
  constexpr int Width = 640, Height = 480;
  if (count < 2) return 2;
  const auto colour = static_cast<uint32_t>(std::strtoul(arguments[1], nullptr, 16));
  SDL_SetMainReady();
  SDL_SetHint(SDL_HINT_FRAMEBUFFER_ACCELERATION, "0");
  if (SDL_InitSubSystem(SDL_INIT_VIDEO) != 0) return 1;
  SDL_Window* const window =
      SDL_CreateWindow("bare", SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED, Width, Height, 0);
  SDL_Renderer* const renderer = SDL_CreateRenderer(window, -1, SDL_RENDERER_SOFTWARE);
  SDL_Texture* const texture = SDL_CreateTexture(renderer, SDL_PIXELFORMAT_RGB888,
                                                 SDL_TEXTUREACCESS_STREAMING, Width, Height);
  if (!texture) return 1;
  const std::vector<uint32_t> frame(static_cast<size_t>(Width) * Height, colour);
  SDL_UpdateTexture(texture, nullptr, frame.data(), Width * static_cast<int>(sizeof(uint32_t)));
  SDL_RenderClear(renderer);
  SDL_RenderCopy(renderer, texture, nullptr, nullptr);
  SDL_RenderPresent(renderer);
  SDL_Event event;
  while (SDL_WaitEvent(&event) && event.type != SDL_QUIT) {
  }
  return 0;
}
