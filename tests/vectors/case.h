#pragma once

/// One worked case and what its runner needs: typed access to its fields, checks that name what
/// differed first, and a platform to stand on. cases/README.md tells the form of the files.

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "tests/support/test_platform.h"

namespace qv::vectors {

using Json = nlohmann::json;

/// What differed first in a case.
class Mismatch : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

std::string bytesOfHex(std::string_view hex);
std::string hexOfBytes(std::string_view bytes);
/// FNV-1a, 64 bits.
uint64_t fnv64(std::string_view bytes);
/// `count` bytes of the seeded source that the cases' images and tables come from.
std::string testBytes(uint32_t seed, size_t count);

class Case {
 public:
  /// `folder` is where the case's file lies, for what it stores beside it.
  Case(const Json& fields, const std::filesystem::path& folder)
      : fields_(fields), folder_(folder) {}

  bool has(const char* field) const { return fields_.contains(field); }
  const Json& operator[](const char* field) const { return fields_.at(field); }
  int64_t integer(const char* field) const { return fields_.at(field).get<int64_t>(); }
  int32_t int32(const char* field) const { return static_cast<int32_t>(integer(field)); }
  uint32_t uint32(const char* field) const { return static_cast<uint32_t>(integer(field)); }
  bool flag(const char* field) const { return fields_.at(field).get<bool>(); }
  std::string ascii(const char* field) const { return fields_.at(field).get<std::string>(); }
  /// The bytes of a field in hexadecimal, or of the file that FIELD_file names.
  std::string bytes(const char* field) const;
  /// Nothing where the field is null.
  std::optional<int64_t> place(const char* field) const;

  /// Compares with the field, or with FIELD_file, or with its size and digest.
  void expectBytes(const char* field, std::string_view actual) const;

  /// Made when first asked for; a case has its own folders.
  testing::TestPlatform& platform();

 private:
  const Json& fields_;
  const std::filesystem::path& folder_;
  std::unique_ptr<testing::TestPlatform> platform_;
};

/// Throws Mismatch "WHAT: A, expected B" when the two differ.
void expectEqual(const std::string& what, const Json& actual, const Json& expected);
/// The same for byte texts, shown in hexadecimal from where they differ.
void expectSameBytes(const std::string& what, std::string_view actual, std::string_view expected);

/// A kind of case and what runs it: returns when all is as the case says, throws otherwise.
struct Kind {
  const char* name;
  void (*run)(Case&);
};

/// Everything of one file's topic: the kinds that are run, and those whose code is not built yet.
/// Kinds are names within their topic.
struct Topic {
  const char* name;
  std::span<const Kind> kinds;
  std::vector<std::string_view> awaited;
};

std::span<const Kind> bitmapKinds();
std::span<const Kind> blendLevelKinds();
std::span<const Kind> clickMapKinds();
std::span<const Kind> effectKinds();
std::span<const Kind> kernelKinds();
std::span<const Kind> layoutKinds();
std::span<const Kind> mcgKinds();
std::span<const Kind> messageKinds();
std::span<const Kind> midiKinds();
std::span<const Kind> paletteKinds();
std::span<const Kind> registerKinds();
std::span<const Kind> saveKinds();
std::span<const Kind> sequenceKinds();
std::span<const Kind> soundKinds();
std::span<const Kind> standingKinds();
std::span<const Kind> stringKinds();
std::span<const Kind> surfaceKinds();
std::span<const Kind> viewKinds();

}  // namespace qv::vectors
