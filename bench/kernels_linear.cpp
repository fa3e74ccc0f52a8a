// Division, greatest common divisor, text, sums and factorials of N-digit numbers beside GMP in one
// run (preset bench):
//   build/bench/bench/kernels --benchmark_filter='divide|gcd|text|sum|factorial'
// A result is checked against GMP before its time counts.
#include <benchmark/benchmark.h>
#include <gmp.h>

#include <algorithm>
#include <string>
#include <vector>

#include "limbs/digits.h"
#include "limbs/divide.h"
#include "limbs/gcd.h"
#include "limbs/linear.h"
#include "limbs/product.h"
#include "support.h"

namespace tivelo::limbs {
namespace {

// Two operands of na and nb limbs in both representations, and what either side computes.
struct Pair {
  std::vector<Limb> a, b, q, r;
  Integer x, y, quotient, rest;
  std::string text;

  Pair(std::size_t na, std::size_t nb)
      : a(random_limbs(na, 1)), b(random_limbs(nb, 2)), q(na), r(na), x(a), y(b) {}
};

struct Work {
  const char* name;
  std::size_t (*workspace)(std::size_t na, std::size_t nb);
  void (*ours)(Pair&, Workspace);
  void (*gmp)(Pair&);
  bool (*agree)(const Pair&);
  double length_of_a;  // in lengths of b
};

bool same(ConstLimbs a, const Integer& x) { return mpz_cmp(Integer(a).value, x.value) == 0; }

void divide_ours(Pair& p, Workspace ws) {
  divide(Limbs(p.q).first(p.a.size() - p.b.size() + 1), Limbs(p.r).first(p.b.size()), p.a, p.b, ws);
}
void divide_gmp(Pair& p) { mpz_tdiv_qr(p.quotient.value, p.rest.value, p.x.value, p.y.value); }
bool divide_agrees(const Pair& p) {
  return same(ConstLimbs(p.q).first(p.a.size() - p.b.size() + 1), p.quotient) &&
         same(ConstLimbs(p.r).first(p.b.size()), p.rest);
}

void gcd_ours(Pair& p, Workspace ws) {
  const std::size_t n = gcd(p.r, p.a, p.b, ws);
  std::fill(p.r.begin(), p.r.end() - static_cast<std::ptrdiff_t>(n), 0);
}
void gcd_gmp(Pair& p) { mpz_gcd(p.rest.value, p.x.value, p.y.value); }
bool rest_agrees(const Pair& p) { return same(p.r, p.rest); }

void write_ours(Pair& p, Workspace) {
  p.text.resize(8 * p.a.size());
  write(p.text.data(), p.a);
}
void write_gmp(Pair& p) {
  p.text.resize(8 * p.a.size() + 2);
  mpz_get_str(p.text.data(), 10, p.x.value);
}
void parse_ours(Pair& p, Workspace ws) {
  if (p.text.empty()) write_ours(p, ws);
  parse(p.r, p.text);
}
void parse_gmp(Pair& p) {
  if (p.text.empty()) write_ours(p, {});
  mpz_set_str(p.rest.value, p.text.c_str(), 10);
}
bool text_agrees(const Pair& p) { return same(p.a, p.x); }

void sum_ours(Pair& p, Workspace) { add(p.r, p.a, p.b); }
void sum_gmp(Pair& p) { mpz_add(p.rest.value, p.x.value, p.y.value); }
bool sum_agrees(const Pair& p) {
  std::vector<Limb> b = p.b;
  return add(b, p.a, b) != 0 || same(p.r, p.rest);
}

std::size_t no_workspace(std::size_t, std::size_t) { return 0; }
std::size_t workspace_of_gcd(std::size_t na, std::size_t) { return gcd_workspace(na); }

constexpr Work kWorks[] = {
    {"divide_2n_by_n", divide_workspace, divide_ours, divide_gmp, divide_agrees, 2},
    {"divide_1.1n_by_n", divide_workspace, divide_ours, divide_gmp, divide_agrees, 1.1},
    {"divide_10n_by_n", divide_workspace, divide_ours, divide_gmp, divide_agrees, 10},
    {"gcd", workspace_of_gcd, gcd_ours, gcd_gmp, rest_agrees, 1},
    {"text_write", no_workspace, write_ours, write_gmp, text_agrees, 1},
    {"text_parse", no_workspace, parse_ours, parse_gmp, rest_agrees, 1},
    {"sum", no_workspace, sum_ours, sum_gmp, sum_agrees, 1},
};

Pair operands(const Work& work, const benchmark::State& state) {
  const std::size_t nb = static_cast<std::size_t>(state.range(0)) / kLimbDigits;
  return {static_cast<std::size_t>(work.length_of_a * static_cast<double>(nb)), nb};
}

void run(benchmark::State& state, const Work& work) {
  Pair p = operands(work, state);
  const Buffer buffer(work.workspace(p.a.size(), p.b.size()));
  work.ours(p, buffer);
  work.gmp(p);
  if (!work.agree(p)) return state.SkipWithError("wrong result");
  for (auto _ : state) work.ours(p, buffer);
}

void run_gmp(benchmark::State& state, const Work& work) {
  Pair p = operands(work, state);
  for (auto _ : state) work.gmp(p);
}

void run_factorial(benchmark::State& state) {
  const auto n = static_cast<std::uint32_t>(state.range(0));
  Integer expected;
  mpz_fac_ui(expected.value, n);
  std::vector<Limb> r(mpz_sizeinbase(expected.value, 10) / kLimbDigits + 1);
  const Buffer buffer(factorial_workspace(n, r.size()));
  std::fill(r.begin(), r.end() - static_cast<std::ptrdiff_t>(factorial(r, n, buffer)), 0);
  if (!same(r, expected)) return state.SkipWithError("wrong factorial");
  for (auto _ : state) factorial(r, n, buffer);
}

void run_factorial_gmp(benchmark::State& state) {
  Integer r;
  for (auto _ : state) mpz_fac_ui(r.value, static_cast<unsigned long>(state.range(0)));
}

const bool registered = [] {
  for (const Work& work : kWorks) {
    for (std::int64_t n = 1000; n <= 10000000; n *= 10) {
      const std::string name = work.name;
      benchmark::RegisterBenchmark((name + "/ours").c_str(), run, work)->Arg(n);
      benchmark::RegisterBenchmark((name + "/gmp").c_str(), run_gmp, work)->Arg(n);
    }
  }
  for (std::int64_t n = 1000; n <= 1000000; n *= 10) {
    benchmark::RegisterBenchmark("factorial/ours", run_factorial)->Arg(n);
    benchmark::RegisterBenchmark("factorial/gmp", run_factorial_gmp)->Arg(n);
  }
  return true;
}();

}  // namespace
}  // namespace tivelo::limbs
