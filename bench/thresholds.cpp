// Measures where the transform overtakes the columns and prints the rows of
// src/kernels/target_thresholds.h (preset bench: build/bench/bench/thresholds). For each target and
// shape both methods run at a row of lengths; the threshold is the length that loses least when it
// separates them, because the transform gets dearer in steps and the two curves cross more than
// once.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <functional>
#include <vector>

#include "kernels/target.h"

namespace tivelo::kernels {
namespace {

double processor_seconds() {
  timespec t;
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
  return static_cast<double>(t.tv_sec) + 1e-9 * static_cast<double>(t.tv_nsec);
}

// Median of nine runs of about 200 microseconds each.
double seconds(const std::function<void()>& work) {
  int repeat = 1;
  const auto run = [&] {
    const double start = processor_seconds();
    for (int i = 0; i < repeat; ++i) work();
    return processor_seconds() - start;
  };
  while (run() < 2e-4) repeat *= 2;
  std::vector<double> times;
  for (int i = 0; i < 9; ++i) times.push_back(run() / repeat);
  std::nth_element(times.begin(), times.begin() + 4, times.end());
  return times[4];
}

struct Sample {
  std::size_t length;
  double columns;
  double transform;
};

std::size_t best_threshold(const std::vector<Sample>& samples) {
  std::size_t best = 0;
  double least = 1e300;
  for (const Sample& candidate : samples) {
    double loss = 0;
    for (const Sample& s : samples) {
      const double taken = s.length < candidate.length ? s.columns : s.transform;
      loss += std::log(taken / std::min(s.columns, s.transform));
    }
    if (loss < least) {
      least = loss;
      best = candidate.length;
    }
  }
  return best;
}

// `ratio` times longer first operand; ratio 0 measures squares.
std::size_t measure(const Target& t, std::size_t ratio, double* work) {
  std::vector<Sample> samples;
  for (std::size_t n = 64; n < 1100; n += n / 16) {
    const std::size_t na = std::max<std::size_t>(ratio, 1) * n;
    std::vector<std::uint32_t> a(na, 12345678);
    std::vector<std::uint32_t> b(n, 87654321);
    std::vector<std::uint32_t> r(na + n);
    const Shape s = shape_for(product_coefficients(na, n));
    samples.push_back({n, seconds([&] {
                         if (ratio == 0) return t.square_columns(r.data(), b.data(), n);
                         t.multiply_columns(r.data(), b.data(), n, a.data(), na);
                       }),
                       seconds([&] {
                         if (ratio == 0) {
                           t.square_transform(r.data(), b.data(), n, s, work);
                         } else {
                           t.multiply_transform(r.data(), a.data(), na, b.data(), n, s, work);
                         }
                       })});
  }
  return best_threshold(samples);
}

}  // namespace
}  // namespace tivelo::kernels

int main() {
  using namespace tivelo::kernels;
  std::vector<double> memory(4 * transform_length(shape_for(4096)) + 8);
  const std::size_t misaligned = reinterpret_cast<std::uintptr_t>(memory.data()) / 8 % 8;
  double* work = memory.data() + (8 - misaligned) % 8;
  for (const char* const* name = target_names(); *name != nullptr; ++name) {
    force_target(*name);
    std::printf("%s: {%zu, %zu, %zu}\n", *name, measure(target(), 1, work),
                measure(target(), 4, work), measure(target(), 0, work));
  }
  return 0;
}
