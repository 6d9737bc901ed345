#include "tests/vectors/case.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace qv::vectors {

namespace {

int digitOf(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  throw std::invalid_argument("a field is not lower-case hexadecimal");
}

std::string hexOfNumber(uint64_t number) {
  std::string hex(16, '0');
  for (size_t place = 16; place-- > 0; number >>= 4)
    hex[place] = "0123456789abcdef"[number & 15];
  return hex;
}

}  // namespace

std::string bytesOfHex(std::string_view hex) {
  if (hex.size() % 2) throw std::invalid_argument("a field has half a byte");
  std::string bytes;
  for (size_t at = 0; at < hex.size(); at += 2)
    bytes += static_cast<char>(digitOf(hex[at]) << 4 | digitOf(hex[at + 1]));
  return bytes;
}

std::string hexOfBytes(std::string_view bytes) {
  std::string hex;
  for (const char byte : bytes) {
    hex += "0123456789abcdef"[static_cast<uint8_t>(byte) >> 4];
    hex += "0123456789abcdef"[byte & 15];
  }
  return hex;
}

uint64_t fnv64(std::string_view bytes) {
  uint64_t digest = 0xCBF29CE484222325;
  for (const char byte : bytes)
    digest = (digest ^ static_cast<uint8_t>(byte)) * 0x100000001B3;
  return digest;
}

std::string testBytes(uint32_t seed, size_t count) {
  std::string bytes;
  for (uint32_t state = seed; bytes.size() < count;) {
    state = state * 1103515245u + 12345u;
    bytes += static_cast<char>(state >> 16 & 255);
  }
  return bytes;
}

std::string Case::bytes(const char* field) const {
  if (has(field)) return bytesOfHex(ascii(field));
  const std::string name = ascii((std::string(field) + "_file").c_str());
  std::ifstream file(folder_ / name, std::ios::binary);
  if (!file) throw std::runtime_error("the case's file " + name + " cannot be read");
  return {std::istreambuf_iterator<char>(file), {}};
}

std::optional<int64_t> Case::place(const char* field) const {
  const Json& value = fields_.at(field);
  if (value.is_null()) return std::nullopt;
  return value.get<int64_t>();
}

void Case::expectBytes(const char* field, std::string_view actual) const {
  const std::string name = field;
  if (has(field) || has((name + "_file").c_str())) {
    expectSameBytes(name, actual, bytes(field));
    return;
  }
  expectEqual(name + " size", actual.size(), fields_.at(name + "_size"));
  expectEqual(name + " digest", hexOfNumber(fnv64(actual)), fields_.at(name + "_fnv64"));
}

testing::TestPlatform& Case::platform() {
  if (!platform_) platform_ = std::make_unique<testing::TestPlatform>();
  return *platform_;
}

void expectEqual(const std::string& what, const Json& actual, const Json& expected) {
  if (actual != expected)
    throw Mismatch(what + ": " + actual.dump() + ", expected " + expected.dump());
}

void expectSameBytes(const std::string& what, std::string_view actual, std::string_view expected) {
  if (actual == expected) return;
  constexpr size_t Shown = 16;
  const auto differing =
      std::mismatch(actual.begin(), actual.end(), expected.begin(), expected.end());
  const auto at = static_cast<size_t>(differing.first - actual.begin());
  throw Mismatch(what + ": " + std::to_string(actual.size()) + " bytes, expected " +
                 std::to_string(expected.size()) + "; at " + std::to_string(at) + " \"" +
                 hexOfBytes(actual.substr(at, Shown)) + "\", expected \"" +
                 hexOfBytes(expected.substr(at, Shown)) + "\"");
}

}  // namespace qv::vectors
