/// File descriptors that close themselves.
#pragma once

#include <utility>

#include <unistd.h>

/// The owner of an open descriptor, or of none.
class Descriptor {
 public:
  Descriptor() = default;
  /// Takes it over; a negative number is none.
  explicit Descriptor(int opened) : number_(opened) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { close(); }

  int get() const { return number_; }  ///< negative where it owns none
  void close() {
    if (number_ >= 0) {
      ::close(std::exchange(number_, -1));
    }
  }

 private:
  int number_ = -1;
};
