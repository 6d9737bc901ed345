#pragma once

/// The few vector operations that the rows need, on blocks of 16 bytes and less, in the compiler's
/// own vector types: whatever every processor of its kind has (SSE2 on x86-64), which Highway
/// leaves to single lanes. Names and meanings are Highway's, so that the rows are written once.

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace qv::blocks {

template <class T, size_t N>
struct Tag {
  using Lane = T;
  static constexpr size_t Count = N;
  using Vec [[gnu::vector_size(sizeof(T) * N)]] = T;
};

template <class T, size_t MostLanes>
using CappedTag = Tag<T, (MostLanes < 16 / sizeof(T) ? MostLanes : 16 / sizeof(T))>;
template <class D>
using Half = Tag<typename D::Lane, D::Count / 2>;
template <class T, class D>
using Rebind = Tag<T, D::Count>;
template <class T, class D>
using Repartition = Tag<T, D::Count * sizeof(typename D::Lane) / sizeof(T)>;
template <class D>
using Vec = typename D::Vec;

template <class D>
constexpr size_t Lanes(D) {
  return D::Count;
}
template <class D>
constexpr size_t MaxLanes(D) {
  return D::Count;
}

template <class D>
inline Vec<D> Set(D, typename D::Lane value) {
  return Vec<D>{} + value;
}
template <class D>
inline Vec<D> LoadU(D, const typename D::Lane* place) {
  Vec<D> vector;
  std::memcpy(&vector, place, sizeof vector);
  return vector;
}
template <class D>
inline void StoreU(Vec<D> vector, D, typename D::Lane* place) {
  std::memcpy(place, &vector, sizeof vector);
}
template <class D, class V>
inline Vec<D> BitCast(D, V vector) {
  return reinterpret_cast<Vec<D>>(vector);
}
template <class D, class V>
inline Vec<D> PromoteTo(D, V vector) {
  return __builtin_convertvector(vector, Vec<D>);
}

/// All bits of a lane where the two are equal, else none.
template <class V>
inline V Eq(V a, V b) {
  return reinterpret_cast<V>(a == b);
}
template <class D>
inline Vec<D> VecFromMask(D, Vec<D> mask) {
  return mask;
}
template <class V>
inline V IfThenElse(V mask, V yes, V no) {
  return (mask & yes) | (~mask & no);
}
template <class V>
inline V And(V a, V b) {
  return a & b;
}
template <class V>
inline V AndNot(V notThese, V of) {
  return ~notThese & of;
}
template <class V>
inline V Or(V a, V b) {
  return a | b;
}
template <class V>
inline V Add(V a, V b) {
  return a + b;
}
template <class V>
inline V Mul(V a, V b) {
  return a * b;
}
template <int Bits, class V>
inline V ShiftLeft(V vector) {
  return vector << Bits;
}
template <int Bits, class V>
inline V ShiftRight(V vector) {
  return vector >> Bits;
}

}  // namespace qv::blocks
