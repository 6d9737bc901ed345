#pragma once

/// How a text is cut into lines: which bytes stand on the next one, and what follows them. Pure;
/// print areas move the pen and draw.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "message/text_device.h"

namespace qv {

/// The characters that may not begin a line, as a Shift-JIS text: characters, not bytes.
class NoLineStart {
 public:
  NoLineStart() = default;
  explicit NoLineStart(std::string_view text);
  bool contains(uint16_t character) const;

 private:
  std::vector<uint16_t> characters_;  ///< sorted
};

/// The parts of a text: leading line feeds each count, others only part what stands between them.
class TextRuns {
 public:
  explicit TextRuns(std::string_view text) : text_(text) {}
  /// Takes a line feed that stands at the very beginning.
  bool takeLeadingFeed();
  /// The next run, behind any number of line feeds; empty at the end.
  std::string_view next();
  /// Whether a line feed stands behind the last run.
  bool feedFollows() const { return at_ < text_.size(); }

 private:
  std::string_view text_;
  size_t at_ = 0;
};

struct LineRequest {
  std::string_view rest;  ///< of the run, not empty
  int32_t available = 0;  ///< pixels; may be negative
  bool oneLine = false;   ///< what does not fit is thrown away
  bool lineStart = false;
};

enum class AfterLine {
  End,          ///< the run is done
  NewLine,      ///< go on with what follows
  NewLineFirst  ///< nothing fits at the pen: try again on the next line
};

struct LinePart {
  size_t bytes = 0;  ///< to draw
  AfterLine after = AfterLine::End;
};

LinePart nextLine(const LineRequest& request, const NoLineStart& noLineStart,
                  const TextStyle& style, TextDevice& device);

}  // namespace qv
