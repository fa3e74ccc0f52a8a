// Working memory that a caller lends to the engine. A Workspace is passed by value: what a
// function takes from its copy is free again when it returns, so nested calls stack up and
// unwind by themselves, and nothing is ever allocated.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "base/internal_error.h"

namespace tivelo {

class Workspace {
 public:
  Workspace() = default;
  // Lends `size` bytes at `data`, which must be aligned to 64 bytes.
  Workspace(std::byte* data, std::size_t size) : data_(data), size_(size) {}

  // Bytes that take<T>(n) uses up, for functions that state what they need.
  template <typename T>
  static constexpr std::size_t bytes(std::size_t n) {
    return (n * sizeof(T) + 63) / 64 * 64;
  }

  // The next n elements of type T (a trivial type), aligned to 64 bytes, with unspecified content.
  // Asking for more than there is ends the program before anything is written: a function's stated
  // need was wrong, and what lies beyond belongs to others.
  template <typename T>
  std::span<T> take(std::size_t n) {
    const std::size_t used = bytes<T>(n);
    // The first comparison keeps an n for which bytes() wraps around from passing the second.
    if (n > size_ / sizeof(T) || used > size_) [[unlikely]]
      internal_error("workspace exceeded", n * sizeof(T), size_);
    T* first = reinterpret_cast<T*>(data_);
    data_ += used;
    size_ -= used;
    return {first, n};
  }

  std::size_t size() const { return size_; }

 private:
  std::byte* data_ = nullptr;
  std::size_t size_ = 0;
};

}  // namespace tivelo
