#include "kernels/target.h"
#include "support/engine.h"

namespace tivelo::limbs {
namespace {

using kernels::force_target;
using kernels::kMaxColumn;
using kernels::product_coefficients;
using kernels::Shape;
using kernels::shape_for;
using kernels::Target;
using kernels::target;
using kernels::target_names;
using kernels::Thresholds;
using kernels::transform_length;

// Runs every test once for each target that this machine has.
class Multiply : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    ASSERT_TRUE(force_target(GetParam()));
    ASSERT_FALSE(force_target("none"));
    ASSERT_STREQ(target().name, GetParam());
  }
  void TearDown() override { force_target(target_names()[0]); }
};

std::vector<const char*> names() {
  std::vector<const char*> list;
  for (const char* const* name = target_names(); *name != nullptr; ++name) list.push_back(*name);
  return list;
}
INSTANTIATE_TEST_SUITE_P(Targets, Multiply, testing::ValuesIn(names()),
                         [](const auto& target) { return std::string(target.param); });

Number by_columns(const Number& a, const Number& b) {
  Number r(a.size() + b.size(), 7);
  target().multiply_columns(r.data(), b.data(), b.size(), a.data(), a.size());
  return r;
}

Number squared_by_columns(const Number& a) {
  Number r(2 * a.size(), 7);
  target().square_columns(r.data(), a.data(), a.size());
  return r;
}

Number by_transform(const Number& a, const Number& b, bool prepare_b = false) {
  const Target& t = target();
  Number r(a.size() + b.size(), 7);
  const Shape s = shape_for(product_coefficients(a.size(), b.size()));
  LentWorkspace lent(48 * transform_length(s));
  Workspace ws = lent.workspace();
  double* work = ws.take<double>((prepare_b ? 3 : 4) * transform_length(s)).data();
  if (!prepare_b) {
    t.multiply_transform(r.data(), a.data(), a.size(), b.data(), b.size(), s, work);
    return r;
  }
  double* prepared = ws.take<double>(3 * transform_length(s)).data();
  t.prepare(prepared, b.data(), b.size(), s);
  t.multiply_prepared(r.data(), a.data(), a.size(), prepared, b.size(), s, work);
  return r;
}

Number squared_by_transform(const Number& a) {
  Number r(2 * a.size(), 7);
  const Shape s = shape_for(product_coefficients(a.size(), a.size()));
  LentWorkspace lent(24 * transform_length(s));
  double* work = lent.workspace().take<double>(3 * transform_length(s)).data();
  target().square_transform(r.data(), a.data(), a.size(), s, work);
  return r;
}

// Every method that can take a x b (a the longer), and the squares.
void expect_products(const Number& a, const Number& b) {
  SCOPED_TRACE(testing::Message() << a.size() << " x " << b.size());
  const Number expected = run_of(big(a) * big(b), a.size() + b.size());
  const Number squared = run_of(big(b) * big(b), 2 * b.size());
  ASSERT_EQ(product_of(a, b), expected);
  ASSERT_EQ(product_of(b, a), expected);
  ASSERT_EQ(by_transform(a, b), expected);
  ASSERT_EQ(by_transform(a, b, true), expected);
  if (b.size() <= kMaxColumn) {
    ASSERT_EQ(by_columns(a, b), expected);
    ASSERT_EQ(squared_by_columns(b), squared);
  }
  ASSERT_EQ(square_of(b), squared);
  ASSERT_EQ(squared_by_transform(b), squared);
}

// The largest n limbs times the largest m, n >= m, needs no oracle:
// (B^n - 1) (B^m - 1) = (B^m - 2) B^n + (B^n - B^m) + 1.
void expect_largest(std::size_t n, std::size_t m, const Number& r) {
  Number expected(n + m);
  std::fill_n(expected.begin(), n, kBase - 1);
  expected[m - 1] = kBase - 2;
  expected[n + m - 1] = 1;
  ASSERT_TRUE(r == expected) << n << " x " << m;
}

TEST_P(Multiply, EveryShortShape) {
  Operands operands(21);
  for (std::size_t na = 1; na < 70; ++na) {
    for (std::size_t nb = 1; nb <= na; nb += 1 + operands.below(4))
      ASSERT_NO_FATAL_FAILURE(expect_products(operands.any(na), operands.any(nb)));
  }
}

