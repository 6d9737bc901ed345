// How many chain scenes a second the runner goes through: alone, and with a notify window whose
// thread takes each scene's name.

#include <cstdlib>

#include "bench/ground.h"
#include "bench/ratio.h"
#include "host/game_host.h"
#include "host/scene_runner.h"
#include "scenario/register_numbers.h"
#include "scenario/scenario.h"

namespace {

int scenesLeft = 0;
qv::QVScenario* manager = nullptr;

qv::SceneFunction second();

qv::SceneFunction first() {
  manager->SetSceneName("sc000001_1");
  if (--scenesLeft <= 0) return {};
  return second;
}

qv::SceneFunction second() {
  manager->SetSceneName("sc000001_2");
  if (--scenesLeft <= 0) return {};
  return first;
}

qv::SceneFunction start(qv::ScenarioHost*) {
  return first;
}
qv::SceneFunction finish() {
  return {};
}

double scenesPerSecond(const qv::GameModule& module, qv::GameHost& host, int scenes) {
  scenesLeft = scenes;
  const double seconds = qv::bench::secondsOf([&] {
    if (qv::SceneRunner(module, host).run().end != qv::RunResult::End::Finished) std::abort();
  });
  if (scenesLeft != 0) std::abort();
  return scenes / seconds;
}

}  // namespace

int main() {
  qv::bench::Table table;
  const qv::bench::Ground ground;
  const qv::GameModule module = {qv::ModuleAbi, "Bench", start,   finish, finish,
                                 nullptr,       nullptr, nullptr, 0};
  qv::GameHost host(module);
  host.notifyWindow = nullptr;
  qv::QVScenario scenario;
  manager = &scenario;
  scenario.Start(&host, "Bench", qv::RegisterCount, qv::StringRegisterCount,
                 qv::SystemRegisterCount);

  table.atLeast("chain scenes a second without a notify window",
                scenesPerSecond(module, host, 3'000'000), 1'000'000);

  qv::Thread uiThread;
  uiThread.start("ui", [&] {
    for (;;) {
      qv::MessageQueue::Received received;
      if (!host.queue.receive(received, qv::WaitForever)) return;
      if (received.message.id == 0) return;
      received.reply(0);
    }
  });
  host.notifyWindow = &host.window;
  table.atLeast("chain scenes a second with one", scenesPerSecond(module, host, 100'000), 20'000);
  host.notifyWindow = nullptr;
  host.queue.post({});
  uiThread.join();
  scenario.Release();
  return table.status();
}
