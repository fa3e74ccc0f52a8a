// The engine against GMP. The bytes choose the operation, lengths around every change of method and
// operands made of runs of 0, 99999999 and other limbs; every multiplication target is asked.
#include <cstring>

#include "harness.h"
#include "kernels/target.h"
#include "limbs/digits.h"
#include "limbs/divide.h"
#include "limbs/gcd.h"
#include "limbs/linear.h"
#include "limbs/multiply.h"
#include "limbs/oracle.h"
#include "limbs/product.h"
#include "limbs/remainders.h"

namespace tivelo::limbs {
namespace {

using fuzz::demand;

class Bytes {
 public:
  Bytes(const std::uint8_t* data, std::size_t size) : at_(data), end_(data + size) {}

  std::uint32_t byte() { return at_ == end_ ? 0 : *at_++; }
  std::uint32_t word() {
    const std::uint32_t high = byte() << 24 | byte() << 16;
    return high | byte() << 8 | byte();
  }

  // 1 to `most`: short, or two limbs or less off a length where some method begins or ends.
  std::size_t length(std::size_t most) {
    constexpr std::size_t kEdges[] = {16,  24,  32,  48,  64,  100, 128, 150, 160, 192, 240,  256,
                                      300, 320, 340, 400, 480, 512, 600, 640, 768, 960, 1024, 1280};
    const std::uint32_t choice = byte();
    std::size_t n = 1 + choice / 2 % 24;
    if (choice % 2 == 1) n = kEdges[choice / 2 % std::size(kEdges)] + byte() % 5 - 2;
    return std::min(n, most);
  }

  // Runs of limbs of one kind, each run from one byte; a further seed feeds the limbs of any value.
  Number run(std::size_t size) {
    Number r(size);
    std::uint32_t seed = word();
    for (std::size_t i = 0; i < size;) {
      const std::uint32_t kind = byte();
      const std::size_t end = std::min(size, i + 1 + (kind / 8) * (kind / 8));
      for (; i < end; ++i) {
        seed = seed * 1664525 + 1013904223;
        const Limb kinds[] = {0, kBase - 1, 1, kBase / 2, seed / 64 % 3, kBase - 1 - seed / 64 % 3};
        r[i] = kind % 8 < 6 ? kinds[kind % 8] : seed % kBase;
      }
    }
    return r;
  }

  // Without a leading zero limb.
  Number number(std::size_t size) {
    Number r = run(size);
    constexpr Limb kFirst[] = {1, 2, 20, 21, kBase / 2, kBase - 1};
    if (size > 0 && r[0] == 0) r[0] = kFirst[byte() % std::size(kFirst)];
    return r;
  }