// Lengths on both sides of every change of method and of every length of transform.
TEST_P(Multiply, AroundEveryChange) {
  Operands operands(22);
  const Thresholds& t = target().thresholds;
  std::vector<std::size_t> lengths = {t.even, t.uneven, t.square, kMaxColumn};
  for (std::size_t n = 64; n < 6000; n = transform_length(shape_for(n + 1))) {
    ASSERT_EQ(n, transform_length(shape_for(n)));
    // n coefficients: two operands of about n limbs. From n + 2 on they wrap around.
    for (const std::size_t more : {std::size_t{0}, std::size_t{2}, n / 36})
      lengths.push_back(n + more);
  }
  for (const std::size_t n : lengths) {
    for (const std::size_t na : {n - 1, n, n + 1, n + 2}) {
      ASSERT_NO_FATAL_FAILURE(expect_products(operands.any(na), operands.any(std::min(n, na))));
      ASSERT_NO_FATAL_FAILURE(expect_products(operands.any(na + n / 2), operands.number(n / 2)));
    }
  }
}

TEST_P(Multiply, UnevenOperands) {
  Operands operands(23);
  for (const std::size_t nb : {1u, 2u, 9u, 230u, 301u, 700u}) {
    for (const std::size_t ratio : {3u, 7u, 11u, 12u, 13u, 23u}) {
      for (const std::size_t na : {nb * ratio - 1, nb * ratio, nb * ratio + operands.below(99)})
        ASSERT_NO_FATAL_FAILURE(expect_products(operands.any(na), operands.any(nb)));
    }
  }
}

// The largest coefficients and columns there are, and the longest carries.
TEST_P(Multiply, LargestOperands) {
  const std::size_t shapes[][2] = {{1, 1},        {2, 1},       {33, 32},        {1844, 1844},
                                   {5000, 1844},  {4096, 4096}, {12289, 12287},  {40000, 700},
                                   {20480, 8192}, {65537, 1},   {100001, 99999}, {262144, 262143}};
  for (const auto& [n, m] : shapes) {
    const Number a(n, kBase - 1);
    const Number b(m, kBase - 1);
    expect_largest(n, m, product_of(a, b));
    if (m <= kMaxColumn) {
      expect_largest(n, m, by_columns(a, b));
      expect_largest(m, m, squared_by_columns(b));
    }
    expect_largest(n, m, by_transform(a, b));
    expect_largest(n, n, squared_by_transform(a));
    Number power(m);
    power[0] = 1;
    Number moved(n + m);
    std::copy(a.begin(), a.end(), moved.begin() + 1);
    ASSERT_EQ(product_of(a, power), moved);
    Number thirds(n, 33333333), power_and_two(n + 1);  // three times this is a carry that runs on
    thirds[n - 1] = 33333334, power_and_two[0] = 1, power_and_two[n] += 2;
    ASSERT_EQ(by_columns(thirds, {3}), power_and_two);
    if (HasFatalFailure()) return;
  }
}

// Two numbers of 28 million digits, the largest there are.
TEST(MultiplyTargets, LongestOperands) {
  const std::size_t n = 3500000;
  const Number a(n, kBase - 1);
  expect_largest(n, n - 1, product_of(a, Number(n - 1, kBase - 1)));
  expect_largest(n, n, square_of(a));
}

// Results of both signs; the lengths around the change of method, even and odd, and far apart.
TEST_P(Multiply, MatrixAgainstOracle) {
  Operands operands(67);
  for (const auto& [n, m] : {std::pair(1u, 1u),
                             {3, 7},
                             {149, 149},
                             {150, 149},
                             {150, 150},
                             {151, 800},
                             {333, 332},
                             {160, 2000},
                             {1003, 1277}}) {
    for (unsigned round = 0; round < 16; ++round) {
      ASSERT_TRUE(multiplies_matrix(operands, n, m, 1 + round / 2 % 2, round % 2 == 1))
          << n << " by " << m << ", " << round;
    }
  }
}

}  // namespace
}  // namespace tivelo::limbs
