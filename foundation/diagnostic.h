#pragma once

/// The exception family: each object has a title, which as a rule names the operation, and a
/// message, and it can show itself. Thrown by value, caught by reference. Nearly all are fatal to
/// the run; ExitScenarioException and AbortDemoException are ordinary control flow.
///
/// The classes are visible across shared libraries: an exception that a scene of the game module
/// lets pass is caught by its class in the host.

namespace qv {

class [[gnu::visibility("default")]] Diagnostic {
 public:
  /// Keeps private copies of both texts (Shift-JIS). A text that cannot be allocated stays null:
  /// this is the reporting path itself, and it never fails.
  Diagnostic(const char* title, const char* message) noexcept;
  /// Shares the other's texts, which carry a count: a runtime that copies an exception object to
  /// throw it destroys two of them, and the second must find the texts still its own.
  Diagnostic(const Diagnostic& other) noexcept;
  Diagnostic& operator=(const Diagnostic&) = delete;
  virtual ~Diagnostic();

  virtual void show(const void* owner) const;  ///< a box with one OK button
  virtual void showDefault() const;            ///< the same without owner
  virtual const char* title() const;           ///< may be null
  virtual void setTitle(const char* title);    ///< a null is ignored
  virtual const char* message() const;         ///< may be null
  virtual void setMessage(const char* message);
  virtual void appendMessage(const char* more);  ///< a null or empty text is ignored

 private:
  char* title_ = nullptr;
  char* message_ = nullptr;
};

class [[gnu::visibility("default")]] ExitScenarioException : public Diagnostic {
 public:
  ExitScenarioException() noexcept;
};

class [[gnu::visibility("default")]] AbortDemoException : public Diagnostic {
 public:
  AbortDemoException() noexcept;
};

class [[gnu::visibility("default")]] NotEnoughMemoryException : public Diagnostic {
 public:
  explicit NotEnoughMemoryException(const char* operation) noexcept;
};

class [[gnu::visibility("default")]] CannotOpenException : public Diagnostic {
 public:
  explicit CannotOpenException(const char* fileName) noexcept;
};

class [[gnu::visibility("default")]] CannotReadException : public Diagnostic {
 public:
  explicit CannotReadException(const char* fileName) noexcept;
};

class [[gnu::visibility("default")]] CannotWriteException : public Diagnostic {
 public:
  explicit CannotWriteException(const char* fileName) noexcept;
};

}  // namespace qv