 private:
  const std::uint8_t* at_;
  const std::uint8_t* end_;
};

void add_or_subtract(Bytes& in, bool plus) {
  Number a = in.run(in.length(2000));
  Number b = in.run(std::min(in.length(2000), a.size()));
  const std::uint32_t where = in.byte() % 3;
  if (!plus && big(a) < big(b)) {
    a.swap(b);
    b.insert(b.begin(), a.size() > b.size() ? a.size() - b.size() : 0, 0);
    a.insert(a.begin(), b.size() > a.size() ? b.size() - a.size() : 0, 0);
  }
  const mpz_class x = big(a);
  const mpz_class y = big(b);
  Number fresh(a.size(), 7);
  const bool onto_b = where == 2 && a.size() == b.size();
  Number& r = where == 1 ? a : onto_b ? b : fresh;
  const Limb carry = plus ? add(r, a, b) : subtract(r, a, b);
  Number all = r;
  all.insert(all.begin(), carry);
  demand(big(all) == (plus ? mpz_class(x + y) : mpz_class(x - y)), "sum or difference");
}

void by_one_limb(Bytes& in) {
  Number a = in.run(in.length(2000));
  const mpz_class x = big(a);
  const bool in_place = in.byte() % 2 == 1;
  Number fresh(a.size(), 7);
  Number& r = in_place ? a : fresh;
  const std::uint32_t word = in.word();
  const std::uint32_t choice = in.byte() % 3;
  if (choice == 0) {
    const Limb k = word % (kBase + 1);
    Number all(1, multiply_limb(r, a, k));
    all.insert(all.end(), r.begin(), r.end());
    demand(text_of({&all[0], 1}).size() >= 8 && all[0] <= k, "carry");
    const mpz_class expected = x * k;
    mpz_class power;
    mpz_ui_pow_ui(power.get_mpz_t(), 10, 8 * r.size());
    demand(big(r) + power * all[0] == expected, "product by a limb");
  } else if (choice == 1) {
    const std::uint32_t k = std::max(1u, word % 0x80000000u);
    const std::uint32_t rest = divide_limb(r, a, k);
    demand(big(r) == x / k && mpz_class(x % k) == rest, "quotient by a limb");
  } else {
    const std::uint32_t k = std::max(1u, word);
    demand(mpz_class(x % k) == remainder_limb(a, k), "remainder by a limb");
  }
}

void multiply_all(Bytes& in) {
  const Number a = in.run(in.length(1300));
  const Number b = in.run(in.length(1300));
  const bool same = in.byte() % 4 == 0;
  const Number& y = same ? a : b;
  const mpz_class product = big(a) * big(y);
  const mpz_class its_square = big(a) * big(a);
  for (const char* const* name = kernels::target_names(); *name != nullptr; ++name) {
    demand(kernels::force_target(*name), "a target by its name");
    Number r(a.size() + y.size(), 7);
    Lent lent(multiply_workspace(a.size(), y.size()));
    multiply(r, a, y, lent.workspace());
    demand(big(r) == product, *name);
    Number s(2 * a.size(), 7);
    Lent more(multiply_workspace(a.size(), a.size()));
    square(s, a, more.workspace());
    demand(big(s) == its_square, *name);
  }
}

void divide_all(Bytes& in) {
  const Number b = in.number(in.length(900));
  Number a = in.run(b.size() + in.length(900) - 1);
  if (const std::uint32_t shape = in.byte(); shape % 2 == 1) {
    // A dividend next to a multiple of the divisor.
    const Number q = in.run(a.size() - b.size());
    mpz_class x = big(q) * big(b) + (shape % 4 == 1 ? mpz_class(big(b) - 1) : mpz_class(0));
    a = run_of(x, a.size());
  }
  for (const char* const* name = kernels::target_names(); *name != nullptr; ++name) {
    demand(kernels::force_target(*name), "a target by its name");
    Number q(a.size() - b.size() + 1, 7);
    Number r(b.size(), 7);
    Lent lent(divide_workspace(a.size(), b.size()));
    divide(q, r, a, b, lent.workspace());
    demand(big(q) == big(a) / big(b) && big(r) == big(a) % big(b), *name);
  }
}

void greatest_divisor(Bytes& in) {
  Number a = in.number(in.length(300) - 1);
  Number b = in.number(in.length(300) - 1);
  if (in.byte() % 2 == 1) {
    const mpz_class common = big(in.number(in.length(300)));
    for (Number* n : {&a, &b}) {
      const mpz_class multiple = big(*n) * common;
      const Number wide = run_of(multiple, n->size() + 300);
      const ConstLimbs digits = strip(wide);
      n->assign(digits.begin(), digits.end());
    }
  }
  Number r(std::max(a.size(), b.size()), 7);
  Lent lent(gcd_workspace(r.size()));
  const std::size_t n = gcd(r, a, b, lent.workspace());
  demand(big(ConstLimbs(r).last(n)) == mpz_class(gcd(big(a), big(b))), "gcd");
  demand(n == 0 || r[r.size() - n] != 0, "gcd without leading zeros");
}

void expect_end(const Number& r, std::size_t n, const mpz_class& value, const char* what) {
  demand(n <= r.size() && big(ConstLimbs(r).last(n)) == value, what);
  demand(n == 0 || r[r.size() - n] != 0, what);
}

std::size_t room_for(const mpz_class& value) { return value.get_str().size() / 8 + 1; }

void trees(Bytes& in) {
  const std::uint32_t choice = in.byte() % 4;
  mpz_class expected = 1;
  if (choice == 0) {
    std::vector<std::uint32_t> factors(in.byte() * 3);
    for (std::uint32_t& factor : factors) expected *= factor = 1 + in.word() % (kBase - 1);
    Number r(room_for(expected), 7);
    Lent lent(product_workspace(factors.size(), kBase - 1));
    expect_end(r, product_of_list(r, factors, lent.workspace()), expected, "product tree");
  } else if (choice == 1) {
    const std::uint32_t n = in.word() % kBase;
    const std::uint32_t k = std::min(n, in.byte() * 4);
    for (std::uint32_t i = 0; i < k; ++i) expected *= n - i;
    Number r(room_for(expected), 7);
    Lent lent(product_workspace(k, n));
    expect_end(r, falling_product(r, n, k, lent.workspace()), expected, "falling product");
  } else if (choice == 2) {
    const std::uint32_t n = in.word() % 5000;
    mpz_fac_ui(expected.get_mpz_t(), n);
    Number r(room_for(expected), 7);
    Lent lent(factorial_workspace(n, r.size()));
    expect_end(r, factorial(r, n, lent.workspace()), expected, "factorial");
  } else {
    const Number base = in.number(in.length(40) - 1);
    const std::uint32_t n = in.byte();
    mpz_pow_ui(expected.get_mpz_t(), big(base).get_mpz_t(), n);
    Number r(room_for(expected), 7);
    Lent lent(power_workspace(r.size()));
    expect_end(r, power(r, base, n, lent.workspace()), expected, "power");
  }
}

void small_moduli(Bytes& in) {
  const Number a = in.number(in.length(600) - 1);
  std::vector<std::uint32_t> moduli(in.byte() * 2);
  for (std::uint32_t& modulus : moduli) modulus = 1 + (in.byte() << 8 | in.byte()) % 65535;
  std::vector<std::uint32_t> out(moduli.size());
  Lent lent(remainders_workspace(a.size(), moduli.size()));
  remainders(out, a, moduli, lent.workspace());
  const mpz_class x = big(a);
  for (std::size_t i = 0; i < out.size(); ++i)
    demand(mpz_class(x % moduli[i]) == out[i], "remainders");
}

void text(Bytes& in) {
  const Number a = in.run(in.length(600));
  std::string digits(8 * a.size(), '?');
  demand(write(digits.data(), a) == digits.data() + digits.size(), "length of a text");
  demand(digits == text_of(a), "text");
  digits.erase(0, in.byte() % 8);
  Number back((digits.size() + 7) / 8, 7);
  parse(back, digits);
  demand(big(back) == big(digits), "number of a text");
  Number b = in.run(a.size());
  if (strip(a).size() == a.size() && strip(b).size() == b.size())
    demand(compare(a, b) == (big(a) > big(b)) - (big(a) < big(b)), "order");
}

}  // namespace
}  // namespace tivelo::limbs

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tivelo::limbs;
  Bytes in(data, size);
  switch (in.byte() % 9) {
    case 0:
      add_or_subtract(in, true);
      break;
    case 1:
      add_or_subtract(in, false);
      break;
    case 2:
      by_one_limb(in);
      break;
    case 3:
      multiply_all(in);
      break;
    case 4:
      divide_all(in);
      break;
    case 5:
      greatest_divisor(in);
      break;
    case 6:
      trees(in);
      break;
    case 7:
      small_moduli(in);
      break;
    default:
      text(in);
  }
  return 0;
}
