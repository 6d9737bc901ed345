#include "platform/vector_dispatch.h"

#include <gtest/gtest.h>
#include <hwy/targets.h>

namespace {

// Its other bits are for loops without vectors and for what the compiler may use everywhere.
#if HWY_ARCH_X86
constexpr int64_t Kinds = HWY_SSSE3 | HWY_SSE4 | HWY_AVX2 | HWY_AVX3 | HWY_AVX3_DL;
#else
constexpr int64_t Kinds = HWY_STATIC_TARGET;
#endif

TEST(VectorDispatch, FindsWhatTheLibraryFinds) {
  EXPECT_EQ(qv::vectorTargets() & Kinds, hwy::SupportedTargets() & Kinds);
}

#if HWY_ARCH_X86
TEST(VectorDispatch, ChoosesTheBestOfWhatItIsTold) {
  const size_t best = qv::chosenVectors().GetIndex();
  qv::pretendVectors(HWY_SSSE3);
  const size_t least = qv::chosenVectors().GetIndex();
  qv::pretendVectors(HWY_SSSE3 | HWY_SSE4);
  const size_t more = qv::chosenVectors().GetIndex();
  qv::pretendVectors(HWY_SCALAR);
  const size_t none = qv::chosenVectors().GetIndex();
  qv::pretendVectors(0);
  EXPECT_LT(more, least) << "the table begins with the best";
  EXPECT_LT(least, none);
  EXPECT_EQ(qv::chosenVectors().GetIndex(), best);
}
#endif

}  // namespace
