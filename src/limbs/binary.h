// The bits of a number, for the chains of squarings that powers are.
#pragma once

#include <cstdint>
#include <span>

#include "base/limb.h"
#include "limbs/workspace.h"

namespace tivelo::limbs {

// The bits of a number, least significant first, in words of kWordBits.
class Bits {
 public:
  static constexpr std::size_t kWordBits = 30;

  Bits() = default;
  explicit Bits(std::span<const std::uint32_t> words);

  // Bits up to the leading one, which is set; 0 for zero.
  std::size_t size() const { return size_; }
  bool operator[](std::size_t i) const { return (words_[i / kWordBits] >> i % kWordBits & 1) != 0; }
  // The zeros below the lowest one; size() for zero.
  std::size_t trailing_zeros() const;

 private:
  std::span<const std::uint32_t> words_;
  std::size_t size_ = 0;
};

// Words that hold the bits of n limbs: log2(10^8) / 30 < 8 / 9.
constexpr std::size_t bit_words(std::size_t n) { return n * 8 / 9 + 1; }

// Bytes of workspace for bits_of() a number of n limbs. Monotone.
std::size_t bits_workspace(std::size_t n);

// The bits of a, which has no leading zero limbs, in `words` of bit_words(a.size()).
Bits bits_of(std::span<std::uint32_t> words, ConstLimbs a, Workspace ws);

}  // namespace tivelo::limbs
