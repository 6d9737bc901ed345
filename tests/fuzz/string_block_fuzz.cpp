/// Any bytes as a string block: what is read is the text that is there, and it goes round.

#include <algorithm>
#include <string_view>

#include "foundation/string.h"
#include "tests/fuzz/fuzz_files.h"

using namespace qv;
using namespace qv::fuzz;

namespace {

constexpr size_t HeadBytes = 4;
/// A step back looks over a whole run of lead bytes, so long texts would take all the time.
constexpr int32_t MostWalkedBytes = 300;

/// The text that a block of these bytes holds.
std::string_view textOf(std::string_view file) {
  size_t told = 0;
  for (size_t at = HeadBytes; at-- > 0;)
    told = told << 8 | static_cast<uint8_t>(file[at]);
  const std::string_view text = file.substr(HeadBytes, told);
  return text.substr(0, std::min(text.find('\0'), text.size()));
}

/// Walks over bytes that are no proper text stay inside it.
void walk(QVString& text) {
  const int32_t length = text.length();
  for (int32_t steps = 0; text.next(); ++steps)
    require(steps < length, "the walk does not end");
  while (text.prev())
    text.charAt();
  QVString token;
  while (text.nextToken(token, "\\\x81\x5c,", 1))
    require(token.length() <= length, "a token is longer than the text");
  text.setCursorIndex(0);
  text.findLast("\\\x83\x5c");
  text.replaceAll("\\", "\x81\x5f");
  require(text.length() <= 2 * length, "a replacement grew too much");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static FuzzFiles files;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  QVFile& input = files.input(data, size);

  QVString text("old");
  text.load(input);
  require(input.position() <= input.size(), "the position is beyond the file");
  if (size < HeadBytes) {
    require(text.equals("old"), "a text was read from less than a length");
    return 0;
  }
  require(text.view() == textOf(bytes), "the text is not the one in the file");
  require(text.capacity() <= static_cast<int64_t>(size) + QVString::DefaultGrain,
          "more was allocated than the file holds");

  QVFile& output = files.output();
  text.save(output);
  const int64_t end = output.position();
  output.seek(0, SeekFrom::Start);
  QVString again;
  again.load(output);
  require(again == text, "the text does not come back");
  require(output.position() == end, "the block is not read to its end");

  if (text.length() <= MostWalkedBytes) walk(text);
  return 0;
}
