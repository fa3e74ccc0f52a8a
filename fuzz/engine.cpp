// The engine against GMP. The bytes choose the operation, lengths around every change of method and
// operands made of runs of 0, 99999999 and other limbs; every multiplication target is asked.
#include "support/engine.h"

#include "harness.h"

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
  const Number a = in.run(in.length(2000));
  const Number b = in.run(std::min(in.length(2000), a.size()));
  demand(adds(a, b, plus, static_cast<Over>(in.byte() % 3)), "sum or difference");
}

void by_one_limb(Bytes& in) {
  const Number a = in.run(in.length(2000));
  const bool in_place = in.byte() % 2 == 1;
  const std::uint32_t word = in.word();
  const std::uint32_t kinds[] = {word % (kBase + 1), word % 0x80000000u, word};
  demand(works_by_limb(a, kinds[in.byte() % 3], in_place), "work by one limb");
}

void multiply_all(Bytes& in) {
  const Number a = in.run(in.length(1300));
  const Number b = in.run(in.length(1300));
  const Number& y = in.byte() % 4 == 0 ? a : b;
  for (const char* const* name = kernels::target_names(); *name != nullptr; ++name) {
    demand(kernels::force_target(*name), "a target by its name");
    demand(big(product_of(a, y)) == big(a) * big(y) && big(square_of(a)) == big(a) * big(a), *name);
  }
}

void divide_all(Bytes& in) {
  const Number b = in.number(in.length(900));
  Number a = in.run(b.size() + in.length(900) - 1);
  if (const std::uint32_t shape = in.byte(); shape % 2 == 1) {
    // A dividend next to a multiple of the divisor.
    const Number q = in.run(a.size() - b.size());
    a = run_of(big(q) * big(b) + (shape % 4 == 1 ? mpz_class(big(b) - 1) : mpz_class(0)), a.size());
  }
  for (const char* const* name = kernels::target_names(); *name != nullptr; ++name) {
    demand(kernels::force_target(*name), "a target by its name");
    demand(divides(a, b), *name);
  }
}

void greatest_divisor(Bytes& in) {
  Number a = in.number(in.length(300) - 1);
  Number b = in.number(in.length(300) - 1);
  if (in.byte() % 2 == 1) {
    const mpz_class common = big(in.number(in.length(300)));
    for (Number* n : {&a, &b}) {
      const mpz_class multiple = big(*n) * common;
      *n = run_of(multiple, length_of(multiple));
    }
  }
  demand(finds_gcd(a, b), "gcd");
}

void trees(Bytes& in) {
  const std::uint32_t choice = in.byte() % 4;
  if (choice == 0) {
    std::vector<std::uint32_t> factors(in.byte() * 3);
    for (std::uint32_t& factor : factors) factor = 1 + in.word() % (kBase - 1);
    demand(multiplies_all(factors), "product tree");
  } else if (choice == 1) {
    const std::uint32_t n = in.word() % kBase;
    demand(multiplies_falling(n, std::min(n, in.byte() * 4)), "falling product");
  } else if (choice == 2) {
    demand(finds_factorial(in.word() % 5000), "factorial");
  } else {
    const Number base = in.number(in.length(40) - 1);
    demand(raises(base, in.byte()), "power");
  }
}

void small_moduli(Bytes& in) {
  const Number a = in.number(in.length(600) - 1);
  std::vector<std::uint32_t> moduli(in.byte() * 2);
  for (std::uint32_t& modulus : moduli) modulus = 1 + (in.byte() << 8 | in.byte()) % 65535;
  demand(finds_remainders(a, moduli), "remainders");
}

void text(Bytes& in) {
  const Number a = in.run(in.length(600));
  demand(writes_and_parses(a, in.byte() % 8), "text");
  const Number b = in.run(a.size());
  if (strip(a).size() == a.size() && strip(b).size() == b.size())
    demand(compare(a, b) == (big(a) > big(b)) - (big(a) < big(b)), "order");
}

}  // namespace
}  // namespace tivelo::limbs

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tivelo::limbs;
  Bytes in(data, size);
  const std::uint32_t choice = in.byte() % 9;
  if (choice < 2) {
    add_or_subtract(in, choice == 0);
  } else {
    constexpr void (*kOthers[])(Bytes&) = {by_one_limb, multiply_all, divide_all, greatest_divisor,
                                           trees,       small_moduli, text};
    kOthers[choice - 2](in);
  }
  return 0;
}
