// Products and squares of N-digit numbers, each target beside GMP in one run:
//   build/release/bench/kernels --benchmark_filter=multiply
// Every product is checked against GMP before its time counts.
#include <benchmark/benchmark.h>
#include <gmp.h>

#include <cstdlib>
#include <cstring>
#include <new>
#include <random>
#include <string>
#include <vector>

#include "limbs/multiply.h"
#include "limbs/target.h"

namespace tivelo::limbs {
namespace {

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

std::vector<Limb> random_limbs(std::size_t n, unsigned seed) {
  std::mt19937 source(seed);
  std::uniform_int_distribution<Limb> limb(1, kBase - 1);
  std::vector<Limb> a(n);
  for (Limb& x : a) x = limb(source);
  return a;
}

enum class Operation { kMultiply, kSquare };

void run(benchmark::State& state, const char* name, Operation operation) {
  force_target(name);
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
  for (const int n : {1000, 10000, 100000, 200000, 400000, 800000, 1000000, 10000000}) b->Arg(n);
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
    for (const char* const* target = target_names(); *target != nullptr; ++target) {
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
