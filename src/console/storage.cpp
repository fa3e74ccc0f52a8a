// Reservations of address space; the system gives memory where they are touched.
#include "console/storage.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

#include "base/precision.h"
#include "bigint/engine.h"
#include "bigint/needs.h"
#include "bigint/pool.h"

namespace tivelo {

namespace {

constexpr std::size_t kLargePage = std::size_t{2} << 20;

std::size_t round_to_pages(std::size_t size) {
  const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  return (size + page - 1) / page * page;
}

}  // namespace

Region reserve(std::size_t size) {
  Region region{nullptr, round_to_pages(size)};
  void* data = ::mmap(nullptr, region.size, PROT_READ | PROT_WRITE,
                      MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (data != MAP_FAILED) region.data = static_cast<std::byte*>(data);
  return region;
}

void release(Region& region) {
  if (region.data != nullptr) ::munmap(region.data, region.size);
  region = {};
}

void use_large_pages([[maybe_unused]] std::byte* from, [[maybe_unused]] std::byte* to) {
#ifdef MADV_HUGEPAGE
  const auto up = (kLargePage - reinterpret_cast<std::uintptr_t>(from) % kLargePage) % kLargePage;
  const auto down = reinterpret_cast<std::uintptr_t>(to) % kLargePage;
  const auto size = static_cast<std::size_t>(to - from);
  if (size >= up + down + kLargePage) ::madvise(from + up, size - up - down, MADV_HUGEPAGE);
#endif
}

Region reserve_numbers() {
  const std::size_t pool = round_to_pages(pool_limbs(IS) * sizeof(Limb));
  const std::size_t workspace = engine_bytes(IS);
  // 32 bits have no addresses for the longest numbers.
  if (workspace > SIZE_MAX - pool) return {nullptr, SIZE_MAX};
  Region region = reserve(pool + workspace);
  if (region.data == nullptr) return region;
#ifdef MADV_NOHUGEPAGE
  ::madvise(region.data, pool, MADV_NOHUGEPAGE);
#endif
  // Long products sweep the workspace again and again. Neither end of a record has large pages: its
  // first limb, or a cell of its variable, would touch two megabytes.
  const std::size_t record = static_cast<std::size_t>(IS) * sizeof(Limb);
  for (std::byte* at = region.data; record > 2 * kLargePage && at + record <= region.data + pool;
       at += record)
    use_large_pages(at + kSmallPages, at + record - kSmallPages);
  use_large_pages(region.data + pool, region.data + pool + workspace);
  attach_pool(reinterpret_cast<Limb*>(region.data));
  engine = Workspace(region.data + pool, workspace);
  return region;
}

}  // namespace tivelo
