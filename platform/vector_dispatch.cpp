#include "platform/vector_dispatch.h"

#if HWY_ARCH_X86
#include <cpuid.h>
#endif

namespace qv {

namespace {

#if HWY_ARCH_X86
/// What the compiler may use in the forms of each target, and whether the system keeps the
/// registers: the compiler's own question holds both. It has no word for three of them in every
/// compiler, which are asked from the processor beside a feature that brings their registers.
int64_t targetsOfProcessor() {
  unsigned a = 0, b = 0, c = 0, d = 0;
  const bool hasF16c = __get_cpuid(1, &a, &b, &c, &d) && (c & bit_F16C);
  const bool hasWideAes =
      __get_cpuid_count(7, 0, &a, &b, &c, &d) && (c & bit_VAES) && (c & bit_VPCLMULQDQ);
  if (!__builtin_cpu_supports("ssse3")) return 0;
  int64_t targets = HWY_SSSE3;
  if (!__builtin_cpu_supports("sse4.1") || !__builtin_cpu_supports("sse4.2") ||
      !__builtin_cpu_supports("aes") || !__builtin_cpu_supports("pclmul"))
    return targets;
  targets |= HWY_SSE4;
  if (!__builtin_cpu_supports("avx2") || !__builtin_cpu_supports("bmi") ||
      !__builtin_cpu_supports("bmi2") || !__builtin_cpu_supports("fma") || !hasF16c)
    return targets;
  targets |= HWY_AVX2;
  if (!__builtin_cpu_supports("avx512f") || !__builtin_cpu_supports("avx512vl") ||
      !__builtin_cpu_supports("avx512dq") || !__builtin_cpu_supports("avx512bw"))
    return targets;
  targets |= HWY_AVX3;
  if (!__builtin_cpu_supports("avx512vbmi") || !__builtin_cpu_supports("avx512vbmi2") ||
      !__builtin_cpu_supports("avx512vnni") || !__builtin_cpu_supports("avx512bitalg") ||
      !__builtin_cpu_supports("avx512vpopcntdq") || !hasWideAes)
    return targets;
  return targets | HWY_AVX3_DL;
}
#else
/// Elsewhere the compiler's own target is the one that is sure to be there.
int64_t targetsOfProcessor() {
  return HWY_STATIC_TARGET;
}
#endif

struct Choice {
  hwy::ChosenTarget target;
  Choice() { target.Update(vectorTargets()); }
};

Choice& choice() {
  static Choice theChoice;
  return theChoice;
}

}  // namespace

int64_t vectorTargets() {
  static const int64_t targets = targetsOfProcessor();
  return targets;
}

const hwy::ChosenTarget& chosenVectors() {
  return choice().target;
}

void pretendVectors(int64_t targets) {
  choice().target.Update(targets ? targets : vectorTargets());
}

}  // namespace qv
