// The program in a bad environment: output that cannot be written, input that ends anywhere, files
// that are none, no memory, a small stack, odd starts. Never a signal, never a hang, never silent.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <csignal>
#include <fstream>
#include <sstream>

#include "support/feed.h"

namespace tivelo::tests {
namespace {

constexpr unsigned kSeconds = 60;  // a run that takes longer hangs; it ends with signal 14

struct Outcome {
  int status = 0;  // 128 and the signal for a run that a signal ended
  std::string out, err;
};

struct Start {
  std::string typed;
  std::vector<std::string> args = {"0"};
  std::function<void()> spoil = [] {};  // in the child, before the program takes over
  std::vector<std::string> environment = {"LANG=C"};
  bool named = true;  // false: not even a program name as argument 0
};

std::string content(std::FILE* file) {
  std::string text;
  std::rewind(file);
  for (int c; (c = std::fgetc(file)) != EOF;) text += static_cast<char>(c);
  std::fclose(file);
  return text;
}

std::vector<char*> pointers(const std::vector<std::string>& texts) {
  std::vector<char*> all;
  for (const std::string& text : texts) all.push_back(const_cast<char*>(text.c_str()));
  all.push_back(nullptr);
  return all;
}

Outcome run(const Start& start) {
  std::FILE* files[] = {std::tmpfile(), std::tmpfile(), std::tmpfile()};
  std::fwrite(start.typed.data(), 1, start.typed.size(), files[0]);
  std::rewind(files[0]);
  std::vector<std::string> args = start.args;
  if (start.named) args.insert(args.begin(), "tivelo");
  const pid_t child = fork();
  if (child == 0) {
    for (int i = 0; i < 3; ++i) dup2(fileno(files[i]), i);
    alarm(kSeconds);
    start.spoil();
    execve(TIVELO_PROGRAM, pointers(args).data(), pointers(start.environment).data());
    _exit(127);
  }
  int state = 0;
  waitpid(child, &state, 0);
  std::fclose(files[0]);
  return {WIFEXITED(state) ? WEXITSTATUS(state) : 128 + WTERMSIG(state), content(files[1]),
          content(files[2])};
}

void redirect(int descriptor, const char* name, int flags) {
  close(descriptor);
  if (open(name, flags) != descriptor) _exit(126);
}

std::string text_of(const char* name) {
  std::ostringstream text;
  text << std::ifstream(name, std::ios::binary).rdbuf();
  return text.str();
}

void write_text(const char* name, const std::string& text) {
  std::ofstream(name, std::ios::binary) << text;
}

std::string repeated(const std::string& text, std::size_t bytes) {
  std::string all;
  while (all.size() < bytes) all += text;
  return all;
}

void limit(decltype(RLIMIT_AS) what, rlim_t bytes) {
  const rlimit limits = {bytes, bytes};
  setrlimit(what, &limits);
}

TEST(Faults, OutputThatCannotBeWritten) {
  OwnFolder folder;
  write_text("script", "#FW:print\nA=1/3\nW.A\n");
  std::function<void()> ways[] = {[] { close(1); }, [] { redirect(1, "/dev/full", O_WRONLY); },
                                  [] {
                                    int ends[2];
                                    if (pipe(ends) != 0 || dup2(ends[1], 1) != 1) _exit(126);
                                    close(ends[0]);
                                    close(ends[1]);
                                  }};
  for (const auto& way : ways) {
    for (const Start& start : {Start{"A=1\n"}, Start{"A=1"}, Start{repeated("9^1000\n", 200000)},
                               Start{"{\nA=1\n}\nR999999\n"}, Start{"#FW:print\nA=2\nW.A\nA\n"},
                               Start{"A\n", {"script"}}}) {
      Start spoiled = start;
      spoiled.spoil = way;
      const Outcome outcome = run(spoiled);
      EXPECT_EQ(outcome.status, 1) << start.typed.substr(0, 30);
      EXPECT_EQ(outcome.err, "tivelo: standard output cannot be written\n");
      EXPECT_EQ(text_of("print").find("TIVELO"), std::string::npos) << "the console in a file";
    }
  }
}

TEST(Faults, InputThatEnds) {
  OwnFolder folder;
  const std::string typed = "A=1/3\n{\nB=A,I.C:?\n1\n}\nR2\n2\nI.A:two?\n3\nR.A\n#FR\n\nP.A";
  for (std::size_t n = 0; n <= typed.size(); ++n) {
    const Outcome outcome = run({typed.substr(0, n)});
    EXPECT_EQ(outcome.status, 0) << n;
    EXPECT_TRUE(outcome.out.ends_with("\n")) << n;
    EXPECT_EQ(outcome.err, "") << n;
  }
  write_text("save.txt", "A=8\n");
  write_text("script", "#FR\nA=1\n");
  for (const auto& way : {+[] { close(0); }, +[] { redirect(0, "/", O_RDONLY); },
                          +[] { redirect(0, "/dev/null", O_WRONLY); }}) {
    for (const char* argument : {"0", "script"}) {
      const Outcome outcome = run({"", {argument}, way});
      EXPECT_EQ(outcome.status, 0);
      EXPECT_TRUE(outcome.out.ends_with(") \n? \n")) << outcome.out;
    }
  }
}

// Standard error on a terminal: what the calculator explains there.
std::string explanations(Start start) {
  int master = -1;
  int slave = -1;
  if (openpty(&master, &slave, nullptr, nullptr, nullptr) != 0) return "no terminal";
  fcntl(master, F_SETFL, O_NONBLOCK);
  start.spoil = [slave] { dup2(slave, 2); };
  run(start);
  char text[4096];
  const ssize_t size = read(master, text, sizeof text);
  close(master);
  close(slave);
  return {text, static_cast<std::size_t>(std::max<ssize_t>(size, 0))};
}

TEST(Faults, FilesThatCannotBeWritten) {
  OwnFolder folder;
  std::filesystem::create_directory("folder");
  mkfifo("fifo", 0600);
  for (const char* name : {"/dev/full", "folder", "none/x", "fifo", ""}) {
    const std::string print = std::string("#FW:") + name + "\nA=2\nW.A\n#FC\n";
    const std::string save = std::string("WC:A1 ") + name + "\n";
    const Outcome outcome = run({print + save});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    const bool opens = std::string(name) == "/dev/full";
    EXPECT_EQ(outcome.out.find("? A= 2 \n? ? ") != std::string::npos, !opens) << name;
    const bool told = outcome.out.find("file_protected\n") != std::string::npos;
    EXPECT_EQ(told || *name == '\0', true) << name;
    EXPECT_NE(explanations({print}).find("written"), std::string::npos) << name;
    EXPECT_NE(explanations({save}).find("tivelo: "), std::string::npos) << name;
  }
}

TEST(Faults, FilesThatCannotBeRead) {
  OwnFolder folder;
  std::filesystem::create_directory("folder");
  mkfifo("fifo", 0600);
  write_text("nuls", std::string("1\0002,3", 5) + std::string(3000, '\0'));
  const std::pair<const char*, bool> names[] = {
      {"folder", false}, {"none", false}, {"/dev/zero", true}, {"fifo", true}, {"nuls", true}};
  for (const auto& [name, opens] : names) {
    const Outcome outcome = run({std::string("LC:") + name + "\nL:" + name + "\nA=5\n"});
    EXPECT_EQ(outcome.status, 0) << name;
    EXPECT_EQ(outcome.out.find("file_not_found\n") == std::string::npos, opens) << name;
    EXPECT_EQ(outcome.out.find("file not found.") == std::string::npos, opens) << name;
    EXPECT_NE(outcome.out.find("? A= 5 \n"), std::string::npos) << name;
    const Outcome script = run({"A=5\n", {name}});
    EXPECT_EQ(script.status, 0) << name;
    EXPECT_NE(script.out.find("? A= 5 \n"), std::string::npos) << name;
  }
}

TEST(Faults, StorageThatCannotBeHad) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer reserves more than any limit";
#endif
  OwnFolder folder;
  write_text("script", "B=B+1\nL:script\n");
  int refused = 0;
  int nested = 0;
  for (rlim_t mebibytes = 1; mebibytes < 200; mebibytes += 1 + mebibytes / 40) {
    Start start{"L:script\nB\n", {"5"}};
    start.spoil = [mebibytes] { limit(RLIMIT_AS, mebibytes << 20); };
    const Outcome outcome = run(start);
    if (outcome.status == 128 + SIGKILL || outcome.status == 127) continue;  // not even loaded
    if (outcome.status == 128 + SIGSEGV && outcome.out.empty() && mebibytes < 16) continue;
    const bool told = outcome.err.starts_with("tivelo: ") &&
                      outcome.err.ends_with(" bytes of storage cannot be had\n");
    EXPECT_EQ(outcome.status, told ? 1 : 0) << mebibytes << outcome.err;
    EXPECT_TRUE(told || outcome.out.find("? err ? ") != std::string::npos) << outcome.out;
    refused += told;
    nested += outcome.out.find("T= 32 \n") == std::string::npos && !told;
  }
  EXPECT_GT(refused, 0);
  EXPECT_GT(nested, 0);
}

TEST(Faults, OddStarts) {
  OwnFolder folder;
  const std::string typed = "1/3+.12345678901*SIN7\nF.360\nLOG2,9\nI.B:\n1.5\nB\n$\n";
  const Outcome usual = run({typed, {}});
  EXPECT_EQ(usual.status, 0);
  std::vector<Start> starts(6, Start{typed, {}});
  starts[0].named = false;
  starts[1].args.assign(10000, "x");
  starts[2].environment.clear();
  starts[3].environment = {"LANG=de_DE.UTF-8", "LC_ALL=de_DE.UTF-8"};
  starts[4].environment = {"LANG=tr_TR.UTF-8", "LC_ALL=tr_TR.UTF-8"};
  starts[5].args = {""};
  for (const Start& start : starts) {
    const Outcome outcome = run(start);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, usual.out) << &start - starts.data();
    EXPECT_EQ(outcome.err, "");
  }
}

