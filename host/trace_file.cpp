#include "host/trace_file.h"

#include <mutex>

namespace qv {

TraceFile::TraceFile() : lock_("trace", LockRank::Leaf), startTick_(tickCount()) {}

TraceFile::~TraceFile() {
  if (file_) std::fclose(file_);
}

bool TraceFile::open(const std::filesystem::path& file) {
  file_ = std::fopen(file.c_str(), "wb");
  if (file_) std::setvbuf(file_, nullptr, _IOLBF, 1 << 16);
  return file_ != nullptr;
}

void TraceFile::line(std::string_view what, std::string_view detail) {
  std::string text = std::to_string(tickCount() - startTick_) + ' ';
  text += what;
  text += ' ';
  // One event is one line, whatever the text of a box holds.
  for (const char c : detail) {
    if (c == '\n')
      text += "\\n";
    else if (c != '\r')
      text += c;
  }
  text += '\n';
  const std::lock_guard guard(lock_);
  if (file_) std::fwrite(text.data(), 1, text.size(), file_);
}

}  // namespace qv
