#pragma once

/// The exception family: each object has a title, which as a rule names the operation, and a
/// message, and it can show itself. Thrown by value, caught by reference. Nearly all are fatal to
/// the run; ExitScenarioException and AbortDemoException are ordinary control flow.

namespace qv {

class Diagnostic {
 public:
  /// Keeps private copies of both texts (Shift-JIS). A text that cannot be allocated stays null:
  /// this is the reporting path itself.
  Diagnostic(const char* title, const char* message);
  /// Shares the other's texts: an exception object is never copied to live beside the first.
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

class ExitScenarioException : public Diagnostic {
 public:
  ExitScenarioException();
};

class AbortDemoException : public Diagnostic {
 public:
  AbortDemoException();
};

class NotEnoughMemoryException : public Diagnostic {
 public:
  explicit NotEnoughMemoryException(const char* operation);
};

class CannotOpenException : public Diagnostic {
 public:
  explicit CannotOpenException(const char* fileName);
};

class CannotReadException : public Diagnostic {
 public:
  explicit CannotReadException(const char* fileName);
};

class CannotWriteException : public Diagnostic {
 public:
  explicit CannotWriteException(const char* fileName);
};

}  // namespace qv
