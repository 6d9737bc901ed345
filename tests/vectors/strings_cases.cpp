#include "foundation/string.h"
#include "tests/vectors/case.h"
#include "tests/vectors/files.h"

namespace qv::vectors {
namespace {

QVString stringOf(const std::string& bytes, int32_t grain = QVString::DefaultGrain) {
  return QVString(bytes.c_str(), grain);
}

/// Byte index of a place in the text; null for none.
Json indexIn(const QVString& text, const char* place) {
  return place ? Json(place - text.text()) : Json();
}

void capacity(Case& given) {
  for (const Json& row : given["rows"]) {
    const auto length = row.at(1).get<size_t>();
    const QVString text = stringOf(std::string(length, 'x'), row.at(0).get<int32_t>());
    expectEqual("row " + row.dump(), text.capacity(), row.at(2));
  }
}

void appendGrowth(Case& given) {
  QVString text = stringOf("", given.int32("grain"));
  expectEqual("start_capacity", text.capacity(), given["start_capacity"]);
  for (const Json& row : given["rows"]) {
    const void* before = text.body();
    text.append(std::string(row.at(0).get<size_t>(), 'x').c_str());
    const Json after = {row.at(0), text.length(), text.capacity(), text.body() != before};
    expectEqual("row", after, row);
  }
}

void appendShared(Case& given) {
  QVString owner = stringOf(given.bytes("text"), given.int32("grain"));
  const QVString other(owner);
  const void* before = owner.body();
  owner.append(given.bytes("append").c_str());
  given.expectBytes("owner", owner.view());
  given.expectBytes("other", other.view());
  expectEqual("new_body", owner.body() != before, given["new_body"]);
  expectEqual("refs", Json({owner.references(), other.references()}), given["refs"]);
}

void appendInt(Case& given) {
  for (const Json& row : given["rows"]) {
    QVString text;
    text.appendInt(row.at(0).get<int32_t>(), row.at(1), row.at(2));
    const std::string expected(row.at(3).get<size_t>(), ' ');
    expectEqual("row " + row.dump(), text.text(), expected + row.at(4).get<std::string>());
  }
}

void appendUInt(Case& given) {
  for (const Json& row : given["rows"]) {
    QVString text;
    text.appendUInt(row.at(0).get<uint32_t>(), row.at(1), row.at(2));
    const std::string expected(row.at(3).get<size_t>(), ' ');
    expectEqual("row " + row.dump(), text.text(), expected + row.at(4).get<std::string>());
  }
}

Json here(const QVString& text) {
  return {text.cursorIndex(), text.charAt()};
}

void walk(Case& given) {
  QVString text = stringOf(given.bytes("text"));
  Json forward = Json::array({here(text)}), results = Json::array(), backward = Json::array();
  while (forward.size() < given["forward"].size()) {
    results.push_back(text.next());
    forward.push_back(here(text));
  }
  expectEqual("forward", forward, given["forward"]);
  expectEqual("next_results", results, given["next_results"]);
  text.setCursorIndex(text.length());
  while (backward.size() < given["backward"].size()) {
    text.prev();
    backward.push_back(here(text));
  }
  expectEqual("backward", backward, given["backward"]);
}

void seek(Case& given) {
  QVString text = stringOf(given.bytes("text"));
  for (int32_t step = 0; step < given.int32("start_char"); ++step)
    text.next();
  const auto origin = static_cast<QVString::Origin>(given.int32("origin"));
  expectEqual("result", text.seek(given.int32("offset"), origin), given["result"]);
  if (given.place("byte_index")) expectEqual("byte_index", text.cursorIndex(), given["byte_index"]);
}

/// What is the same for every search: its place, and the cursor after it.
void expectSearch(Case& given, const char* (QVString::*search)(const char*), const char* field) {
  QVString text = stringOf(given.bytes("text"));
  const std::string sought = given.bytes(field);
  const char* place = (text.*search)(sought.c_str());
  expectEqual("position", indexIn(text, place), given["position"]);
  expectEqual("cursor", text.cursorIndex(), given["cursor"]);
  if (!given.has("all_by_next")) return;
  Json hits = Json::array();
  // One hit more than the text has places shows a search that stands still.
  for (; place && hits.size() <= text.view().size(); place = (text.*search)(sought.c_str())) {
    hits.push_back(indexIn(text, place));
    text.next();
  }
  expectEqual("all_by_next", hits, given["all_by_next"]);
}

void find(Case& given) {
  expectSearch(given, &QVString::find, "needle");
}
void findChars(Case& given) {
  expectSearch(given, &QVString::findChars, "set");
}
void findNotChars(Case& given) {
  expectSearch(given, &QVString::findNotChars, "set");
}

void replaceAll(Case& given) {
  QVString text = stringOf(given.bytes("text"));
  text.replaceAll(given.bytes("old").c_str(), given.bytes("new").c_str());
  given.expectBytes("expect", text.view());
}

void nextToken(Case& given) {
  QVString text = stringOf(given.bytes("text")), token;
  const std::string separators = given.bytes("separators");
  Json tokens = Json::array();
  while (tokens.size() <= text.view().size() &&
         text.nextToken(token, separators.c_str(), given.int32("keep")))
    tokens.push_back({hexOfBytes(token.view()), text.cursorIndex()});
  expectEqual("tokens", tokens, given["tokens"]);
}

void substring(Case& given) {
  given.platform();  // a refusal shows a box
  const QVString text = stringOf(given.bytes("text"));
  const auto placeOf = [&](const char* field) {
    const auto index = given.place(field);
    return index ? text.text() + *index : nullptr;
  };
  QVString target;
  text.substring(target, placeOf("from"), placeOf("to"));
  given.expectBytes("expect", target.view());
}

void stringBlock(Case& given) {
  const QVString text = stringOf(given.bytes("text"));
  const std::string block = bytesWritten(given.platform(), [&](QVFile& file) { text.save(file); });
  given.expectBytes("expect", block);
  QVFile file;
  openInput(given.platform(), file, block);
  QVString read("old");
  read.load(file);
  expectSameBytes("read back", read.view(), text.view());
}

constexpr Kind Kinds[] = {
    {"append_growth", appendGrowth},
    {"append_int", appendInt},
    {"append_shared", appendShared},
    {"append_uint", appendUInt},
    {"capacity", capacity},
    {"find", find},
    {"find_chars", findChars},
    {"find_not_chars", findNotChars},
    {"next_token", nextToken},
    {"replace_all", replaceAll},
    {"seek", seek},
    {"string_block", stringBlock},
    {"substring", substring},
    {"walk", walk},
};

}  // namespace

std::span<const Kind> stringKinds() {
  return Kinds;
}

}  // namespace qv::vectors
