#pragma once

// A host as the manager needs it: a UI thread of its own that serves the window requests over a
// message queue, windows that are only names, and a table of scenes.

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/diagnostic.h"
#include "platform/kernel/message_queue.h"
#include "scenario/messages.h"
#include "scenario/scenario.h"
#include "scenario/scenario_host.h"
#include "tests/support/test_platform.h"

namespace qv::testing {

class FakeNative : public NativeWindow {
 public:
  NativeWindow* parentWindow() const override { return parent; }
  bool minimised() const override { return isMinimised; }
  uintptr_t send(uint32_t message, uintptr_t first, uintptr_t second) override {
    sent.push_back({message, first, second});
    return 0;
  }
  NativeWindow* parent = nullptr;
  std::atomic<bool> isMinimised = false;
  std::vector<Message> sent;
};

class FakeWindow : public WindowObject {
 public:
  int typeCode() const override { return code; }
  /// A window that was asked for has the size that it was asked for; a frame here has no border.
  bool clientRect(Rectangle& rectangle) const override {
    if (client.empty()) return false;
    rectangle = client;
    return true;
  }
  int code = 0;
  Rectangle client{};
};

/// What a create request said, copied on the UI thread while the record is alive.
struct SeenRequest {
  int32_t typeCode, visible, extraWord, frameFlag;
  Rectangle rectangle;
  std::string parentName, name, caption;
  uint8_t captionCharacter;
  bool hostIsSet, secondPointsToTypeCode;
};

class FakeHost : public ScenarioHost {
 public:
  FakeHost() : queue("fake ui") {
    main.parent = &top;
    mainWindow = &main;
    thread_.start("ui", [this] { run(); });
  }
  ~FakeHost() override { endUi(); }

  WindowObject* FindWindowObject(const char* name) override {
    const std::lock_guard guard(listLock);
    for (auto& window : windows_)
      if (window->name.equals(name)) return window.get();
    return nullptr;
  }
  WindowObject* FindWindowByCode(int32_t code) override {
    const std::lock_guard guard(listLock);
    for (auto& window : windows_)
      if (window->code == code) return window.get();
    return nullptr;
  }
  SceneFunction FindScene(const char* name) override {
    lookedUp = name;
    return module ? findScene(*module, name) : SceneFunction{};
  }
  bool PostToUi(uint32_t message, uintptr_t first, uintptr_t second) override {
    return queue.post({message, first, second});
  }
  void InputWaitBegan() override {
    ++waitsBegan;
    if (onInputWait) onInputWait();
  }
  void InputWaitEnded() override { ++waitsEnded; }
  void MapWaitBegan(ClickTarget& map, bool /*keys*/) override {
    if (onMapWait) onMapWait(map);
  }

  /// Puts a window into the list without a request.
  void addWindow(const char* name, int code, const Rectangle& client = {}) {
    const std::lock_guard guard(listLock);
    windows_.push_back(std::make_unique<FakeWindow>());
    windows_.back()->name.create(QVString::DefaultGrain, name);
    windows_.back()->code = code;
    windows_.back()->client = client;
  }
  size_t windowCount() {
    const std::lock_guard guard(listLock);
    return windows_.size();
  }
  /// Ends the UI thread as a host does: the queue closes, then the request event is set.
  void endUi() {
    queue.post({QuitMessage});
    thread_.join();
  }
  /// Lets the UI thread take requests without doing them, until it ends.
  void dropRequests() { dropping_ = true; }

  FakeNative top, main;
  MessageQueue queue;
  const GameModule* module = nullptr;
  std::string lookedUp;
  std::vector<SeenRequest> created;
  std::vector<std::string> destroyed;
  std::function<void()> onInputWait;
  std::function<void(ClickTarget&)> onMapWait;
  std::atomic<int> waitsBegan = 0, waitsEnded = 0;  // the other party of a wait is another thread

 private:
  static constexpr uint32_t QuitMessage = 1;

  void run() {
    for (bool going = true; going;) {
      MessageQueue::Received received;
      if (!queue.receive(received, WaitForever)) break;
      const Message& message = received.message;
      if (message.id == QuitMessage) {
        going = false;
      } else if (!dropping_) {
        if (message.id == MessageCreateWindow) create(message);
        if (message.id == MessageDestroyWindow) destroy(message);
        windowRequestEvent.set();
      }
    }
    queue.close();
    windowRequestEvent.set();
  }

  void create(const Message& message) {
    CreateWindowRequest& request = CreateWindowRequest::ofMessage(message.first);
    created.push_back({request.typeCode, request.visible, request.extraWord, request.frameFlag,
                       request.rectangle, std::string(request.parentName.view()),
                       std::string(request.name.view()), std::string(request.caption.view()),
                       request.captionCharacter, request.host == this,
                       message.second == reinterpret_cast<uintptr_t>(&request.typeCode)});
    const Rectangle client =
        Rectangle::at(0, 0, request.rectangle.width(), request.rectangle.height());
    addWindow(request.name.text(), request.typeCode, client);
    request.result = FindWindowObject(request.name.text());
    if (request.frameFlag)
      addWindow((std::string(request.name.view()) + "Client").c_str(), TypeView, client);
  }

  void destroy(const Message& message) {
    const std::string name = reinterpret_cast<const char*>(message.first);
    destroyed.push_back(name);
    const std::lock_guard guard(listLock);
    std::erase_if(windows_, [&](auto& window) {
      return window->name.equals(name.c_str()) || window->name.equals((name + "Client").c_str());
    });
  }

  std::vector<std::unique_ptr<FakeWindow>> windows_;
  std::atomic<bool> dropping_ = false;
  Thread thread_;
};

/// A test in each form of the kernel. The members are made and destroyed in this order.
class BothKernels : public ::testing::TestWithParam<bool> {
 protected:
  static std::unique_ptr<Kernel> makeKernel(bool simulated, uint32_t startTick = 0) {
    if (!simulated) return makeRealKernel({.fixedStartTick = true, .startTick = startTick});
    return makeSimulatedKernel({.startTick = startTick});
  }
  TestPlatform platform{false, makeKernel(GetParam())};
};

#define QV_IN_BOTH_KERNELS(Suite)                     \
  INSTANTIATE_TEST_SUITE_P(                           \
      Kernels, Suite, ::testing::Values(false, true), \
      [](const auto& instance) { return std::string(instance.param ? "Simulated" : "Real"); })

}  // namespace qv::testing
