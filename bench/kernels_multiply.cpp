// Products and squares of N-digit numbers, each target beside GMP in one run (preset bench):
//   build/bench/bench/kernels --benchmark_filter=multiply
// Every product is checked against GMP before its time counts.
#include <benchmark/benchmark.h>
#include <gmp.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "kernels/target.h"
#include "limbs/multiply.h"
#include "support.h"

namespace tivelo::limbs {
namespace {

enum class Operation { kMultiply, kSquare };

void run(benchmark::State& state, const char* name, Operation operation) {
  kernels::force_target(name);
  const std::size_t n = static_cast<std::size_t>(state.range(0)) / kLimbDigits;
  const std::vector<Limb> a = random_limbs(n, 1);
  const std::vector<Limb> b = operation == Operation::kSquare ? a : random_limbs(n, 2);
  std::vector<Limb> r(2 * n);
  const Buffer work(multiply_workspace(n, n));
  const auto once = [&] {
    if (operation == Operation::kSquare) {
      square(r, a, work);
    } else {
      multiply(r, a, b, work);
    }
  };
  once();
  Integer expected;
  mpz_mul(expected.value, Integer(a).value, Integer(b).value);
  if (mpz_cmp(expected.value, Integer(r).value) != 0) return state.SkipWithError("wrong product");
  for (auto _ : state) once();
  kernels::force_targets(nullptr, nullptr);  // what runs after this takes the best again
}

void run_gmp(benchmark::State& state, Operation operation) {
  const std::size_t n = static_cast<std::size_t>(state.range(0)) / kLimbDigits;
  const Integer a(random_limbs(n, 1));
  const Integer b(random_limbs(n, 2));
  Integer r;
  for (auto _ : state) {
    mpz_mul(r.value, a.value, operation == Operation::kSquare ? a.value : b.value);
  }
}

void with_lengths(benchmark::internal::Benchmark* b) {
  for (const int n : {24, 64, 1000, 10000, 100000, 200000, 400000, 800000, 1000000, 10000000})
    b->Arg(n);
}

const bool registered = [] {
  const struct {
    const char* name;
    Operation operation;
  } operations[] = {{"multiply/", Operation::kMultiply}, {"square/", Operation::kSquare}};
  for (const auto& [name, operation] : operations) {
    const std::string prefix = name;
    const Operation what = operation;
    benchmark::RegisterBenchmark((prefix + "gmp").c_str(), [what](benchmark::State& state) {
      run_gmp(state, what);
    })->Apply(with_lengths);
    for (const char* const* target = kernels::target_names(); *target != nullptr; ++target) {
      const char* const chosen = *target;
      benchmark::RegisterBenchmark((prefix + chosen).c_str(), [chosen,
                                                               what](benchmark::State& state) {
        run(state, chosen, what);
      })->Apply(with_lengths);
    }
  }
  return true;
}();

}  // namespace
}  // namespace tivelo::limbs
