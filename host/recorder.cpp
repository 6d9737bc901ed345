#include "host/recorder.h"

#include "host/play_script.h"

namespace qv {

Recorder::~Recorder() {
  if (file_) std::fclose(file_);
}

bool Recorder::open(const std::filesystem::path& file) {
  file_ = std::fopen(file.c_str(), "wb");
  if (file_) std::setvbuf(file_, nullptr, _IOLBF, 1 << 12);
  return file_ != nullptr;
}

void Recorder::write(const std::string& line) {
  if (file_) std::fprintf(file_, "%s\n", line.c_str());
}

void Recorder::taken(const DisplayEvent& event, uint32_t waitOrdinal) {
  const std::string text = scriptTextOf(event);
  if (!text.empty()) write("@" + std::to_string(waitOrdinal) + " " + text);
}

void Recorder::dragged(int fromX, int fromY, int toX, int toY, uint32_t waitOrdinal) {
  std::string line = waitOrdinal ? "@" + std::to_string(waitOrdinal) + " drag" : "now drag";
  for (const int number : {fromX, fromY, toX, toY})
    line += " " + std::to_string(number);
  write(line);
}

void Recorder::answered(BoxAnswer answer) {
  switch (answer) {
    case BoxAnswer::Ok:
      return write("answer ok");
    case BoxAnswer::Cancel:
      return write("answer cancel");
    case BoxAnswer::Retry:
      return write("answer retry");
    case BoxAnswer::Yes:
      return write("answer yes");
    case BoxAnswer::No:
      return write("answer no");
  }
}

std::string scriptTextOf(const DisplayEvent& event) {
  const std::string place = " " + std::to_string(event.x) + " " + std::to_string(event.y);
  switch (event.kind) {
    case DisplayEvent::Kind::ButtonDown:
      if (event.button == PointerButton::Left) return "click" + place;
      return event.button == PointerButton::Right ? "right" + place : std::string();
    case DisplayEvent::Kind::Wheel:
      return event.y > 0 ? "wheel UP" : "wheel DOWN";
    case DisplayEvent::Kind::KeyDown: {
      const std::string name = nameOfKey(event.key);
      return name.empty() ? std::string() : "key " + name;
    }
    default:
      return {};
  }
}

}  // namespace qv
