#include "host/file_box.h"

#include <algorithm>

#include "host/box_drawing.h"
#include "platform/display/key_codes.h"
#include "platform/services.h"
#include "platform/text/shift_jis.h"

namespace qv {

using namespace box_look;

namespace {

constexpr int ListWidth = 400, VisibleEntries = 12, EntryHeight = 20;
constexpr int PathHeight = 22, FieldHeight = 24, FieldGap = 8;
constexpr size_t LongestName = 255;
constexpr int Accept = 1, Cancel = 2;

char lowered(char byte) {
  return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + 32) : byte;
}

/// The characters at two places are the same, apart from the case of single-byte letters.
bool sameCharacter(std::string_view a, size_t atA, std::string_view b, size_t atB, size_t bytes) {
  if (characterBytes(b, atB) != bytes) return false;
  if (bytes == 2) return a.substr(atA, 2) == b.substr(atB, 2);
  return lowered(a[atA]) == lowered(b[atB]);
}

bool matchesOne(std::string_view name, std::string_view pattern) {
  if (pattern == "*.*") return true;
  size_t at = 0, p = 0;
  size_t starAt = 0, starPattern = std::string_view::npos;
  while (at < name.size()) {
    const size_t bytes = characterBytes(name, at);
    if (p < pattern.size() && pattern[p] == '*') {
      starPattern = ++p;
      starAt = at;
    } else if (p < pattern.size() &&
               (pattern[p] == '?' || sameCharacter(name, at, pattern, p, bytes))) {
      p += pattern[p] == '?' ? 1 : bytes;
      at += bytes;
    } else if (starPattern != std::string_view::npos) {  // let the last star take one more
      starAt += characterBytes(name, starAt);
      at = starAt;
      p = starPattern;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == '*')
    ++p;
  return p == pattern.size();
}

/// Where the last part of a path begins.
size_t lastPartOf(std::string_view path) {
  size_t start = 0;
  for (size_t at = 0; at < path.size(); at += characterBytes(path, at))
    if (path[at] == '\\' || path[at] == '/' || path[at] == ':') start = at + 1;
  return start;
}

std::string withBackslash(std::string folder) {
  if (lastPartOf(folder) != folder.size()) folder += '\\';
  return folder;
}

/// A folder with its drive and a backslash at its end, whatever of these was left out.
std::string fullFolder(const std::string& folder) {
  const std::string current = services().files->currentDirectory();
  if (folder.size() >= 2 && folder[1] == ':')
    return withBackslash(folder.size() == 2 ? folder + '\\' : folder);
  if (!folder.empty() && (folder[0] == '\\' || folder[0] == '/'))
    return withBackslash(current.substr(0, 2) + folder);
  return withBackslash(current + folder);
}

bool isRoot(std::string_view folder) {
  return folder.size() <= 3;
}

bool allowedInName(char32_t character) {
  if (character < 0x20 || character == 0x7F) return false;
  return character > 0x7F || std::string_view("\\/:*?\"<>|").find(static_cast<char>(character)) ==
                                 std::string_view::npos;
}

}  // namespace

bool matchesPattern(std::string_view name, std::string_view pattern) {
  if (pattern.empty()) return true;
  for (;;) {
    const size_t end = pattern.find(';');
    if (matchesOne(name, pattern.substr(0, end))) return true;
    if (end == std::string_view::npos) return false;
    pattern.remove_prefix(end + 1);
  }
}

FileBox::FileBox(const FileDialogRequest& request, TextRenderer& text)
    : FloatingBox(
          text,
          !request.title.empty() ? request.title
                                 : sjis(request.saving ? "名前を付けて保存" : "ファイルを開く"),
          {{sjis(request.saving ? "保存" : "開く"), Accept, 0}, {sjis("キャンセル"), Cancel, 0}}),
      saving_(request.saving),
      pattern_(request.pattern) {
  const size_t last = lastPartOf(request.path);
  const std::string proposedFolder = request.path.substr(0, last);
  const std::string proposedName = request.path.substr(last);
  folder_ = fullFolder(proposedFolder.empty() ? request.folder : proposedFolder);
  layOut(ListWidth,
         PathHeight + VisibleEntries * EntryHeight + 4 + (saving_ ? FieldHeight + FieldGap : 0));
  readFolder();
  for (size_t index = 0; index < entries_.size(); ++index)
    if (!proposedName.empty() && !entries_[index].directory &&
        matchesOne(entries_[index].name, proposedName))
      select(static_cast<int>(index));
  if (saving_) name_ = proposedName;
  setFocus(std::nullopt);
}

void FileBox::readFolder() {
  entries_.clear();
  std::vector<FileEntry> files;
  if (!isRoot(folder_)) entries_.push_back({"..", true, 0});
  for (FileEntry& entry : services().files->list(folder_)) {
    if (entry.directory)
      entries_.push_back(std::move(entry));
    else if (matchesPattern(entry.name, pattern_))
      files.push_back(std::move(entry));
  }
  const size_t folders = entries_.size();
  entries_.insert(entries_.end(), files.begin(), files.end());
  top_ = 0;
  selected_ = -1;
  // The first file is what a player most likely wants; a folder only where there is no file.
  if (!entries_.empty()) select(folders < entries_.size() ? static_cast<int>(folders) : 0);
  changed();
}

void FileBox::enterFolder(const std::string& name) {
  if (name == "..") {
    std::string up = folder_.substr(0, folder_.size() - 1);
    folder_ = withBackslash(up.substr(0, lastPartOf(up)));
  } else {
    folder_ += name + '\\';
  }
  readFolder();
}

void FileBox::scrollTo(int top) {
  const int most = std::max(0, static_cast<int>(entries_.size()) - VisibleEntries);
  top = std::clamp(top, 0, most);
  if (top == top_) return;
  top_ = top;
  changed();
}

void FileBox::select(int index) {
  if (entries_.empty()) return;
  selected_ = std::clamp(index, 0, static_cast<int>(entries_.size()) - 1);
  if (selected_ < top_) scrollTo(selected_);
  if (selected_ >= top_ + VisibleEntries) scrollTo(selected_ - VisibleEntries + 1);
  changed();
}

BoxRect FileBox::listRect() const {
  const BoxRect area = inside();
  return {area.x, area.y + PathHeight, area.width, VisibleEntries * EntryHeight + 4};
}

BoxRect FileBox::fieldRect() const {
  const BoxRect list = listRect();
  return {list.x, list.y + list.height + FieldGap, list.width, saving_ ? FieldHeight : 0};
}

BoxRect FileBox::entryRect(int index) const {
  if (index < top_ || index >= top_ + VisibleEntries || index >= static_cast<int>(entries_.size()))
    return {};
  const BoxRect list = listRect().shrunk(2);
  return {list.x, list.y + (index - top_) * EntryHeight, list.width, EntryHeight};
}

bool FileBox::accepted() const {
  return chosen() == Accept;
}

void FileBox::cancel() {
  if (!done()) choose(Cancel);
}

bool FileBox::acceptName(const std::string& name) {
  if (name.empty()) return false;
  path_ = folder_ + name;
  choose(Accept);
  return true;
}

bool FileBox::acceptSelected() {
  if (done()) return false;
  if (saving_ && !name_.empty()) return acceptName(name_);
  if (selected_ >= 0 && !entries_[static_cast<size_t>(selected_)].directory)
    return acceptName(entries_[static_cast<size_t>(selected_)].name);
  for (const FileEntry& entry : entries_)
    if (!entry.directory) return acceptName(entry.name);
  return false;
}

std::optional<int> FileBox::cancelResult() const {
  return Cancel;
}

void FileBox::pressed(int result) {
  if (result == Cancel) return choose(Cancel);
  if (saving_ && !name_.empty()) {
    acceptName(name_);
    return;
  }
  if (selected_ < 0) return;
  const FileEntry entry = entries_[static_cast<size_t>(selected_)];
  if (entry.directory)
    enterFolder(entry.name);
  else
    acceptName(entry.name);
}

bool FileBox::takeInside(const DisplayEvent& event) {
  using Kind = DisplayEvent::Kind;
  switch (event.kind) {
    case Kind::KeyDown:
      return !event.alt && !focus() && takeKeyInside(event);
    case Kind::ButtonDown:
      return event.button == PointerButton::Left && takePressInside(event);
    case Kind::Wheel:
      scrollTo(top_ - 3 * event.y);
      return true;
    case Kind::Text:
      if (saving_ && !focus()) typeText(event.text);
      return true;
    default:
      return false;
  }
}

bool FileBox::takeKeyInside(const DisplayEvent& event) {
  const int before = selected_;
  const int last = static_cast<int>(entries_.size()) - 1;
  switch (event.key) {
    case KeyUp:
      select(selected_ - 1);
      break;
    case KeyDown:
      select(selected_ + 1);
      break;
    case KeyPageUp:
      select(selected_ - VisibleEntries);
      break;
    case KeyPageDown:
      select(selected_ + VisibleEntries);
      break;
    case KeyHome:
      select(0);
      break;
    case KeyEnd:
      select(last);
      break;
    case KeyBack:
      if (saving_)
        eraseCharacter();
      else if (!isRoot(folder_))
        enterFolder("..");
      return true;
    case KeyReturn:
      if (!event.repeat) pressed(Accept);
      return true;
    // These would press or leave for a button; while a name is typed they belong to the field.
    case KeySpace:
    case KeyLeft:
    case KeyRight:
      return true;
    default:
      return false;
  }
  if (saving_ && selected_ != before && !entries_[static_cast<size_t>(selected_)].directory)
    name_ = entries_[static_cast<size_t>(selected_)].name;
  return true;
}

bool FileBox::takePressInside(const DisplayEvent& event) {
  if (!listRect().contains(event.x, event.y)) {
    if (!fieldRect().contains(event.x, event.y)) return false;
    setFocus(std::nullopt);
    return true;
  }
  setFocus(std::nullopt);
  for (int index = top_; index < static_cast<int>(entries_.size()); ++index)
    if (entryRect(index).contains(event.x, event.y)) {
      const FileEntry entry = entries_[static_cast<size_t>(index)];
      const bool again = index == selected_;
      select(index);
      // A second press on a folder opens it, whatever the time between the two.
      if (entry.directory && again)
        enterFolder(entry.name);
      else if (!entry.directory && saving_)
        name_ = entry.name;
      break;
    }
  return true;
}

void FileBox::typeText(std::string_view utf8) {
  const ShiftJisResult typed = shiftJisOfUtf8(utf8);
  if (!typed.ok) return;
  for (size_t at = 0, bytes; (bytes = characterBytes(typed.text, at)) != 0; at += bytes) {
    const bool allowed = bytes == 2 || allowedInName(static_cast<unsigned char>(typed.text[at]));
    if (allowed && name_.size() + bytes <= LongestName) name_ += typed.text.substr(at, bytes);
  }
  changed();
}

void FileBox::eraseCharacter() {
  size_t last = 0;
  for (size_t at = 0; at < name_.size(); at += characterBytes(name_, at))
    last = at;
  name_.resize(last);
  changed();
}

void FileBox::drawInside(Frame& frame) const {
  const BoxRect area = inside();
  drawRun(frame, text(), area, area.x, area.y, BodyText,
          shortened(text(), BodyText, folder_, area.width), FaintInk);
  const BoxRect list = listRect();
  fillRect(frame, list, Field);
  edgeRect(frame, list, Shade, Light);
  for (int index = top_; index < static_cast<int>(entries_.size()); ++index) {
    const BoxRect row = entryRect(index);
    if (row.height == 0) break;
    const FileEntry& entry = entries_[static_cast<size_t>(index)];
    const bool chosenRow = index == selected_;
    if (chosenRow) fillRect(frame, row, ChosenBack);
    const std::string shown = entry.directory ? "[" + entry.name + "]" : entry.name;
    drawRun(frame, text(), row, row.x + 4, row.y + 2, BodyText,
            shortened(text(), BodyText, shown, row.width - 8), chosenRow ? ChosenInk : Ink);
  }
  if (!focus() && !saving_) dottedRect(frame, list.shrunk(1), FaintInk);
  if (!saving_) return;
  const BoxRect field = fieldRect();
  fillRect(frame, field, Field);
  edgeRect(frame, field, Shade, Light);
  // The end of a long name is what is being typed: its start moves out to the left.
  const BoxRect room = {field.x + 4, field.y, field.width - 10, field.height};
  const int width = text().measure(BodyText, name_);
  const int x = room.x + std::min(0, room.width - width);
  drawRun(frame, text(), room, x, field.y + 4, BodyText, name_, Ink);
  if (!focus()) fillRect(frame, {x + width + 1, field.y + 4, 1, field.height - 8}, Ink);
}

}  // namespace qv
