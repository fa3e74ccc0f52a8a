// What the check by residues costs: products of two N-digit numbers and squares, by the target's
// transform alone and with the check, in turns on every target; medians of one run, for the share
// of the differences of neighbours (preset bench):
//   build/bench/bench/casting [ROUNDS [DIGITS]]
#include <sys/mman.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "kernels/target.h"
#include "limbs/multiply.h"
#include "support.h"

namespace tivelo::limbs {
namespace {

using kernels::Target;
using kernels::target;

double now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

double median(std::vector<double> x) {
  std::nth_element(x.begin(), x.begin() + static_cast<std::ptrdiff_t>(x.size() / 2), x.end());
  return x[x.size() / 2];
}

// Results and workspace lie in huge pages where the system has them, as the calculator's do.
class HugePages {
 public:
  explicit HugePages(std::size_t size)
      : size_((size / kPage + 1) * kPage), data_(std::aligned_alloc(kPage, size_)) {
    ::madvise(data_, size_, MADV_HUGEPAGE);
  }
  ~HugePages() { std::free(data_); }
  HugePages(const HugePages&) = delete;
  HugePages& operator=(const HugePages&) = delete;
  Workspace workspace() const { return {static_cast<std::byte*>(data_), size_}; }

 private:
  static constexpr std::size_t kPage = std::size_t{1} << 21;
  std::size_t size_;
  void* data_;
};

struct Product {
  std::vector<Limb> a, b;
  HugePages memory;
  Workspace work;
  Limbs r;
  int repeat;  // so that one turn takes a millisecond or more

  explicit Product(std::size_t n)
      : a(random_limbs(n, 1)),
        b(random_limbs(n, 2)),
        memory(Workspace::bytes<Limb>(2 * n) + multiply_workspace(n, n)),
        work(memory.workspace()),
        r(work.take<Limb>(2 * n)),
        repeat(static_cast<int>(100000 / n + 1)) {}

  void alone(bool squares) {
    const Target& t = target();
    const std::size_t n = a.size();
    const kernels::Shape s = kernels::shape_for(kernels::product_coefficients(n, n));
    Workspace ws = work;
    double* x = ws.take<double>((squares ? 3 : 4) * kernels::transform_length(s)).data();
    if (squares) {
      t.square_transform(r.data(), a.data(), n, s, x);
    } else {
      t.multiply_transform(r.data(), a.data(), n, b.data(), n, s, x);
    }
  }
  void with_check(bool squares) { squares ? square(r, a, work) : multiply(r, a, b, work); }

  double time(bool squares, bool check) {
    const double start = now();
    for (int i = 0; i < repeat; ++i) check ? with_check(squares) : alone(squares);
    return (now() - start) / repeat;
  }
};

struct Times {
  std::vector<double> alone, with_check, share;
};

void show(std::size_t digits, int rounds) {
  Product p(digits / kLimbDigits);
  std::vector<const char*> names;
  for (const char* const* name = kernels::target_names(); *name != nullptr; ++name)
    names.push_back(*name);
  std::vector<Times> times(2 * names.size());
  for (int round = 0; round <= rounds; ++round) {
    for (std::size_t i = 0; i < times.size(); ++i) {
      kernels::force_target(names[i / 2]);
      const bool first = round % 2 == 0;
      const double x = p.time(i % 2 != 0, first);
      const double y = p.time(i % 2 != 0, !first);
      if (round == 0) continue;  // for warmth
      const double with_check = first ? x : y, alone = first ? y : x;
      times[i].with_check.push_back(with_check);
      times[i].alone.push_back(alone);
      times[i].share.push_back((with_check - alone) / alone);
    }
  }
  for (std::size_t i = 0; i < times.size(); ++i) {
    std::printf("%9zu digits  %-8s %-8s %11.2f us  with check %11.2f us  share %5.2f %%\n", digits,
                names[i / 2], i % 2 != 0 ? "square" : "product", median(times[i].alone) * 1e6,
                median(times[i].with_check) * 1e6, median(times[i].share) * 100);
  }
}

}  // namespace
}  // namespace tivelo::limbs

int main(int count, char** arguments) {
  const int rounds = count > 1 ? std::atoi(arguments[1]) : 61;
  const std::size_t only = count > 2 ? std::strtoull(arguments[2], nullptr, 10) : 0;
  for (const std::size_t digits : {10000u, 100000u, 1000000u, 10000000u})
    if (only == 0 || only == digits) tivelo::limbs::show(digits, rounds);
  return 0;
}
