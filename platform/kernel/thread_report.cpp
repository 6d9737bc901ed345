#include "platform/kernel/thread_report.h"

#include <string_view>

namespace qv {

namespace {

std::string quotedList(const std::vector<std::string>& names, std::string_view separator) {
  std::string text;
  for (const std::string& name : names) {
    if (!text.empty()) text += separator;
    text += '"' + name + '"';
  }
  return text;
}

const char* kindName(WaitKind kind) {
  switch (kind) {
    case WaitKind::Work:
      return "work";
    case WaitKind::Input:
      return "input";
    case WaitKind::Service:
      return "service";
  }
  return "";
}

std::string doing(const ThreadNote& note) {
  switch (note.doing) {
    case ThreadNote::Doing::Runs:
      return "runs";
    case ThreadNote::Doing::WaitsForLock:
      return "waits for lock \"" + note.lock + "\"" +
             (note.holder.empty() ? "" : " held by \"" + note.holder + "\"");
    case ThreadNote::Doing::Joins:
      return "waits for the end of thread \"" + note.holder + "\"";
    case ThreadNote::Doing::WaitsForEvents:
      break;
  }
  if (note.events.empty()) return "sleeps";
  return "waits for event " + quotedList(note.events, " or ") + " (" + kindName(note.kind) + ")";
}

}  // namespace

std::vector<std::string> lockNames(const std::vector<LockBody*>& locks) {
  std::vector<std::string> names;
  names.reserve(locks.size());
  for (const LockBody* lock : locks)
    names.push_back(lock->name());
  return names;
}

std::string describeThread(const ThreadNote& note) {
  std::string line =
      "  thread " + std::to_string(note.id) + " \"" + note.name + "\" " + doing(note);
  if (note.limited) {
    line += " until tick " + std::to_string(note.deadlineTick);
  } else if (note.doing != ThreadNote::Doing::Runs) {
    line += " without limit";
  }
  line += note.held.empty() ? "; holds no lock" : "; holds lock " + quotedList(note.held, ", ");
  if (note.terminated) line += "; was asked to end";
  return line + '\n';
}

std::string faultReport(const std::string& why, uint32_t tick, const std::string& threads) {
  return "Fault at tick " + std::to_string(tick) + ": " + why + "\n" + threads;
}

}  // namespace qv
