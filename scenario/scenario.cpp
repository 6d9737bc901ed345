#include "scenario/scenario.h"

#include <algorithm>
#include <mutex>
#include <string>
#include <utility>

#include "foundation/diagnostic.h"
#include "foundation/file.h"
#include "foundation/path_name.h"
#include "input/hitret.h"
#include "platform/dialogs/dialogs.h"
#include "platform/services.h"
#include "platform/text/shift_jis.h"
#include "scenario/relations.h"

namespace qv {

QVScenario* theScenario = nullptr;

namespace {

constexpr const char* SystemFileEnding = ".system.dat";
constexpr const char* ClientEnding = "Client";

}  // namespace

QVScenario::QVScenario()
    : random_(Kernel::current().randomSeed()), lock_("manager", LockRank::Manager) {}

QVScenario::~QVScenario() {
  try {
    SetExternalFont(nullptr);
    Release();
  } catch (const Diagnostic&) {
    // Out of memory at the very end: what is left goes with the members.
  }
}

void QVScenario::Open(const char* applicationName, int32_t registers, int32_t strings,
                      int32_t systemRegisters) {
  applicationName_.create(QVString::DefaultGrain, applicationName);
  registers_.create(registers);
  strings_.create(strings);
  systemRegisters_.create(systemRegisters);
  readDefaultFont();
  readSystemFile();
  if (host_) host_->manager = this;
}

void QVScenario::Start(ScenarioHost* host, const char* applicationName, int32_t registers,
                       int32_t strings, int32_t systemRegisters) {
  host_ = host;
  Open(applicationName, registers, strings, systemRegisters);
}

void QVScenario::SetSceneName(const char* name) {
  if (!name) return;
  sceneName_.create(QVString::DefaultGrain, name);
  if (services().trace) trace("scene", utf8OfShiftJis(name));
  if (host_) host_->NotifyScene();
}

uint32_t QVScenario::Random(uint32_t limit) {
  return random_.draw(limit);
}

// --- The system file ---

int32_t& QVScenario::SetSysReg(int32_t number, int32_t value, int32_t writeThrough) {
  int32_t& entry = systemRegisters_.item(number);
  entry = value;
  if (writeThrough) writeSystemFile();
  return entry;
}

QVString QVScenario::systemFileName() const {
  QVString name = applicationName_;
  name.append(SystemFileEnding);
  return name;
}

void QVScenario::readSystemFile() {
  const QVString name = systemFileName();
  if (!QVFile::existsName(name.text())) return;
  QVFile file;
  file.open(QVPathName(name.text()), OpenExisting, GenericRead, ShareRead, AttributeNormal);
  systemRegisters_.load(file);
  file.close();
}

void QVScenario::writeSystemFile() {
  QVFile file;
  file.open(QVPathName(systemFileName().text()), CreateAlways, GenericRead | GenericWrite,
            ShareRead, AttributeNormal);
  // It is rewritten with every seen picture, so it does not wait for the disk: a crash of the
  // machine leaves the old file or the new one, never a torn one.
  file.setDurability(Durability::Renamed);
  systemRegisters_.save(file);
  file.close();
}

// --- Saves ---

void QVScenario::SaveState(QVFile& file) {
  if (file.isOpen()) {
    registers_.save(file);
    strings_.save(file);
    sceneName_.save(file);
    midi_.save(file);
  }
  writeSystemFile();
}

SceneFunction QVScenario::RestoreState(QVFile& file, void (*callback)(), int32_t releaseAll,
                                       int32_t restartMusic) {
  if (file.isOpen()) {
    const std::lock_guard guard(lock_);
    registers_.load(file);
    strings_.load(file);
    sceneName_.load(file);
    stopAnimations();
    if (releaseAll) {
      destroyWindows(TypeFrame);
      destroyWindows(TypeView);
      wave_.forget(nullptr);
      objects_.clear();
      wave_.stop();
      stopSong();
    }
    if (callback) callback();
  }
  midi_.load(file, restartMusic != 0);
  return host_ ? host_->FindScene(sceneName_.text()) : SceneFunction{};
}

int32_t QVScenario::Release() {
  const std::lock_guard guard(lock_);
  wave_.stop();
  stopSong();
  stopAnimations();
  destroyWindows(TypeFrame);
  destroyWindows(TypeReleasedWindow);
  destroyWindows(TypeView);
  wave_.forget(nullptr);
  objects_.clear();
  return 0;
}

void QVScenario::EmptySecondList() {
  const std::lock_guard guard(lock_);
  secondObjects_.clear();
}

void QVScenario::stopAnimations() {
  for (const auto& object : objects_)
    if (object->typeCode() == TypeAnimationArea) object->stopAnimation(1);
}

void QVScenario::destroyWindows(int32_t code) {
  if (!host_) return;
  const WindowObject* last = nullptr;
  while (WindowObject* window = host_->FindWindowByCode(code)) {
    // A UI thread that has ended destroys nothing any more.
    if (window == last) return;
    last = window;
    host_->PostDestroyRequest(window->name.text());
  }
}

// --- Named objects ---

QVScenario::ObjectList::iterator QVScenario::findPlace(const char* name) {
  return std::ranges::find_if(objects_, [&](const auto& object) { return object->equals(name); });
}

void QVScenario::CreateObject(const char* name, int32_t code, const ObjectArguments& arguments) {
  if (!host_ || !name) return;
  if (FindObject(name) || FindWindow(name)) return;
  if (code < FirstTypeCode || code > LastTypeCode) return;

  CreateWindowRequest request;
  if (fillWindowRequest(request, code, arguments)) {
    request.host = host_;
    request.name.create(QVString::DefaultGrain, name);
    host_->PostCreateRequest(request);
    return;
  }
  const ObjectKind* kind = findObjectKind(code);
  if (kind && kind->allocate) addObject(*kind, name, arguments);
}

void QVScenario::addObject(const ObjectKind& kind, const char* name,
                           const ObjectArguments& arguments) {
  std::unique_ptr<LogicalObject> object(kind.allocate());
  if (!object) throw NotEnoughMemoryException(kind.operation);
  object->setName(name);
  object->create(*this, arguments);
  const std::lock_guard guard(lock_);
  objects_.push_back(std::move(object));
}

void QVScenario::CreateClickMap(const char* name, const ObjectArguments& arguments) {
  if (!name) return;
  if (const LogicalObject* object = FindObject(name)) {
    const int code = object->typeCode();
    if (code != TypeClickMap) {
      const ObjectKind* kind = findObjectKind(code);
      const std::string text =
          name + sjis("は、") + (kind ? sjis(kind->kindName) : std::string()) +
          sjis("オブジェクトとして\nすでに登録されています。\n何もせずに処理を継続します。");
      services().dialogs->messageBox(text, sceneName_.view(), BoxNotice);
      return;
    }
    DestroyObject(name);
  }
  CreateObject(name, TypeClickMap, arguments);
}

void QVScenario::DestroyObject(const char* name) {
  if (!host_ || !name) return;
  {
    const std::lock_guard guard(lock_);
    const auto place = findPlace(name);
    if (place != objects_.end()) {
      for (const auto& object : objects_)
        for (const void* member : {(*place)->native(), (*place)->sequence()})
          if (member) object->forget(member);
      if ((*place)->typeCode() == TypeAnimationArea && (*place)->native())
        wave_.forget(static_cast<QVAnimationArea*>((*place)->native()));
      objects_.erase(place);
      return;
    }
  }
  if (host_->FindWindowObject(name)) host_->PostDestroyRequest(name);
}

void QVScenario::DestroyObjects(std::initializer_list<const char*> names) {
  for (const char* name : names) {
    if (!name) return;
    DestroyObject(name);
  }
}

LogicalObject* QVScenario::FindObject(const char* name, int32_t code) {
  if (!name) return nullptr;
  const std::lock_guard guard(lock_);
  const auto place = findPlace(name);
  if (place == objects_.end()) return nullptr;
  return code == 0 || (*place)->typeCode() == code ? place->get() : nullptr;
}

void* QVScenario::FindNative(const char* name, int32_t code) {
  LogicalObject* object = FindObject(name, code);
  const ObjectKind* kind = object ? findObjectKind(object->typeCode()) : nullptr;
  if (!kind) return nullptr;
  switch (kind->native) {
    case NativeForm::Member:
      return object->native();
    case NativeForm::Sequence:
      return object->sequence();
    case NativeForm::None:
      break;
  }
  return nullptr;
}

WindowObject* QVScenario::FindWindow(const char* name) {
  return host_ && name ? host_->FindWindowObject(name) : nullptr;
}

WindowObject* QVScenario::FindView(const char* name) {
  WindowObject* window = FindWindow(name);
  if (window && isFrame(window->typeCode())) {
    QVString client(name);
    client.append(ClientEnding);
    window = FindWindow(client.text());
  }
  return window && window->typeCode() == TypeView ? window : nullptr;
}

void QVScenario::ConnectObjects(const char* nameA, const char* nameB, int32_t number1,
                                int32_t number2, int32_t number3) {
  if (!nameA || !nameB) return;
  auto found = findRelation(*this, nameA, nameB);
  if (found && found->relation->connect)
    found->relation->connect(*this, found->a, found->b, {number1, number2, number3});
}

void QVScenario::DisconnectObjects(const char* nameA, const char* nameB) {
  if (!nameA || !nameB) return;
  auto found = findRelation(*this, nameA, nameB);
  if (found && found->relation->disconnect) found->relation->disconnect(*this, found->a, found->b);
}

// --- Waits ---

int32_t QVScenario::WaitInput(const char* hitretName, int32_t time) {
  if (!host_) return 0;
  if (!hitretName) return host_->WaitForInput(time, 0, 0);
  auto* hitret = static_cast<QVHitret*>(FindNative(hitretName, TypeHitret));
  // A hitret that does not exist answers nothing.
  return hitret ? hitret->run(time) : 0;
}

}  // namespace qv
