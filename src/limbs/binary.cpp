// Words are split off one by one while the number is short, and by halves while it is long: the
// quotient by a power of two has the upper half of the words, the remainder the lower one.
#include "limbs/binary.h"

#include <algorithm>
#include <bit>
#include <cassert>

#include "base/interrupt.h"
#include "limbs/divide.h"
#include "limbs/linear.h"
#include "limbs/product.h"
#include "limbs/thresholds.h"

namespace tivelo::limbs {
namespace {

constexpr std::uint32_t kWord = std::uint32_t{1} << Bits::kWordBits;

// Limbs of the power of kWord that cuts half of the words off: log(2^30) / log(10^8) < 17 / 15.
constexpr std::size_t power_room(std::size_t words) { return words * 17 / 15 + 2; }

void split(std::span<std::uint32_t> words, ConstLimbs a, Workspace ws) {
  if (a.size() < kBitsRecursion) {
    const Limbs all = ws.take<Limb>(a.size());
    std::ranges::copy(a, all.begin());
    Limbs left = all;
    for (std::uint32_t& word : words) {
      word = divide_limb(left, left, kWord);
      left = left.last(strip(left).size());
    }
    return;
  }
  poll();
  const std::size_t half = words.size() / 2;
  const Limb word[] = {kWord / kBase, kWord % kBase};
  const Limbs room = ws.take<Limb>(power_room(half));
  const ConstLimbs by = room.last(power(room, word, half, ws));
  if (a.size() < by.size()) {
    std::ranges::fill(words.subspan(half), 0);
    return split(words.first(half), a, ws);
  }
  const Limbs upper = ws.take<Limb>(a.size() - by.size() + 1);
  const Limbs lower = ws.take<Limb>(by.size());
  divide(upper, lower, a, by, ws);
  split(words.first(half), strip(lower), ws);
  split(words.subspan(half), strip(upper), ws);
}

}  // namespace

Bits::Bits(std::span<const std::uint32_t> words) : words_(words), size_(words.size() * kWordBits) {
  while (size_ > 0 && words_[size_ / kWordBits - 1] == 0) size_ -= kWordBits;
  if (size_ == 0) return;
  const std::uint32_t top = words_[size_ / kWordBits - 1];
  size_ -= kWordBits - static_cast<std::size_t>(std::bit_width(top));
}

std::size_t Bits::trailing_zeros() const {
  std::size_t zeros = 0;
  while (zeros < size_ && !(*this)[zeros]) ++zeros;
  return zeros;
}

// A half has about half of the words, and its limbs are at most those of the power.
std::size_t bits_workspace(std::size_t n) {
  std::size_t size = Workspace::bytes<Limb>(std::min(n, kBitsRecursion));
  if (n < kBitsRecursion) return size;
  const std::size_t room = power_room(bit_words(n) / 2 + 1);
  size += power_workspace(room) + divide_workspace(n);
  for (std::size_t words = bit_words(n); words > 1; words -= words / 2)
    size += 3 * Workspace::bytes<Limb>(power_room(words / 2 + 1) + 2);
  return size;
}

Bits bits_of(std::span<std::uint32_t> words, ConstLimbs a, Workspace ws) {
  assert(words.size() == bit_words(a.size()));
  split(words, a, ws);
  return Bits(words);
}

}  // namespace tivelo::limbs
