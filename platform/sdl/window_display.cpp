#define SDL_MAIN_HANDLED
#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <optional>
#include <utility>

#include <SDL2/SDL.h>

#include "platform/display/display.h"
#include "platform/kernel/kernel.h"
#include "platform/sdl/sdl_events.h"
#include "platform/sdl/subsystem.h"

namespace qv {

namespace {

/// A window that has just opened is left alone for so long: as a rule its first frame comes sooner,
/// and would have to wait for the black one.
constexpr uint32_t GroundDelayMillis = 50;

class WindowDisplay : public Display {
 public:
  explicit WindowDisplay(Scaling scaling) : scaling_(scaling) {}
  ~WindowDisplay() override;
  bool open(const WindowOptions& options, std::string& whyNot);

  void present(const Frame& frame) override;
  void setTitle(std::string_view utf8) override;
  void setFullScreen(bool on) override;
  bool fullScreen() const override { return fullScreen_; }
  bool minimised() const override { return minimised_; }
  bool waitEvent(DisplayEvent& event, uint32_t limitMillis) override;
  void wake() override;
  void movePointer(int x, int y) override;
  void setCursor(const PointerLook& look) override;

 private:
  void show();
  void expose();
  int millisToGround();
  void measure();
  void handle(const SDL_Event& event);
  void handleWindow(const SDL_WindowEvent& event);
  void handleFinger(const SDL_TouchFingerEvent& finger);
  void settle();
  bool handlePad(const SDL_Event& event);
  void emit(DisplayEvent::Kind kind);

