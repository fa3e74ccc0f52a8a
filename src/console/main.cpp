// The program: the calculator on standard input and output. Messages go to standard error when a
// person may be reading there.
#include <fcntl.h>
#include <unistd.h>

#include <csignal>

#include "console/process.h"

namespace {

int input = STDIN_FILENO;
int output = STDOUT_FILENO;
int errors = STDERR_FILENO;

tivelo::In typed;
tivelo::Out answers;
tivelo::Out told;

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
  // A limit of the size of files is a failed write.
  std::signal(SIGXFSZ, SIG_IGN);
  typed.fill = tivelo::fill_descriptor;
  typed.context = &input;
  answers.drain = tivelo::drain_descriptor;
  answers.context = &output;
  told.drain = tivelo::drain_descriptor;
  told.context = &errors;
  typed.terminal = ::isatty(input) != 0;
  const bool read = ::isatty(errors) != 0;
  const tivelo::Streams streams{&typed, &answers, read ? &told : nullptr, &told};
  return tivelo::run_calculator(argc > 0 ? argc - 1 : 0, argv + 1, streams);
}
