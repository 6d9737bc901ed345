#pragma once

// Sanitizers make a run many times as long: they look at few of the seeds.

namespace qv::testing {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool Sanitized = true;
#else
inline constexpr bool Sanitized = false;
#endif

}  // namespace qv::testing
