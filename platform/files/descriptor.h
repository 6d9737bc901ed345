#pragma once

/// A file descriptor of the machine as a value: closed with its owner. One thread at a time.

#include <utility>

#include <unistd.h>

namespace qv {

class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    if (this != &other) {
      reset();
      number_ = std::exchange(other.number_, -1);
    }
    return *this;
  }
  ~Descriptor() { reset(); }

  int get() const { return number_; }
  explicit operator bool() const { return number_ >= 0; }
  void reset() {
    if (number_ >= 0) ::close(number_);
    number_ = -1;
  }
  /// Leaves the owner empty; the caller closes.
  int release() { return std::exchange(number_, -1); }

 private:
  int number_ = -1;
};

}  // namespace qv