  Scaling scaling_;
  bool videoStarted_ = false;
  SDL_Window* window_ = nullptr;
  SDL_Renderer* renderer_ = nullptr;
  SDL_Texture* texture_ = nullptr;
  SDL_Cursor* cursor_ = nullptr;
  WindowGeometry geometry_;
  std::deque<DisplayEvent> ready_;  ///< translated and not yet taken
  uint32_t wakeEvent_ = 0;
  std::atomic<bool> wakePending_ = false;  ///< a wake stands in SDL's queue: one is enough
  bool fullScreen_ = false, minimised_ = false, shownOnce_ = false;
  uint32_t openedTick_ = 0;
  bool groundDue_ = false;  ///< the window is bare, and no frame has come yet
  bool fingerDown_ = false;
  bool painted_ = false;  ///< its ground at least
  bool settled_ = false, padsStarted_ = false;
  std::optional<PointerLook> firstLook_;  ///< until the window is settled
  PadKeys padKeys_;
  SDL_FingerID finger_ = 0;  ///< the first finger is the pointer, the others mean nothing
};

bool isSet(const char* name) {
  const char* value = std::getenv(name);
  return value && *value;
}

/// Keeps SDL from starting a session bus where there is none: it would launch a daemon that stays
/// behind on the player's screen, and wait for it, only to tell it about the screen saver.
void leaveSessionBusAlone() {
  if (isSet("DBUS_SESSION_BUS_ADDRESS")) return;
  const char* runtime = std::getenv("XDG_RUNTIME_DIR");
  std::error_code ignored;
  if (runtime && std::filesystem::exists(std::filesystem::path(runtime) / "bus", ignored)) return;
  setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 0);
}

/// Starts SDL's video on a real display. SDL itself would fall back to drivers that show nothing,
/// and the player would look at no window at all: we say that there is none instead.
bool startVideo(std::string& whyNot) {
  SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
  SDL_SetHint(SDL_HINT_QUIT_ON_LAST_WINDOW_CLOSE, "0");
  SDL_SetHint(SDL_HINT_VIDEO_MINIMIZE_ON_FOCUS_LOSS, "0");
  // A probe for an accelerated frame buffer costs four times the whole start.
  SDL_SetHint(SDL_HINT_FRAMEBUFFER_ACCELERATION, "0");
  SDL_SetHint(SDL_HINT_RENDER_SCALE_QUALITY, "nearest");
  // Fingers are translated here, so that a press is always preceded by its move.
  SDL_SetHint(SDL_HINT_TOUCH_MOUSE_EVENTS, "0");
  SDL_SetHint(SDL_HINT_MOUSE_TOUCH_EVENTS, "0");
  if (!isSet("SDL_VIDEODRIVER")) {
    const bool x11 = isSet("DISPLAY"), wayland = isSet("WAYLAND_DISPLAY");
    if (!x11 && !wayland) {
      whyNot = "There is no display: neither DISPLAY nor WAYLAND_DISPLAY is set.";
      return false;
    }
    SDL_SetHint(SDL_HINT_VIDEODRIVER, x11 && wayland ? "x11,wayland" : x11 ? "x11" : "wayland");
  }
  leaveSessionBusAlone();
  if (startSubsystem(SDL_INIT_VIDEO)) return true;
  whyNot = std::string("The display cannot be opened: ") + SDL_GetError() + ".";
  return false;
}

bool WindowDisplay::open(const WindowOptions& options, std::string& whyNot) {
  if (!startVideo(whyNot)) return false;
  videoStarted_ = true;
  wakeEvent_ = SDL_RegisterEvents(1);
  const uint32_t flags = SDL_WINDOW_RESIZABLE | SDL_WINDOW_ALLOW_HIGHDPI |
                         (options.fullScreen ? uint32_t{SDL_WINDOW_FULLSCREEN_DESKTOP} : 0u);
  window_ = SDL_CreateWindow(options.title.c_str(), SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED,
                             ScreenWidth * options.scale, ScreenHeight * options.scale, flags);
  if (window_)
    renderer_ = SDL_CreateRenderer(
        window_, -1, isSet("SDL_RENDER_DRIVER") ? 0u : uint32_t{SDL_RENDERER_SOFTWARE});
  if (renderer_)
    texture_ = SDL_CreateTexture(renderer_, SDL_PIXELFORMAT_RGB888, SDL_TEXTUREACCESS_STREAMING,
                                 ScreenWidth, ScreenHeight);
  if (!texture_) {
    whyNot = std::string("The window cannot be opened: ") + SDL_GetError() + ".";
    return false;
  }
  fullScreen_ = options.fullScreen;
  openedTick_ = tickCount();
  SDL_SetWindowMinimumSize(window_, ScreenWidth / 2, ScreenHeight / 2);
  measure();
  return true;
}

WindowDisplay::~WindowDisplay() {
  if (cursor_) SDL_FreeCursor(cursor_);
  if (padsStarted_) quitSubsystem(SDL_INIT_GAMECONTROLLER);
  if (texture_) SDL_DestroyTexture(texture_);
  if (renderer_) SDL_DestroyRenderer(renderer_);
  if (window_) SDL_DestroyWindow(window_);
  if (videoStarted_) quitSubsystem(SDL_INIT_VIDEO);
}

void WindowDisplay::measure() {
  SDL_GetWindowSize(window_, &geometry_.windowWidth, &geometry_.windowHeight);
  if (SDL_GetRendererOutputSize(renderer_, &geometry_.outputWidth, &geometry_.outputHeight) != 0) {
    geometry_.outputWidth = geometry_.windowWidth;
    geometry_.outputHeight = geometry_.windowHeight;
  }
  geometry_.fit = fitScreen(geometry_.outputWidth, geometry_.outputHeight, scaling_);
}

void WindowDisplay::present(const Frame& frame) {
  if (frame.size() != static_cast<size_t>(ScreenWidth) * ScreenHeight) return;
  SDL_UpdateTexture(texture_, nullptr, frame.data(),
                    ScreenWidth * static_cast<int>(sizeof(uint32_t)));
  shownOnce_ = true;
  groundDue_ = false;
  if (!minimised_) show();
}

void WindowDisplay::expose() {
  if (!shownOnce_)
    groundDue_ = true;
  else if (!minimised_)
    show();
}

/// Shows the ground when its time has come; -1 when there is nothing to wait for.
int WindowDisplay::millisToGround() {
  if (!groundDue_) return -1;
  const uint32_t open = tickCount() - openedTick_;
  if (open < GroundDelayMillis) return static_cast<int>(GroundDelayMillis - open);
  groundDue_ = false;
  if (!minimised_) show();
  return -1;
}

/// Draws the frame that the texture holds.
void WindowDisplay::show() {
  painted_ = true;
  measure();
  SDL_SetRenderDrawColor(renderer_, 0, 0, 0, 255);
  SDL_RenderClear(renderer_);
  const SDL_Rect target = {geometry_.fit.x, geometry_.fit.y, geometry_.fit.width,
                           geometry_.fit.height};
  if (shownOnce_) SDL_RenderCopy(renderer_, texture_, nullptr, &target);
  SDL_RenderPresent(renderer_);
}

void WindowDisplay::setTitle(std::string_view utf8) {
  SDL_SetWindowTitle(window_, std::string(utf8).c_str());
}

void WindowDisplay::setFullScreen(bool on) {
  if (SDL_SetWindowFullscreen(window_, on ? uint32_t{SDL_WINDOW_FULLSCREEN_DESKTOP} : 0u) == 0)
    fullScreen_ = on;
}

void WindowDisplay::emit(DisplayEvent::Kind kind) {
  DisplayEvent event;
  event.kind = kind;
  ready_.push_back(std::move(event));
}

void WindowDisplay::handleWindow(const SDL_WindowEvent& event) {
  if (event.windowID != SDL_GetWindowID(window_)) return;
  switch (event.event) {
    case SDL_WINDOWEVENT_CLOSE:
      emit(DisplayEvent::Kind::Close);
      break;
    case SDL_WINDOWEVENT_FOCUS_GAINED:
      emit(DisplayEvent::Kind::FocusGained);
      break;
    case SDL_WINDOWEVENT_FOCUS_LOST:
      emit(DisplayEvent::Kind::FocusLost);
      break;
    case SDL_WINDOWEVENT_EXPOSED:
    case SDL_WINDOWEVENT_SIZE_CHANGED:
      expose();
      break;
    case SDL_WINDOWEVENT_MINIMIZED:
      if (!std::exchange(minimised_, true)) emit(DisplayEvent::Kind::Minimised);
      break;
    case SDL_WINDOWEVENT_RESTORED:
    case SDL_WINDOWEVENT_MAXIMIZED:
      if (std::exchange(minimised_, false)) {
        emit(DisplayEvent::Kind::Restored);
        show();
      }
      break;
    default:
      break;
  }
}

/// A touch is a move, then a press of the left button.
void WindowDisplay::handleFinger(const SDL_TouchFingerEvent& finger) {
  if (finger.type == SDL_FINGERDOWN) {
    if (std::exchange(fingerDown_, true)) return;
    finger_ = finger.fingerId;
  } else if (!fingerDown_ || finger.fingerId != finger_) {
    return;
  }
  const auto along = [](float part, int length) {
    return static_cast<int>(std::clamp(part, 0.0f, 1.0f) * static_cast<float>(length));
  };
  const ScreenPoint at = geometry_.fit.toGame(along(finger.x, geometry_.outputWidth),
                                              along(finger.y, geometry_.outputHeight));
  DisplayEvent event;
  event.x = at.x;
  event.y = at.y;
  event.kind = DisplayEvent::Kind::PointerMove;
  ready_.push_back(event);
  if (finger.type == SDL_FINGERMOTION) return;
  if (finger.type == SDL_FINGERUP) fingerDown_ = false;
  event.kind =
      finger.type == SDL_FINGERDOWN ? DisplayEvent::Kind::ButtonDown : DisplayEvent::Kind::ButtonUp;
  ready_.push_back(event);
}

/// What would only keep the first picture back: the pointer's look and a search for pads.
void WindowDisplay::settle() {
  settled_ = true;
  if (firstLook_) setCursor(*firstLook_);
  firstLook_.reset();
  padsStarted_ = startSubsystem(SDL_INIT_GAMECONTROLLER);
}

bool WindowDisplay::handlePad(const SDL_Event& event) {
  if (event.type < SDL_CONTROLLERAXISMOTION || event.type > SDL_CONTROLLERSENSORUPDATE)
    return false;
  // SDL closes what is still open at its own end.
  if (event.type == SDL_CONTROLLERDEVICEADDED) SDL_GameControllerOpen(event.cdevice.which);
  if (event.type == SDL_CONTROLLERDEVICEREMOVED)
    SDL_GameControllerClose(SDL_GameControllerFromInstanceID(event.cdevice.which));
  for (DisplayEvent& key : padKeys_.translate(event))
    ready_.push_back(std::move(key));
  return true;
}

void WindowDisplay::handle(const SDL_Event& event) {
  if (handlePad(event)) return;
  switch (event.type) {
    case SDL_WINDOWEVENT:
      handleWindow(event.window);
      return;
    case SDL_QUIT:
      emit(DisplayEvent::Kind::Close);
      return;
    case SDL_FINGERDOWN:
    case SDL_FINGERUP:
    case SDL_FINGERMOTION:
      handleFinger(event.tfinger);
      return;
    case SDL_RENDER_TARGETS_RESET:
    case SDL_RENDER_DEVICE_RESET:
      show();
      return;
    default:
      break;
  }
  DisplayEvent translated = translateEvent(event, geometry_);
  if (translated.kind != DisplayEvent::Kind::None) ready_.push_back(std::move(translated));
}

bool WindowDisplay::waitEvent(DisplayEvent& event, uint32_t limitMillis) {
  const uint32_t start = tickCount();
  while (ready_.empty()) {
    int remaining = -1;
    if (limitMillis != WaitForever) {
      const uint32_t elapsed = tickCount() - start;
      const uint32_t left = elapsed < limitMillis ? limitMillis - elapsed : 0;
      remaining = static_cast<int>(std::min<uint32_t>(left, 0x7FFFFFFF));
    }
    const int ground = millisToGround();
    if (painted_ && !settled_) settle();
    const bool groundFirst = ground >= 0 && (remaining < 0 || ground < remaining);
    SDL_Event raw;
    if (SDL_WaitEventTimeout(&raw, groundFirst ? ground : remaining) == 0) {
      if (groundFirst) continue;
      return false;
    }
    if (raw.type == wakeEvent_) {
      // Cleared before the caller looks at what it was woken for: a later wake is a new one.
      wakePending_.store(false);
      return false;
    }
    handle(raw);
  }
  event = std::move(ready_.front());
  ready_.pop_front();
  return true;
}

void WindowDisplay::wake() {
  if (wakePending_.exchange(true)) return;
  SDL_Event event = {};
  event.type = wakeEvent_;
  // A queue that is full ends the wait by itself.
  if (SDL_PushEvent(&event) != 1) wakePending_.store(false);
}

void WindowDisplay::movePointer(int x, int y) {
  if ((SDL_GetWindowFlags(window_) & SDL_WINDOW_INPUT_FOCUS) == 0) return;
  const ScreenPoint at = geometry_.toWindow(x, y);
  SDL_WarpMouseInWindow(window_, at.x, at.y);
}

void WindowDisplay::setCursor(const PointerLook& look) {
  if (!settled_) {
    firstLook_ = look;
    return;
  }
  SDL_Cursor* const made = makeCursor(look);
  if (!made) return;
  SDL_SetCursor(made);
  // The old one was in use up to here.
  if (cursor_) SDL_FreeCursor(cursor_);
  cursor_ = made;
}

}  // namespace

std::unique_ptr<Display> makeWindowDisplay(const WindowOptions& options, std::string& whyNot) {
  auto display = std::make_unique<WindowDisplay>(options.scaling);
  if (!display->open(options, whyNot)) return nullptr;
  return display;
}

}  // namespace qv
