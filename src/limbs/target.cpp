// Chooses the multiplication kernels once, by what the processor offers.
#include "limbs/target.h"

#include <atomic>
#include <cstring>

namespace tivelo::limbs {

#if defined(__x86_64__)
extern const Target kAvx512Target;
extern const Target kAvx2Target;
#endif
extern const Target kPortableTarget;

namespace {

constexpr std::size_t kMostTargets = 3;

// The targets that run here, in order of preference.
struct Available {
  const Target* targets[kMostTargets] = {};
  const char* names[kMostTargets + 1] = {};
  std::size_t count = 0;

  Available() {
#if defined(__x86_64__)
    __builtin_cpu_init();
    if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") &&
        __builtin_cpu_supports("avx512vl")) {
      add(kAvx512Target);
    }
    if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma")) add(kAvx2Target);
#endif
    add(kPortableTarget);
  }

  void add(const Target& t) {
    targets[count] = &t;
    names[count++] = t.name;
  }
};

const Available& available() {
  static const Available list;
  return list;
}

std::atomic<const Target*> chosen{nullptr};

}  // namespace

std::size_t length(Shape s) { return static_cast<std::size_t>(s.u) << s.k; }

Shape shape_for(std::size_t n) {
  constexpr int kSmallest = 6;  // a block of the widest target
  for (int k = kSmallest; k <= 8; ++k) {
    if (n <= std::size_t{1} << k) return {1, k};
  }
  int k = kSmallest;
  while (std::size_t{8} << k < n) ++k;
  return {static_cast<int>((n - 1) >> k) + 1, k};
}

const Target& target() {
  const Target* t = chosen.load(std::memory_order_relaxed);
  if (t == nullptr) {
    t = available().targets[0];
    chosen.store(t, std::memory_order_relaxed);
  }
  return *t;
}

const char* const* target_names() { return available().names; }

bool force_target(const char* name) {
  const Available& list = available();
  for (std::size_t i = 0; i < list.count; ++i) {
    if (std::strcmp(list.names[i], name) != 0) continue;
    chosen.store(list.targets[i], std::memory_order_relaxed);
    return true;
  }
  return false;
}

}  // namespace tivelo::limbs
