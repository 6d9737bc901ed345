// The display's cursors as SDL's.

#include <algorithm>

#include "platform/sdl/sdl_events.h"

namespace qv {

namespace {

struct CursorRow {
  int32_t number;
  SDL_SystemCursor cursor;
};

// What SDL does not have is an arrow: the one that points up, and the icon of old.
constexpr CursorRow Cursors[] = {
    {system_cursor::Arrow, SDL_SYSTEM_CURSOR_ARROW},
    {system_cursor::TextBeam, SDL_SYSTEM_CURSOR_IBEAM},
    {system_cursor::Wait, SDL_SYSTEM_CURSOR_WAIT},
    {system_cursor::Cross, SDL_SYSTEM_CURSOR_CROSSHAIR},
    {system_cursor::UpArrow, SDL_SYSTEM_CURSOR_ARROW},
    {system_cursor::Size, SDL_SYSTEM_CURSOR_SIZEALL},
    {system_cursor::Icon, SDL_SYSTEM_CURSOR_ARROW},
    {system_cursor::SizeFalling, SDL_SYSTEM_CURSOR_SIZENWSE},
    {system_cursor::SizeRising, SDL_SYSTEM_CURSOR_SIZENESW},
    {system_cursor::SizeAcross, SDL_SYSTEM_CURSOR_SIZEWE},
    {system_cursor::SizeUpright, SDL_SYSTEM_CURSOR_SIZENS},
    {system_cursor::SizeAll, SDL_SYSTEM_CURSOR_SIZEALL},
    {system_cursor::No, SDL_SYSTEM_CURSOR_NO},
    {system_cursor::Starting, SDL_SYSTEM_CURSOR_WAITARROW},
};

SDL_Cursor* pictureCursor(const CursorPicture& picture) {
  const auto count = static_cast<size_t>(picture.width) * static_cast<size_t>(picture.height);
  if (picture.width < 1 || picture.height < 1 || picture.pixels.size() != count) return nullptr;
  SDL_Surface* const surface = SDL_CreateRGBSurfaceWithFormat(0, picture.width, picture.height, 32,
                                                              SDL_PIXELFORMAT_ARGB8888);
  if (!surface) return nullptr;
  for (int y = 0; y < picture.height; ++y)
    std::copy_n(picture.pixels.data() + static_cast<ptrdiff_t>(y) * picture.width, picture.width,
                reinterpret_cast<uint32_t*>(static_cast<uint8_t*>(surface->pixels) +
                                            static_cast<ptrdiff_t>(y) * surface->pitch));
  SDL_Cursor* const cursor = SDL_CreateColorCursor(surface, picture.hotX, picture.hotY);
  SDL_FreeSurface(surface);
  return cursor;
}

}  // namespace

SDL_SystemCursor systemCursorOf(int32_t number) {
  const auto* row = std::ranges::find(Cursors, number, &CursorRow::number);
  return row == std::end(Cursors) ? SDL_SYSTEM_CURSOR_ARROW : row->cursor;
}

SDL_Cursor* makeCursor(const PointerLook& look) {
  if (look.picture)
    if (SDL_Cursor* cursor = pictureCursor(*look.picture)) return cursor;
  return SDL_CreateSystemCursor(systemCursorOf(look.system));
}

}  // namespace qv