TEST(Faults, NestingOnASmallStack) {
  OwnFolder folder;
  write_text("script", "B=B+1\nL:script\n");
  const std::size_t room = 559990;
  std::string typed = "L:script\nB\n";
  for (const char* piece :
       {"ATAN1,", "(", "|", "-(", "SIN(", "ATAN(", "1+(", "2^", "1G", "ATAN1,("})
    typed += repeated(piece, room) + "\n";
  for (const char* piece : {"(", "SIN(", "ATAN1,("}) {
    std::string line = repeated(piece, room / 2);
    const auto open = std::count(line.begin(), line.end(), '(');
    typed += line + "1" + std::string(static_cast<std::size_t>(open), ')') + "\n";
  }
  Start start{typed, {}};
  const Outcome usual = run(start);
  EXPECT_EQ(usual.status, 0);
  EXPECT_NE(usual.out.find("T= 32 \n"), std::string::npos);
#ifndef __SANITIZE_ADDRESS__
  start.spoil = [] { limit(RLIMIT_STACK, 256 << 10); };
#endif
  const Outcome small = run(start);
  EXPECT_EQ(small.status, 0);
  EXPECT_EQ(small.out, usual.out);
}

// Every number that is read into a machine integer, and counts that ask for nothing but a huge
// number of steps.
TEST(Faults, HugeCounts) {
  OwnFolder folder;
  const char* forms[] = {
      "X.A#",        "X.A-#",       "V.#\nA\nV.16", "A%#",      "AM#",
      "AP#",         "AC#",         "(9^50)P#",     "3C#",      "SIN#",
      "COS(#)",      "TAN(1/#)",    "LOG#,#",       "ATAN#,#",  "ATAN(#)-#I",
      "SQR#",        "SQR(#)",      "A##=1",        "A2=#\nA2", "B1=#\nA#B1=1\nA#B1",
      "R#",          "C=#\nR.C",    "1^#",          "0^#",      "1^-#",
      "10^#",        "10^-#",       "(1/3)^-#",     "#!",       "WC:A# t",
      "(1/#)+(1/#)", "(1/#)*(1/#)", ".1^#",         "I.A#:\n#"};
  std::vector<std::string> numbers = {"2147483647", "2147483648", "4294967296",
                                      "9223372036854775808", "99999999999999999999"};
  numbers.push_back(std::string(400, '9'));
  std::string typed;
  for (const char* form : forms) {
    for (const std::string& number : numbers) {
      typed += "A=7\n";
      for (const char* c = form; *c != '\0'; ++c)
        typed += *c == '#' && c[1] != 'B' ? number : std::string(1, *c);
      typed += "\n";
    }
  }
  typed += "1^2099999999\n2^2099999999\n99999999!\n99999999P9999999\n99999999C49999999\n";
  typed += "R999999\nRMMMMMM\nX.A999999999\nV.99999999999\nR.A\n";
  for (const std::string& number : numbers) {
    write_text(("cells" + number.substr(0, 30)).c_str(), number + "." + number + "," + number);
    typed += "LC:cells" + number.substr(0, 30) + "\nA1\nP.A1\n";
  }
  for (const char* precision : {"0", "5"}) {
    const Outcome outcome = run({typed + "A=5\n", {precision}});
    EXPECT_EQ(outcome.status, 0) << precision;
    EXPECT_TRUE(outcome.out.ends_with("A= 5 \n\n? \n")) << precision;
    EXPECT_EQ(outcome.err, "");
  }
}

TEST(Faults, TextsAreNoFormats) {
  OwnFolder folder;
  const std::string odd = "%n%s%9999d%s";
  const Outcome outcome = run({"I.A:" + odd + "\n3\nWC:A1 " + odd + "\nL:x" + odd + "\n", {"0"}});
  EXPECT_NE(outcome.out.find("? " + odd + "? ? file not found.? \n"), std::string::npos);
  EXPECT_TRUE(std::filesystem::exists(odd));
  EXPECT_NE(explanations({"L:" + odd + "x\n"}).find("tivelo: " + odd + "x: "), std::string::npos);
}

}  // namespace
}  // namespace tivelo::tests
