// Chooses the multiplication kernels once, by what the processor offers.
#include "kernels/target.h"

#include <algorithm>
#include <atomic>
#include <cstring>

namespace tivelo::kernels {

#if defined(__x86_64__)
extern const Target kAvx512Target;
extern const Target kAvx2Target;
#elif defined(__AARCH64EL__)
extern const Target kNeonTarget;
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
      offer(kAvx512Target);
    }
    if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma")) offer(kAvx2Target);
#elif defined(__AARCH64EL__)
    offer(kNeonTarget);
#endif
    offer(kPortableTarget);
  }

  void offer(const Target& t) {
    targets[count] = &t;
    names[count++] = t.name;
  }
};

const Available& available() {
  static const Available list;
  return list;
}

std::atomic<const Target*> chosen{nullptr};
std::atomic<const Target*> chosen_second{&kPortableTarget};

}  // namespace

std::size_t transform_length(Shape s) { return static_cast<std::size_t>(s.u) << s.k; }

std::size_t product_coefficients(std::size_t na, std::size_t nb) {
  return (na + 1) / 2 + (nb + 1) / 2 - 1;
}

Shape shape_for(std::size_t n) {
  for (int k = kShortestTransform; k <= 8; ++k) {
    if (n <= std::size_t{1} << k) return {1, k};
  }
  int k = kShortestTransform;
  while (std::size_t{8} << k < n) ++k;
  return {static_cast<int>((n - 1) >> k) + 1, k};
}

Shape cyclic_shape_for(std::size_t n) {
  const Shape s = shape_for(n);
  return {s.u == 7 ? 8 : s.u, s.k};
}

Shape product_shape(std::size_t na, std::size_t nb) {
  const std::size_t n = product_coefficients(na, nb);
  const Shape s = shape_for(n);
  if (s.u == 1 || s.u == 8) return s;  // below 8 there is 7 only, which is not cyclic
  Shape shorter = {s.u - 1, s.k};
  if (s.u == 5) shorter = {8, s.k - 1};
  const std::size_t around = 2 * (n - transform_length(shorter));
  return shorter.k >= kShortestTransform && 16 * around <= std::min(na, nb) ? shorter : s;
}

std::size_t transform_limbs(std::size_t na, std::size_t nb, Shape s) {
  const std::size_t n = transform_length(s);
  return product_coefficients(na, nb) > n ? 2 * n + 2 : na + nb;
}

const Target& target() {
  const Target* t = chosen.load(std::memory_order_relaxed);
  if (t == nullptr) {
    t = available().targets[0];
    chosen.store(t, std::memory_order_relaxed);
  }
  return *t;
}

const Target& second_target() { return *chosen_second.load(std::memory_order_relaxed); }

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

void force_targets(const Target* first, const Target* second) {
  chosen.store(first, std::memory_order_relaxed);
  chosen_second.store(second != nullptr ? second : &kPortableTarget, std::memory_order_relaxed);
}

}  // namespace tivelo::kernels
