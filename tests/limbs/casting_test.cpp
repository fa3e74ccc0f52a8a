// Residues against GMP, and a hundred thousand damaged products of which none may get through.
#include "limbs/casting.h"

#include "base/interrupt.h"
#include "limbs/checked.h"
#include "support/damage.h"
#include "support/engine.h"

namespace tivelo::limbs {
namespace {

using kernels::kMostSummed;
using kernels::Target;
using kernels::target;

mpz_class value_of(const Residue& r) {
  const mpz_class m = big(std::to_string(kCastOut));
  return big(std::to_string(r.rest)) + m * big(std::to_string(r.fold));
}

void residues() {
  Operands operands(62);
  const mpz_class m = big(std::to_string(kCastOut)), modulus = m * m;
  for (std::size_t n = 1; n < 600; ++n) {
    const Number a = operands.any(n), b = operands.any(1 + operands.below(300));
    const Residue x = residue_of(a, target()), y = residue_of(b, target());
    ASSERT_EQ(value_of(x), big(a) % modulus) << n;
    ASSERT_EQ(value_of(product_of(x, y)), big(a) * big(b) % modulus) << n;
    ASSERT_EQ(value_of(sum_of(x, y)), (big(a) + big(b)) % modulus) << n;
    ASSERT_EQ(value_of(sum_of(negative_of(x), residue_of_power(n))),
              (power_of_base(n) - big(a)) % modulus);
    ASSERT_TRUE(casts_out(a, x, target()));
    ASSERT_TRUE(x.rest < kCastOut && x.fold < kCastOut);
  }
  // What is no limb is seen, whatever its residue.
  for (const Limb excess : {kBase, kBase + 1, 1u << 27, 1u << 31, ~0u - 34217727, ~0u}) {
    for (std::size_t i = 0; i < 300; ++i) {
      Number a = operands.any(300);
      a[i] = excess;
      ASSERT_FALSE(casts_out(a, residue_of(a, target()), target())) << excess << " at " << i;
    }
  }
  // Nines in all places and the longest runs that there are.
  for (const std::size_t n :
       {kMostSummed - 1, kMostSummed, kMostSummed + 1, std::size_t{1} << 25}) {
    const mpz_class pairs = big(std::to_string(n / 2));
    // 10^(8 n) - 1, from (1 + m)^(n / 2) = 1 + m n / 2.
    const mpz_class power = (1 + m * pairs) * (n % 2 == 1 ? kBase : 1u);
    ASSERT_EQ(value_of(residue_of(Number(n, kBase - 1), target())),
              mpz_class((power - 1 + modulus) % modulus));
  }
}

TEST(Casting, ResiduesOfEveryLength) { on_every_target(residues); }

struct Product {
  Number a, b, expected;
  bool square = false;
  Number near = {};  // where the product is found from this
  kernels::Shape shape = {};
  std::size_t entry = 0;  // where a is the entries of a matrix, b is a vector
  bool minus = false;
};

void multiply_matrix_of(Number& r, const Product& p, Workspace ws) {
  const std::size_t n = p.entry, m = p.b.size() / 2;
  const ConstLimbs a = p.a, b = p.b;
  const MatrixVector vector{b.first(m), b.last(m), Limbs(r).first(n + m), Limbs(r).last(n + m)};
  multiply_matrix({a.first(n), a.subspan(n, n), a.subspan(2 * n, n), a.last(n)}, {&vector, 1},
                  p.minus, ws);
}

// Shapes on both sides of every change of method, and of some changes of the transform's length.
std::vector<Product> products(const Target& t) {
  const kernels::Thresholds& from = t.thresholds;
  std::vector<Product> all;
  Operands operands(63);
  const auto put = [&](std::size_t na, std::size_t nb) {
    Product p{operands.number(na), operands.number(nb), {}};
    p.expected = run_of(big(p.a) * big(p.b), na + nb);
    all.push_back(p);
  };
  const auto put_square = [&](std::size_t n) {
    put(n, n);
    all.back().b = all.back().a;
    all.back().expected = run_of(big(all.back().a) * big(all.back().a), 2 * n);
    all.back().square = true;
  };
  for (const std::size_t n : {from.even, from.even + 1, std::size_t{640}, std::size_t{641}}) {
    put(std::max(n, from.even), std::max(n, from.even));
    put_square(n + from.square);
  }
  for (const std::size_t ratio : {2u, 5u, 12u, 13u}) put(ratio * from.uneven + 7, from.uneven);
  put(2000, 1501);
  // Next to a known number, above it, below it, equal; the shape just long enough or longer.
  for (const std::size_t nb : {40u, 333u, 1003u, 1277u}) {
    for (const std::size_t more : {2u, 3u, 200u}) {
      put(nb - more % 3, nb);
      Product& p = all.back();
      p.shape = kernels::cyclic_shape_for(nb / 2 + more);
      const mpz_class product = big(p.expected);
      mpz_class near = product + big(operands.any(nb)) * (static_cast<int>(operands.below(3)) - 1);
      if (near < 0) near = product;
      p.near = run_of(near, p.expected.size());
    }
  }
  // By a matrix, whose entries are too small for a sum that does not fit.
  for (const std::size_t n : {150u, 151u, 333u}) {
    Product p{operands.any(4 * n), operands.any(2 * (n + operands.below(300))), {}};
    for (std::size_t i = 0; i < 4; ++i) p.a[i * n] = 0;
    p.entry = n;
    p.minus = n % 2 == 1;
    p.expected = Number(2 * n + p.b.size(), 7);
    LentWorkspace lent(multiply_matrix_workspace(n, p.b.size() / 2, 1));
    multiply_matrix_of(p.expected, p, lent.workspace());
    all.push_back(p);
  }
  return all;
}

bool wraps(const Product& p) {
  const kernels::Shape s = kernels::product_shape(p.a.size(), p.b.size());
  return kernels::product_coefficients(p.a.size(), p.b.size()) > kernels::transform_length(s);
}

// r = a x b, damaged as planned; true where it was refused.
bool multiply_refused(Number& r, const Product& p, LentWorkspace& lent) {
  std::byte* data = lent.workspace().take<std::byte>(0).data();
  const std::size_t na = p.a.size(), nb = p.b.size();
  Workspace ws(data, p.entry > 0      ? multiply_matrix_workspace(p.entry, nb / 2, 1)
                     : p.near.empty() ? multiply_workspace(na, nb)
                                      : Kept::bytes(p.shape) + Kept::workspace(p.shape, na, nb));
  try {
    if (!p.near.empty()) {
      r = p.near;
      Kept(p.b, p.shape, ws).multiply_near(r, p.a, ws);
      return false;
    }
    r.assign(p.expected.size(), 7);
    if (p.entry > 0) {
      multiply_matrix_of(r, p, ws);
      return false;
    }
    p.square ? square(r, p.a, ws) : multiply(r, p.a, p.b, ws);
  } catch (const Refused&) {
    return true;
  }
  return false;
}

// Damages `times` products of t at random; those that are wrong are done again by `second`, and
// that is damaged, too, if told so.
void damage_products(const Target& t, const Target& second, int times, bool twice) {
  const std::vector<Product> all = products(t);
  const Target first_road = damaged<0>(t), second_road = damaged<1>(second);
  LentWorkspace lent(multiply_workspace(8000, 8000));
  kernels::force_targets(&first_road, &second_road);
  Number r;
  int refused = 0;
  faults.calls[1] = 0;
  for (const Product& p : all) ASSERT_TRUE(!multiply_refused(r, p, lent) && r == p.expected);
  ASSERT_EQ(faults.calls[1], 0) << "done again without need";
  const auto any = [](unsigned among) { return static_cast<Fault>(1 + faults.some.below(among)); };
  for (int i = 0; i < times && !testing::Test::HasFatalFailure(); ++i) {
    const Product& p = all[static_cast<std::size_t>(i) % all.size()];
    const bool keeps = (p.entry == 0 && p.a.size() >= 12 * p.b.size()) || !p.near.empty();
    faults.of_road[0] = any(keeps ? 11u : 10u);
    faults.of_road[1] = twice ? any(10) : Fault::kNone;
    faults.calls[1] = 0;
    const bool out = multiply_refused(r, p, lent);
    refused += out;
    const auto what = [&] {
      return testing::Message() << static_cast<int>(faults.of_road[0]) << ", "
                                << static_cast<int>(faults.of_road[1]) << " in " << p.a.size()
                                << " by " << p.b.size();
    };
    [&] {
      ASSERT_TRUE(out || r == p.expected) << what();
      ASSERT_TRUE(twice || !out) << what();
      // A carry that was left is taken where a known number or what wrapped around is corrected.
      ASSERT_TRUE(faults.calls[1] > 0 || !p.near.empty() || wraps(p)) << what();
    }();
  }
  // A carry that was left is taken where the halves are added.
  EXPECT_GE(refused, twice ? times * 8 / 10 : 0);
  faults.of_road[0] = faults.of_road[1] = Fault::kNone;
  kernels::force_targets(nullptr, nullptr);
}

// Sanitizers and coverage, which build as Debug, take twenty times as long, and processors that may
// be emulated fifty times.
#if !defined(__x86_64__)
constexpr int kFewer = 40;
#elif defined(NDEBUG)
constexpr int kFewer = 1;
#else
constexpr int kFewer = 10;
#endif

void once() {
  const Target& t = target();
  ASSERT_TRUE(kernels::force_target(kernels::target_names()[0]));
  const bool slow = t.name == std::string("portable");
  damage_products(t, target(), (slow ? 10000 : 45000) / kFewer, false);
  damage_products(t, kernels::second_target(), 2000 / kFewer, false);
}

void twice() {
  const Target& t = target();
  damage_products(t, t, (t.name == std::string("portable") ? 2000 : 5000) / kFewer, true);
}

TEST(Casting, NoDamageGetsThrough) { on_every_target(once); }
TEST(Casting, DamagedTwiceIsRefused) { on_every_target(twice); }

}  // namespace
}  // namespace tivelo::limbs
