#pragma once

/// Benches as ratios: two ways of doing the same work, measured by turns in one run, so that a slow
/// or busy machine slows both. Each row says what, both times, the ratio and its limit.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <vector>

namespace qv::bench {

/// Tells the compiler that `value` is used.
template <typename T>
inline void keep(T&& value) {
  asm volatile("" : : "g"(&value) : "memory");
}

inline double secondsOf(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// The medians of the rounds, in seconds.
struct Pair {
  double ours, theirs;
  double ratio() const { return ours / theirs; }
};
/// Each round runs `ours`, then `theirs`, and either should take some ten milliseconds, so that the
/// clock's own grain does not matter. Another clock may be given.
inline Pair measure(const std::function<void()>& ours, const std::function<void()>& theirs,
                    int rounds = 15,
                    double (*secondsOfWork)(const std::function<void()>&) = secondsOf) {
  std::vector<double> a, b;
  ours(), theirs();  // warm
  for (int round = 0; round < rounds; ++round) {
    a.push_back(secondsOfWork(ours));
    b.push_back(secondsOfWork(theirs));
  }
  std::nth_element(a.begin(), a.begin() + rounds / 2, a.end());
  std::nth_element(b.begin(), b.begin() + rounds / 2, b.end());
  return {a[static_cast<size_t>(rounds / 2)], b[static_cast<size_t>(rounds / 2)]};
}

/// The rows of one program; `status` is what main returns.
class Table {
 public:
  /// Ours takes at most `limit` times as long as theirs.
  void atMost(const char* what, double limit, Pair pair) {
    const double ratio = pair.ours / pair.theirs;
    print(what, ratio, "<=", limit, ratio <= limit);
  }
  /// Ours is at least `limit` times as fast as theirs.
  void fasterBy(const char* what, double limit, Pair pair) {
    const double ratio = pair.theirs / pair.ours;
    print(what, ratio, ">=", limit, ratio >= limit);
  }
  /// A plain number with its bound: a rate, a time, a size.
  void atLeast(const char* what, double value, double limit) {
    print(what, value, ">=", limit, value >= limit);
  }
  void atMost(const char* what, double value, double limit) {
    print(what, value, "<=", limit, value <= limit);
  }
  /// A number without a bound.
  void note(const char* what, double value) { std::printf("%-62s %12.4g\n", what, value); }

  int status() const { return status_; }

 private:
  void print(const char* what, double value, const char* relation, double limit, bool held) {
    std::printf("%-62s %12.4g  %s %-8.6g %s\n", what, value, relation, limit,
                held ? "ok" : "BEYOND");
    if (!held) status_ = 1;
  }
  int status_ = 0;
};

}  // namespace qv::bench
