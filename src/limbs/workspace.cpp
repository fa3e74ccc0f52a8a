// The end of a program that has asked for more workspace than it was lent. It is a fault of the
// program, so nothing is put in order on the way out, and no signal is raised that a caller might
// take for a crash.
#include "limbs/workspace.h"

#include <cstdio>
#include <cstdlib>

namespace tivelo {

void workspace_exceeded(std::size_t n, std::size_t element, std::size_t left) {
  constexpr int kStatus = 4;
  std::fprintf(stderr,
               "tivelo: internal error: workspace exceeded, %zu elements of %zu bytes with %zu "
               "bytes left\n",
               n, element, left);
  std::_Exit(kStatus);
}

}  // namespace tivelo
