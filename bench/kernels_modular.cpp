// Powers modulo N-digit numbers beside GMP in one run (preset bench), exponents of E digits:
//   build/bench/bench/kernels --benchmark_filter=power_modulo
// A result is checked against GMP before its time counts.
#include <benchmark/benchmark.h>
#include <gmp.h>

#include <vector>

#include "limbs/modular.h"
#include "limbs/probable_prime.h"
#include "support.h"

namespace tivelo::limbs {
namespace {

struct Powers {
  std::vector<Limb> base, exponent, modulus, r;
  Integer b, e, m, expected;

  Powers(std::size_t n, std::size_t ne)
      : base(random_limbs(n, 1)),
        exponent(random_limbs(ne, 2)),
        modulus(random_limbs(n, 3)),
        r(n),
        b(base),
        e(exponent),
        m(modulus) {}
};

Powers powers(const benchmark::State& state) {
  return {static_cast<std::size_t>(state.range(0)) / 8,
          (static_cast<std::size_t>(state.range(1)) + 7) / 8};
}

void run_ours(benchmark::State& state) {
  Powers p = powers(state);
  const Buffer buffer(power_modulo_workspace(std::max(p.base.size(), p.exponent.size())));
  mpz_powm(p.expected.value, p.b.value, p.e.value, p.m.value);
  power_modulo(p.r, p.base, p.exponent, p.modulus, buffer);
  if (mpz_cmp(Integer(p.r).value, p.expected.value) != 0) return state.SkipWithError("wrong power");
  for (auto _ : state) power_modulo(p.r, p.base, p.exponent, p.modulus, buffer);
}

void run_gmp(benchmark::State& state) {
  Powers p = powers(state);
  for (auto _ : state) mpz_powm(p.expected.value, p.b.value, p.e.value, p.m.value);
}

// One square modulo an odd number, at lengths around the change of method.
void run_square(benchmark::State& state) {
  const auto n = static_cast<std::size_t>(state.range(0));
  const std::vector<Limb> m = random_limbs(n, 3);
  std::vector<Limb> x = random_limbs(n, 4);
  x[0] = 0;
  const Buffer buffer(modulus_workspace(n));
  Modulus modulus(m, buffer);
  for (auto _ : state) modulus.square(x, x);
}

// The strong test and the strong Lucas test of 10^999 + 7, which passes both.
void run_test(benchmark::State& state, bool (*test)(ConstLimbs, Workspace)) {
  std::vector<Limb> n(125);
  n[0] = kBase / 10;
  n.back() = 7;
  const Buffer buffer(probable_prime_workspace(n.size()));
  if (!test(n, buffer)) return state.SkipWithError("a prime fails");
  for (auto _ : state) benchmark::DoNotOptimize(test(n, buffer));
}

BENCHMARK(run_ours)
    ->Name("power_modulo/ours")
    ->Args({1000, 1000})
    ->Args({10000, 10000})
    ->Args({100000, 100})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(run_gmp)
    ->Name("power_modulo/gmp")
    ->Args({1000, 1000})
    ->Args({10000, 10000})
    ->Args({100000, 100})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(run_square)
    ->Name("square_modulo")
    ->Arg(4)
    ->Arg(12)
    ->Arg(40)
    ->Arg(125)
    ->Arg(200)
    ->Arg(250)
    ->Arg(300)
    ->Arg(350)
    ->Arg(400)
    ->Arg(600);
BENCHMARK_CAPTURE(run_test, strong, passes_strong_test)->Name("prime_strong/ours/1000");
BENCHMARK_CAPTURE(run_test, lucas, passes_strong_lucas_test)->Name("prime_lucas/ours/1000");

}  // namespace
}  // namespace tivelo::limbs
