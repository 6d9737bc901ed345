#pragma once

/// Assertions about our own code, one fact each. They stay on in what players run: a broken
/// invariant is better a clear line and an end than a damaged save. Never for input (bytes of
/// files, arguments of scenes): a reader checks that and says what is wrong.

namespace qv {

/// Prints the fact with its place to the standard error and aborts.
[[noreturn]] void assertionFailed(const char* fact, const char* file, int line);

}  // namespace qv

#define QV_ASSERT(fact) \
  ((fact) ? static_cast<void>(0) : ::qv::assertionFailed(#fact, __FILE__, __LINE__))
