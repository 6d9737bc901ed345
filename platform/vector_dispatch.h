#pragma once

/// Calls the form of a loop that was compiled for the best vectors this processor has. Highway's
/// own HWY_EXPORT and HWY_DYNAMIC_DISPATCH do the same, but they need its shared library, which
/// measures a clock for three milliseconds of every start; its headers alone cost nothing.

#include <cstdint>

#include <hwy/highway.h>

namespace qv {

/// What this processor can run, in the bits of hwy/detect_targets.h. Any thread.
int64_t vectorTargets();

/// What the loops are chosen by. Any thread.
const hwy::ChosenTarget& chosenVectors();

/// For tests and benches: as if the processor had these alone, or 0: what it really has. No other
/// thread may run a loop meanwhile.
void pretendVectors(int64_t targets);

}  // namespace qv

/// QV_VECTOR_FORMS(loop); makes the table of a loop's forms, in the scope around HWY_NAMESPACE;
/// QV_VECTOR_LOOP(loop) is the form to call.
#if HWY_IDE || ((HWY_TARGETS & (HWY_TARGETS - 1)) == 0)
#define QV_VECTOR_FORMS(LOOP) static_assert(true)
#define QV_VECTOR_LOOP(LOOP) HWY_STATIC_DISPATCH(LOOP)
#else
// The first place is for a choice that has not been made; ours always is.
#define QV_VECTOR_FORMS(LOOP)                 \
  static decltype(&HWY_STATIC_DISPATCH(LOOP)) \
      const LOOP##Forms[] = {nullptr, HWY_CHOOSE_TARGET_LIST(LOOP), HWY_CHOOSE_FALLBACK(LOOP)}
#define QV_VECTOR_LOOP(LOOP) (*LOOP##Forms[qv::chosenVectors().GetIndex()])
#endif
