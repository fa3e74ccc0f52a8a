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

// A stream that was handed over closed leaves its number to the next file opened, which would then
// receive what the console prints. Opened to read only, the number is taken and still not writable.
void hold_closed_streams() {
  int descriptor = 0;
  while (descriptor >= 0 && descriptor <= STDERR_FILENO) descriptor = ::open("/dev/null", O_RDONLY);
  if (descriptor > STDERR_FILENO) ::close(descriptor);
}

}  // namespace

int main(int argc, char** argv) {
  // An output that nobody reads any more is noticed when it is written.
  std::signal(SIGPIPE, SIG_IGN);
  hold_closed_streams();
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
