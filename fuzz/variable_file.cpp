// A variable file "v", and typed lines before it is loaded. What is then saved must load again and
// save the same, up to the 1800 bytes that a load reads.
#include "harness.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tivelo::fuzz;
  if (size > 4096) return 0;
  const std::vector<std::string> parts = split(data, size, 2);
  const std::string typed = "A=9^195\nB=1/3\nC=-.12345\nC1=C\nD1=7/8\n" + tame(parts[1]) +
                            "\n}\nLC:v\nA1\nB1+C1\nP.D2\nE=F9*G3\nWC:Z9 w\nLC:w\nWC:Z9 x\n";
  const Outcome outcome = run({{"0"}, typed, {{"v", parts[0]}}});
  const auto saved = outcome.files.find("w");
  const auto again = outcome.files.find("x");
  if (outcome.cut || saved == outcome.files.end() || again == outcome.files.end()) return 0;
  const std::string& text = saved->second;
  if (text.size() <= 1800 && text.find('-') == std::string::npos)
    demand(text == again->second, "a saved table loads and saves the same");
  return 0;
}
