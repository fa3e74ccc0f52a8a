// GMP as the oracle, spoken to in decimal text so that neither side knows the other's
// representation; edge-leaning random operands, and memory to lend.
#pragma once

#include <gmpxx.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "base/limb.h"
#include "kernels/target.h"
#include "limbs/workspace.h"

namespace tivelo {

using Number = std::vector<Limb>;

inline std::string text_of(ConstLimbs a) {
  std::string text;
  for (const Limb limb : a) text += std::to_string(std::uint64_t{kBase} + limb).substr(1);
  return text;
}

inline mpz_class big(const std::string& digits) { return mpz_class("0" + digits, 10); }
inline mpz_class big(ConstLimbs a) { return big(text_of(a)); }

inline mpz_class power_of_base(std::size_t limbs) {
  mpz_class power;
  mpz_ui_pow_ui(power.get_mpz_t(), kBase, limbs);
  return power;
}

// The limbs of a number at least zero.
inline std::size_t length_of(const mpz_class& x) {
  return x == 0 ? 0 : (x.get_str().size() + 7) / 8;
}

// `value` in `size` limbs, leading zeros included.
inline Number run_of(const mpz_class& value, std::size_t size) {
  std::string text = value.get_str();
  if (size == 0) return {};
  text.insert(0, 8 * size - text.size(), '0');
  Number run(size);
  for (std::size_t i = 0; i < size; ++i)
    run[i] = static_cast<Limb>(std::stoul(text.substr(8 * i, 8)));
  return run;
}

// Operands in runs of equal kinds: zeros, nines, near the ends, anything. Fixed seed.
class Operands {
 public:
  explicit Operands(std::uint32_t seed) : source_(seed) {}

  std::uint32_t below(std::uint32_t n) { return static_cast<std::uint32_t>(source_() % n); }

  Number any(std::size_t size) {
    Number run(size);
    std::uint32_t kind = below(6);
    for (Limb& limb : run) {
      if (below(8) == 0) kind = below(6);
      const Limb some = static_cast<Limb>(below(kBase));
      limb = kind == 0 ? 0 : kind == 1 ? kBase - 1 : kind == 2 ? below(3) : some;
      if (kind == 3) limb = kBase - 1 - below(3);
    }
    return run;
  }

  // Without a leading zero limb; the first limb is often 1, half a base or the largest.
  Number number(std::size_t size) {
    Number run = any(size);
    const Limb first[] = {1, kBase / 2, kBase - 1, 1 + below(kBase - 1)};
    if (size > 0 && (run[0] == 0 || below(2) == 0)) run[0] = first[below(4)];
    return run;
  }

 private:
  std::mt19937 source_;
};

// Aligned memory of exactly the size a function states, so that taking more ends the test program.
class LentWorkspace {
 public:
  explicit LentWorkspace(std::size_t size)
      : size_(size), data_(static_cast<std::byte*>(::operator new (size, std::align_val_t{64}))) {}
  ~LentWorkspace() { ::operator delete (data_, std::align_val_t{64}); }
  LentWorkspace(const LentWorkspace&) = delete;
  LentWorkspace& operator=(const LentWorkspace&) = delete;
  Workspace workspace() { return {data_, size_}; }

 private:
  std::size_t size_;
  std::byte* data_;
};

// Runs `test` once for each set of kernels that this processor has.
template <typename Test>
void on_every_target(const Test& test) {
  for (const char* const* name = kernels::target_names(); *name != nullptr; ++name) {
    SCOPED_TRACE(*name);
    ASSERT_TRUE(kernels::force_target(*name));
    test();
  }
  kernels::force_target(kernels::target_names()[0]);
}

}  // namespace tivelo
