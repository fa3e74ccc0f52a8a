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

Region reserve_numbers() {
  const std::size_t pool = round_to_pages(pool_limbs(IS) * sizeof(Limb));
  const std::size_t workspace = engine_bytes(IS);
  // 32 bits have no addresses for the longest numbers.
  if (workspace > SIZE_MAX - pool) return {nullptr, SIZE_MAX};
  Region region = reserve(pool + workspace);
  if (region.data == nullptr) return region;
#ifdef MADV_HUGEPAGE
  // Long products sweep the workspace again and again: huge pages save most of its first touches.
  // The pool must not have them: every record would touch two megabytes for its first limb.
  ::madvise(region.data, pool, MADV_NOHUGEPAGE);
  ::madvise(region.data + pool, workspace, MADV_HUGEPAGE);
#endif
  attach_pool(reinterpret_cast<Limb*>(region.data));
  engine = Workspace(region.data + pool, workspace);
  return region;
}

}  // namespace tivelo
