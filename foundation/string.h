#pragma once

/// QVString: the engine's text. Shift-JIS bytes in a shared, reference-counted body, with a cursor
/// in the text, so that the engine's parsers walk it character by character. Copies may pass
/// between threads (the count is atomic); text and cursor belong to one thread at a time, and a
/// writer of a shared body copies first.

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace qv {

class QVFile;

class QVString {
 public:
  static constexpr int32_t DefaultGrain = 256, PathGrain = 512, TokenGrain = 32, LeastGrain = 16;
  enum Origin { Start = 0, Current = 1, End = 2 };

  QVString();  ///< an empty body with grain 256
  explicit QVString(const char* text, int32_t grain = DefaultGrain);
  QVString(const QVString& other);
  QVString& operator=(const QVString& other);
  virtual ~QVString();

  /// Drops the old body; a new one holds the text (null counts as empty). Gives the text.
  /// Throws NotEnoughMemoryException.
  const char* create(int32_t grain, const char* text);
  void append(const char* text);  ///< in place where the body has room and is not shared
  void append(const QVString& text);
  void appendCount(const char* text, int32_t count);  ///< at most `count` bytes
  /// Width 0: as long as needed; more than needed: padded with spaces on the left; less: the
  /// rightmost digits stay. Radix 2 to 36, digits in lower case.
  void appendInt(int32_t value, int32_t radix = 10, int32_t width = 0);
  void appendUInt(uint32_t value, int32_t radix = 10, int32_t width = 0);
  void clear();

  /// Block: 4 bytes length with the terminating zero, then the bytes. A closed file is passed over.
  void save(QVFile& file) const;
  /// Reads such a block. A length that the file cannot hold gives the text that is there; where
  /// not even a length is left, the text stays as it was. The text ends at its first zero.
  void load(QVFile& file);

  const char* text() const;
  int32_t length() const;    ///< bytes without the final zero
  int32_t capacity() const;  ///< bytes allocated
  int32_t grain() const;
  int32_t references() const;
  const void* body() const { return rep_; }
  std::string_view view() const { return {text(), static_cast<size_t>(length())}; }

  const char* cursor() const { return cursor_; }
  int32_t cursorIndex() const;         ///< bytes from the start
  void setCursorIndex(int32_t index);  ///< clamped to the text

  int next();               ///< 1 unless the cursor now stands on the end
  int prev();               ///< 1 unless the cursor is at the start
  uint16_t charAt() const;  ///< 8 or 16 bits (lead * 256 + trail); 0 on the end
  /// Moves by characters; gives the character there. A refused seek gives 0 and moves nothing.
  uint16_t seek(int32_t offset, Origin origin);

  // Searches from the cursor; a hit sets the cursor and gives its place, a miss gives null.
  const char* find(const char* text);
  const char* findChars(const char* set);
  const char* findLast(const char* set);
  const char* findNotChars(const char* set);
  const char* findToken(const char* text, const char* separators);
  void replaceAll(const char* old, const char* replacement);
  const char* nextToken(QVString& target, const char* separators, int keep);
  /// Both ends inside the result; null means that end of the text; swapped ends are swapped back.
  /// Ends outside the text show a box and leave the target as it was.
  void substring(QVString& target, const char* from, const char* to) const;

  friend QVString operator+(const QVString& left, const QVString& right);
  bool operator==(const QVString& other) const { return view() == other.view(); }
  bool equals(const char* other) const;

 private:
  class Body;
  void take(Body* body);  ///< drops the old body; the cursor goes to the start
  const char* createView(int32_t grain, std::string_view text, const char* failureTitle);
  void appendPadded(size_t spaces, std::string_view text);
  const char* cursorOn(size_t place);  ///< npos: on the end, and null

  Body* rep_;  ///< never null
  const char* cursor_;
};

}  // namespace qv
