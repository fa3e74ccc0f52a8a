// A script "s" with a header, two scripts "a" and "b" that it (and they) may run, and typed lines.
// The precision is 1 where no header chooses 0 or 1.
#include "harness.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tivelo::fuzz;
  if (size > 16384) return 0;
  std::vector<std::string> parts = split(data, size, 4);
  for (std::string& part : parts) {
    const bool header = part.size() > 2 && part[0] == 'A' && (part[1] == '.' || part[1] == ':');
    if (header && part[2] >= '0' && part[2] <= '9') part[2] = part[2] % 2 == 0 ? '0' : '1';
    part = tame(part);
  }
  // ';' is the mode 11: precision 1 and a script.
  run_twice({{";", "s"}, parts[3], {{"s", parts[0]}, {"a", parts[1]}, {"b", parts[2]}}});
  return 0;
}
