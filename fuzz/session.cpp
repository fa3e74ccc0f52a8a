// A whole session: the bytes are typed at precision 0. Two runs in a row must answer alike, so
// that nothing of a run lives on in the process.
#include "harness.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tivelo::fuzz;
  if (size > 4096) return 0;
  const std::string typed = tame({reinterpret_cast<const char*>(data), size});
  const Outcome first = run({{"0"}, typed, {}});
  if (first.cut) return 0;
  const Outcome second = run({{"0"}, typed, {}});
  if (second.cut || asks_for_time(typed)) return 0;
  demand(first.printed == second.printed, "two runs print the same");
  demand(first.explanations == second.explanations, "two runs explain the same");
  demand(first.files == second.files, "two runs leave the same files");
  return 0;
}
