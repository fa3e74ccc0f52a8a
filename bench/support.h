// What the kernel benchmarks share: lent memory, GMP integers made from limbs by way of decimal
// text, and random operands from a fixed seed.
#pragma once

#include <gmp.h>

#include <cstddef>
#include <new>
#include <random>
#include <string>
#include <vector>

#include "base/limb.h"
#include "limbs/workspace.h"

namespace tivelo::limbs {

class Buffer {
 public:
  explicit Buffer(std::size_t size)
      : size_(size), data_(static_cast<std::byte*>(::operator new (size, std::align_val_t{64}))) {}
  ~Buffer() { ::operator delete (data_, std::align_val_t{64}); }
  Buffer(const Buffer&) = delete;
  Buffer& operator=(const Buffer&) = delete;
  operator Workspace() const { return {data_, size_}; }

 private:
  std::size_t size_;
  std::byte* data_;
};

struct Integer {
  mpz_t value;
  Integer() { mpz_init(value); }
  explicit Integer(ConstLimbs a) {
    std::string text;
    for (const Limb limb : a) text += std::to_string(std::uint64_t{kBase} + limb).substr(1);
    mpz_init_set_str(value, text.c_str(), 10);
  }
  ~Integer() { mpz_clear(value); }
  Integer(const Integer&) = delete;
  Integer& operator=(const Integer&) = delete;
};

inline std::vector<Limb> random_limbs(std::size_t n, unsigned seed) {
  std::mt19937 source(seed);
  std::uniform_int_distribution<Limb> limb(1, kBase - 1);
  std::vector<Limb> a(n);
  for (Limb& x : a) x = limb(source);
  return a;
}

}  // namespace tivelo::limbs
