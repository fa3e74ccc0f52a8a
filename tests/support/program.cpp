#include "support/program.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/folder.h"

namespace tivelo::tests {
namespace {

std::vector<char*> pointers(const std::vector<std::string>& texts) {
  std::vector<char*> all;
  for (const std::string& text : texts) all.push_back(const_cast<char*>(text.c_str()));
  all.push_back(nullptr);
  return all;
}

}  // namespace

Outcome run(const Start& start) {
  write("typed", start.typed);
  std::vector<std::string> args = start.args;
  if (start.named) args.insert(args.begin(), "tivelo");
  const pid_t child = fork();
  if (child == 0) {
    redirect(0, "typed", O_RDONLY);
    redirect(1, "out", O_WRONLY | O_CREAT | O_TRUNC);
    redirect(2, "err", O_WRONLY | O_CREAT | O_TRUNC);
    alarm(60);  // a run that takes longer hangs
    start.spoil();
    std::vector<char*> own;
    if (start.environment) environ = (own = pointers(*start.environment)).data();
    execv(TIVELO_PROGRAM, pointers(args).data());
    _exit(127);
  }
  int state = 0;
  waitpid(child, &state, 0);
  const int status = WIFEXITED(state) ? WEXITSTATUS(state) : 128 + WTERMSIG(state);
  return {status, content("out"), content("err")};
}

std::string output(const Start& start) {
  const Outcome outcome = run(start);
  EXPECT_EQ(outcome.status, 0) << start.typed.substr(0, 99);
  EXPECT_EQ(outcome.err, "");
  return outcome.out;
}

void redirect(int descriptor, const char* file, int flags) {
  const int opened = open(file, flags, 0600);
  if (opened < 0 || dup2(opened, descriptor) < 0) _exit(126);
  close(opened);
}

}  // namespace tivelo::tests
