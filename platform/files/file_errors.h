#pragma once

/// The machine's error numbers as the classic platform's codes. Pure; any thread.

#include <cstdint>

namespace qv {

/// 0 gives FileOk; a number without a counterpart gives FileGeneralFailure.
uint32_t fileErrorOfErrno(int number);

}  // namespace qv
