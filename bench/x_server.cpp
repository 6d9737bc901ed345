#include "bench/x_server.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace qv::bench {

namespace {

[[noreturn]] void giveUp(const std::string& why) {
  std::fprintf(stderr, "bench: %s\n", why.c_str());
  std::exit(1);
}

}  // namespace

Program::Program(const std::vector<std::string>& command) {
  std::vector<char*> arguments;
  for (const std::string& word : command)
    arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  if (posix_spawnp(&process_, arguments[0], nullptr, nullptr, arguments.data(), environ) != 0)
    giveUp(command[0] + " cannot be started");
}

Program::~Program() {
  kill(process_, SIGTERM);
  waitpid(process_, nullptr, 0);
}

double Program::processorSeconds() const {
  std::ifstream stat("/proc/" + std::to_string(process_) + "/stat");
  std::string text((std::istreambuf_iterator<char>(stat)), {});
  unsigned long user = 0, system = 0;
  const size_t name = text.rfind(')');
  if (name == std::string::npos ||
      std::sscanf(text.c_str() + name + 2, "%*c %*d %*d %*d %*d %*d %*u %*u %*u %*u %*u %lu %lu",
                  &user, &system) != 2)
    giveUp("the program has ended");
  return static_cast<double>(user + system) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

double Program::largestMegabytes() const {
  std::ifstream status("/proc/" + std::to_string(process_) + "/status");
  const std::string heading = "VmHWM:";
  for (std::string line; std::getline(status, line);)
    if (line.compare(0, heading.size(), heading) == 0)
      return std::strtod(line.c_str() + heading.size(), nullptr) / 1024;
  giveUp("the program has ended");
}

struct XServer::Connection {
  Connection() : display(XOpenDisplay(nullptr)) {
    if (!display) giveUp("the X server does not answer");
    int unused = 0;
    if (!XTestQueryExtension(display, &unused, &unused, &unused, &unused))
      giveUp("the X server lets nobody play on its devices");
    returnCode = XKeysymToKeycode(display, XK_Return);
  }
  ~Connection() { XCloseDisplay(display); }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  ::Display* display;
  KeyCode returnCode = 0;
};

XServer::XServer() {
  int ends[2];
  if (pipe(ends) != 0) giveUp("no pipe");
  const std::string size = std::to_string(RootWidth) + "x" + std::to_string(RootHeight) + "x24";
  server_ = std::make_unique<Program>(
      std::vector<std::string>{"Xvfb", "-displayfd", std::to_string(ends[1]), "-noreset",
                               "-nolisten", "tcp", "-screen", "0", size});
  close(ends[1]);
  pollfd ready = {ends[0], POLLIN, 0};
  char digits[16] = {};
  if (poll(&ready, 1, 20'000) != 1 || read(ends[0], digits, 15) <= 0) giveUp("Xvfb did not start");
  close(ends[0]);
  const std::string name = ":" + std::to_string(std::atoi(digits));
  setenv("DISPLAY", name.c_str(), 1);
  unsetenv("WAYLAND_DISPLAY");
  unsetenv("SDL_VIDEODRIVER");
  connection_ = std::make_unique<Connection>();
}

XServer::~XServer() = default;

void XServer::await(uint32_t colour, bool there) const {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  // Who looks without a pause takes a processor of the program and one of the server.
  while ((middle() == colour) != there) {
    if (std::chrono::steady_clock::now() > end) giveUp("the picture did not come to the screen");
    usleep(100);
  }
}

uint32_t XServer::middle() const {
  ::Display* const display = connection_->display;
  XImage* const image = XGetImage(display, DefaultRootWindow(display), RootWidth / 2,
                                  RootHeight / 2 + 100, 1, 1, AllPlanes, ZPixmap);
  if (!image) giveUp("the screen cannot be seen");
  const auto colour = static_cast<uint32_t>(XGetPixel(image, 0, 0)) & 0xFFFFFF;
  XDestroyImage(image);
  return colour;
}

void XServer::movePointer(int x, int y) const {
  XTestFakeMotionEvent(connection_->display, -1, x, y, CurrentTime);
  XFlush(connection_->display);
}

void XServer::leftButton(bool down) const {
  XTestFakeButtonEvent(connection_->display, 1, down ? True : False, CurrentTime);
  XFlush(connection_->display);
}

void XServer::returnKey(bool down) const {
  XTestFakeKeyEvent(connection_->display, connection_->returnCode, down ? True : False,
                    CurrentTime);
  XFlush(connection_->display);
}

}  // namespace qv::bench
