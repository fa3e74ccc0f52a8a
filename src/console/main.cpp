// The program: the calculator on standard input and output. Explanations of refusals go to standard
// error when a person may be reading there.
#include <fcntl.h>
#include <unistd.h>

#include <csignal>

#include "console/process.h"

namespace {

int input = STDIN_FILENO;
int output = STDOUT_FILENO;
int errors = STDERR_FILENO;

tivelo::In console_in;
tivelo::Out console_out;
tivelo::Out console_errors;

// A standard descriptor that is closed would be the one that the next file opened gets: a print
// file in place of the console. A folder takes its place, which can be neither read nor written.
void occupy_closed_descriptors() {
  for (const int descriptor : {input, output, errors})
    if (::fcntl(descriptor, F_GETFD) < 0) (void)::open("/", O_RDONLY);
}

}  // namespace

int main(int argc, char** argv) {
  occupy_closed_descriptors();
  // An output that nobody reads any more is noticed when it is written.
  std::signal(SIGPIPE, SIG_IGN);
  console_in.fill = tivelo::fill_descriptor;
  console_in.context = &input;
  console_out.drain = tivelo::drain_descriptor;
  console_out.context = &output;
  console_errors.drain = tivelo::drain_descriptor;
  console_errors.context = &errors;
  const bool explain = ::isatty(errors) != 0;
  const tivelo::Console outside{&console_in, &console_out, explain ? &console_errors : nullptr,
                                &console_errors};
  return tivelo::run_calculator(argc > 0 ? argc - 1 : 0, argv + 1, outside);
}
