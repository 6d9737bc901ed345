#pragma once

/// QVFileBlock: a name with its guard. Blocks in files begin with their name, and named objects of
/// the manager are found by theirs.

#include "foundation/string.h"

namespace qv {

class QVFile;

class QVFileBlock {
 public:
  virtual ~QVFileBlock() = default;
  virtual void setName(const QVString& name) { name_ = name; }
  virtual void setName(const char* name) { name_.create(QVString::DefaultGrain, name); }
  virtual int typeCode() const { return 0; }
  virtual bool equals(const QVString& name) const { return name_ == name; }
  virtual bool equals(const char* name) const { return name_.equals(name); }
  /// True when the file's next block bears this name; the position then stands behind the name.
  /// Otherwise the position is where it was.
  virtual bool checkHeader(QVFile& file) const;
  virtual QVString& name() { return name_; }
  virtual void writeName(QVFile& file) const;
  virtual void readName(QVFile& file);

 private:
  QVString name_;
};

}  // namespace qv
