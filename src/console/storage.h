// The memory of the calculator: laid out here, reserved at once, touched only as numbers grow. A
// precision of 7,000,000 limbs reserves gigabytes of address space and starts in kilobytes.
#pragma once

#include <cstddef>

namespace tivelo {

// One reservation of zeroed memory, given back by release().
struct Region {
  std::byte* data = nullptr;
  std::size_t size = 0;
};

// Reserves `size` bytes. On failure `data` is null and `size` says how much was asked for.
Region reserve(std::size_t size);
void release(Region& region);

// Asks for large pages for what long numbers sweep, within [from, to).
void use_large_pages(std::byte* from, std::byte* to);

// What the caller leaves out of that where short ones begin: large pages there would be touched for
// a few bytes.
inline constexpr std::size_t kSmallPages = std::size_t{64} << 10;

// Reserves the number pool and the engine's workspace for the precision IS and attaches them.
// Returns the reservation; without `data` nothing has been attached.
Region reserve_numbers();

}  // namespace tivelo
