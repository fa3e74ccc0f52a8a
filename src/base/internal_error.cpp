// Nothing is put in order on the way out: what would be relied on may be what is wrong.
#include "base/internal_error.h"

#include <cstdio>
#include <cstdlib>

namespace tivelo {

void internal_error(const char* what, std::size_t asked, std::size_t left) {
  constexpr int kStatus = 4;
  std::fprintf(stderr, "tivelo: internal error: %s: %zu asked for, %zu left\n", what, asked, left);
  std::_Exit(kStatus);
}

}  // namespace tivelo
