#pragma once

/// QVPathName: turns a scene's file name into a full classic path; "%:" names the data disc.
/// Belongs to one thread at a time.

#include <cstdint>

#include "foundation/string.h"

namespace qv {

class QVPathName {
 public:
  static constexpr int32_t ProgramFile = 30583, ProgramFolder = 30584, SystemRoot = 30586,
                           SystemFolder = 30587;

  QVPathName();
  explicit QVPathName(const char* name);
  virtual ~QVPathName() = default;

  virtual void setRelative(const char* name);  ///< current directory plus the name
  virtual void set(const QVString& name);
  virtual void set(const char* name);  ///< null: the current directory
  virtual void setSpecial(int32_t code);
  virtual void setCurrent();

  bool lacksFinalBackslash();  ///< leaves the cursor at the start
  void changeExtension(const char* extension);
  void fileName(QVString& target) const;  ///< what stands behind the last backslash
  const char* text() const { return path_.text(); }
  const QVString& path() const { return path_; }

 private:
  QVString path_;
};

}  // namespace qv
