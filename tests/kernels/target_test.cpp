#include "kernels/target.h"

#include <cstring>

#include "support/oracle.h"

namespace tivelo::kernels {
namespace {

TEST(Target, UnknownNameChangesNothing) {
  const Target* before = &target();
  EXPECT_FALSE(force_target("none"));
  EXPECT_EQ(&target(), before);
  const char* const* name = target_names();
  while (name[1] != nullptr) ++name;
  EXPECT_STREQ(*name, "portable");
}

TEST(Target, ShapesAreLongEnoughAndHardlyLonger) {
  for (std::size_t n = 1; n < 20000; ++n) {
    const Shape s = shape_for(n);
    ASSERT_TRUE(s.k >= kShortestTransform && (s.u == 1 || (s.u >= 5 && s.u <= 8))) << n;
    ASSERT_GE(transform_length(s), n);
    const Shape chosen = product_shape(n, n);
    const std::size_t length = product_coefficients(n, n);
    ASSERT_TRUE(transform_length(chosen) >= length ||
                (chosen.u != 7 && 32 * (length - transform_length(chosen)) <= n))
        << n;
    const Shape cyclic = cyclic_shape_for(n);
    ASSERT_TRUE(cyclic.u != 7 && (s.u == 7 || transform_length(cyclic) == transform_length(s)));
    ASSERT_TRUE(transform_length(cyclic) >= n && (n < 256 || 3 * transform_length(cyclic) <= 4 * n))
        << n;
    if (n >= 256) {
      ASSERT_LE(4 * transform_length(s), 5 * n) << n;
    }
  }
}

// Every count of blocks, the largest factors, and columns that wrap around.
void rows() {
  Operands operands(41);
  alignas(64) std::uint64_t u[5 * kRowBlock];
  for (std::size_t blocks = 0; blocks <= 5; ++blocks) {
    const Number v = operands.any(blocks * kRowBlock);
    for (const std::int32_t q : {0, 1, -1, 2147483647, -2147483647}) {
      std::vector<std::uint64_t> expected;
      for (std::size_t i = 0; i < v.size(); ++i) {
        u[i] = i % 2 == 0 ? i : ~std::uint64_t{i};
        expected.push_back(u[i] - static_cast<std::uint64_t>(std::int64_t{q} * v[i]));
      }
      target().subtract_row(u, v.data(), blocks, q);
      ASSERT_TRUE(std::equal(expected.begin(), expected.end(), u)) << blocks << " " << q;
    }
  }
}

TEST(Target, SubtractsRows) { on_every_target(rows); }

void dots() {
  Operands operands(42);
  for (int round = 0; round < 200; ++round) {
    const Number a = round == 0 ? Number(kDotLimbs, kBase - 1) : operands.any(kDotLimbs);
    std::uint64_t expected = 0;
    std::vector<std::uint32_t> b;
    for (const Limb limb : a) {
      b.push_back(round < 2 ? ~0u : operands.below(~0u));
      expected += std::uint64_t{limb} * b.back();
    }
    ASSERT_EQ(target().dot(a.data(), b.data()), expected);
  }
}

TEST(Target, SumsProducts) { on_every_target(dots); }

// The largest moduli and others, numbers of every length and all nines.
void many_remainders() {
  Operands operands(45);
  for (std::uint32_t n = 0; n < 70; ++n) {
    const Number a = n % 3 == 0 ? Number(n, kBase - 1) : operands.any(n);
    Moduli moduli;
    for (std::size_t i = 0; i < kModuli; ++i) {
      const auto most = static_cast<std::uint32_t>(kLargestModulus);
      const std::uint32_t k = (i < 40 ? most - operands.below(50) : operands.below(most)) | 1;
      const mpz_class modulus(std::min(k, most - 1)), word(std::uint64_t{1} << 32);
      mpz_class inverse, step = word * kBase * kBase % modulus;
      mpz_invert(inverse.get_mpz_t(), modulus.get_mpz_t(), word.get_mpz_t());
      moduli.k[i] = modulus.get_ui();
      moduli.inverse[i] = mpz_class(word - inverse).get_ui();
      moduli.step[i] = step.get_ui();
    }
    alignas(64) std::uint64_t rests[kModuli];
    target().remainders(rests, a.data(), n, moduli);
    for (std::size_t i = 0; i < kModuli; ++i)
      ASSERT_EQ(rests[i] % moduli.k[i], mpz_class(big(a) % moduli.k[i]).get_ui()) << n << " " << i;
  }
}

TEST(Target, FindsManyRemainders) { on_every_target(many_remainders); }

// Parts of products around vectors and chunks: to the end exactly, from the front within the bound.
void parts() {
  Operands operands(43);
  for (const std::uint32_t nb : {1u, 2u, 17u, 64u, 65u, 300u, 1100u}) {
    for (int round = 0; round < 60; ++round) {
      const Number a = round < 4 ? Number(nb, kBase - 1) : operands.any(1 + operands.below(nb));
      const Number b = round < 4 ? a : operands.any(nb);
      const std::size_t size = a.size() + nb;
      const std::size_t some = operands.below(static_cast<std::uint32_t>(size));
      const std::size_t first = round % 2 == 0 ? some : 0, last = round % 2 == 0 ? size : some + 1;
      Number r(last - first, 7);
      target().multiply_part(r.data(), a.data(), a.size(), b.data(), nb, first, last);
      const mpz_class all = big(a) * big(b) / power_of_base(size - last);
      const mpz_class less = all % power_of_base(last - first) - big(r);
      const mpz_class most = round % 2 == 0 ? mpz_class(0) : mpz_class(a.size() * (kBase + 2ul));
      ASSERT_TRUE(less >= 0 && less <= most)
          << a.size() << " " << nb << " " << first << " " << last;
    }
  }
}

TEST(Target, MultipliesInParts) { on_every_target(parts); }

}  // namespace
}  // namespace tivelo::kernels
