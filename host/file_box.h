#pragma once

/// The file dialog in the look of the boxes: a folder's entries that match a pattern, and when
/// saving a field for the name. It reads folders through the services' file system.

#include <string>
#include <vector>

#include "host/floating_box.h"
#include "platform/dialogs/dialogs.h"
#include "platform/files/file_system.h"

namespace qv {

class FileBox : public FloatingBox {
 public:
  FileBox(const FileDialogRequest& request, TextRenderer& text);

  /// True when a file was chosen; `path` then holds its full classic path.
  bool accepted() const;
  const std::string& path() const { return path_; }
  /// Takes the proposed name, else the selected entry, else the first file. False, and nothing
  /// happens, when there is none.
  bool acceptSelected();
  void cancel();

  /// What is listed: "..", folders, then files that match.
  const std::vector<FileEntry>& entries() const { return entries_; }
  /// Index of the selected entry, or -1.
  int selected() const { return selected_; }
  const std::string& folder() const { return folder_; }
  /// The name in the field; empty where there is no field.
  const std::string& name() const { return name_; }
  /// The place of a listed entry in the screen; empty when it is scrolled away.
  BoxRect entryRect(int index) const;

 protected:
  void drawInside(Frame& frame) const override;
  bool takeInside(const DisplayEvent& event) override;
  void pressed(int result) override;
  std::optional<int> cancelResult() const override;
  bool insideTakesFocus() const override { return true; }

 private:
  void readFolder();
  void enterFolder(const std::string& name);
  void select(int index);
  void scrollTo(int top);
  bool takeKeyInside(const DisplayEvent& event);
  bool takePressInside(const DisplayEvent& event);
  void typeText(std::string_view utf8);
  void eraseCharacter();
  bool acceptName(const std::string& name);
  BoxRect listRect() const;
  BoxRect fieldRect() const;

  bool saving_;
  std::string pattern_, folder_, name_, path_;
  std::vector<FileEntry> entries_;
  int selected_ = -1, top_ = 0;
};

/// Whether a file's name matches a pattern of '*' and '?', or one of several between semicolons.
/// Shift-JIS, blind to the case of single-byte letters; "*.*" matches every name.
bool matchesPattern(std::string_view name, std::string_view pattern);

}  // namespace qv
