#pragma once

/// Boxes and file dialogs as the engine asks for them. The host draws them in the game screen, a
/// play script answers them, and tests give a form that records. Callable from any thread; the
/// call returns when the box is answered. All texts are Shift-JIS.

#include <cstdint>
#include <string>
#include <string_view>

namespace qv {

inline constexpr uint32_t BoxNotice = 0x12000;       ///< one OK button
inline constexpr uint32_t BoxRetryCancel = 0x12005;  ///< file errors
inline constexpr uint32_t BoxYesNo = 0x12004;
inline constexpr uint32_t BoxButtonMask = 0xF;  ///< 0 OK, 1 OK cancel, 3 yes no cancel, ...

enum class BoxAnswer { Ok = 1, Cancel = 2, Retry = 4, Yes = 6, No = 7 };

struct FileDialogRequest {
  bool saving = false;
  std::string title;
  std::string pattern;  ///< "*.bmp"
  std::string folder;   ///< classic path
  std::string path;     ///< in: proposed name; out: the full classic path chosen
};

class Dialogs {
 public:
  virtual ~Dialogs() = default;
  virtual BoxAnswer messageBox(std::string_view text, std::string_view caption, uint32_t flags) = 0;
  /// False when cancelled; `request.path` is then left alone.
  virtual bool fileDialog(FileDialogRequest& request) = 0;
};

}  // namespace qv
