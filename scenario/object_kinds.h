#pragma once

/// The kinds of named objects that the manager can make, as one table: a new kind is a class and
/// one row in object_kinds.cpp. Logical objects belong to the manager; windows are asked for from
/// the host. Scenario thread; the tables do not change while a game runs.

#include <array>
#include <concepts>
#include <cstdint>
#include <memory>
#include <span>

#include "scenario/file_block.h"
#include "scenario/type_codes.h"

namespace qv {

class QVScenario;
struct CreateWindowRequest;

/// One of the arguments of CreateObject: a number or a pointer, as the code of the kind says.
class ObjectArgument {
 public:
  constexpr ObjectArgument() = default;
  template <std::integral T>
  constexpr ObjectArgument(T number) : word_(static_cast<intptr_t>(number)) {}  // NOLINT: by value
  ObjectArgument(const void* pointer)                                           // NOLINT: by value
      : word_(reinterpret_cast<intptr_t>(pointer)) {}
  constexpr ObjectArgument(std::nullptr_t) {}  // NOLINT: by value

  int32_t number() const { return static_cast<int32_t>(word_); }
  intptr_t word() const { return word_; }
  explicit operator bool() const { return word_ != 0; }
  /// Null for zero. The caller vouches for the type, as the table of codes does.
  template <class T>
  const T* pointer() const {
    return reinterpret_cast<const T*>(word_);
  }
  const char* text() const { return pointer<char>(); }

 private:
  intptr_t word_ = 0;
};

/// a1 to a8; what is not given is zero.
struct ObjectArguments {
  ObjectArgument a1{}, a2{}, a3{}, a4{}, a5{}, a6{}, a7{}, a8{};
};

/// A named object of the manager: a name with its guard, and an engine object as member.
class LogicalObject : public QVFileBlock {
 public:
  int typeCode() const override = 0;
  /// The member object.
  virtual void* native() { return nullptr; }
  /// The sequence proper of an animation sequence.
  virtual void* sequence() { return nullptr; }
  /// Makes the member by the arguments; called once, with the name set.
  virtual void create(QVScenario& /*manager*/, const ObjectArguments& /*arguments*/) {}
  /// Stops an animation area. The manager's lock is held: the area's thread must not ask for it.
  virtual void stopAnimation(int32_t /*flag*/) {}
  /// A member of another object, which this one may use, is about to go. The manager's lock is
  /// held.
  virtual void forget(const void* /*member*/) {}
};

/// What FindNative gives of a kind.
enum class NativeForm { None, Member, Sequence };

struct ObjectKind {
  int typeCode;
  const char* operation;  ///< title when memory fails
  const char* kindName;   ///< UTF-8, for the box about a taken name; empty where it has none
  NativeForm native;
  LogicalObject* (*allocate)();  ///< null when memory fails; no function: not built yet
};

/// The creator of a row of the table.
template <std::derived_from<LogicalObject> T>
LogicalObject* allocateObject() {
  return new (std::nothrow) T;
}

/// The kind of that code, or null.
const ObjectKind* findObjectKind(int typeCode);

/// Fills a request for a window of that code; false if the code is none of a window.
bool fillWindowRequest(CreateWindowRequest& request, int typeCode,
                       const ObjectArguments& arguments);

/// True for a frame, whose work is done by the view of its name + "Client".
constexpr bool isFrame(int typeCode) {
  return typeCode == TypeFrame || typeCode == TypeFrameless;
}

/// Puts rows before the table's own while it lives, for tests of the manager.
class ObjectKindsScope {
 public:
  explicit ObjectKindsScope(std::span<const ObjectKind> kinds);
  ~ObjectKindsScope();
  ObjectKindsScope(const ObjectKindsScope&) = delete;
  ObjectKindsScope& operator=(const ObjectKindsScope&) = delete;

 private:
  std::span<const ObjectKind> previous_;
};

}  // namespace qv
