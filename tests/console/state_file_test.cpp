// State files: that they bring back every word of every record, at any precision; that no damaged
// one is believed; and that whatever happens while one is written, the old or the new one is there.
#include "console/state_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <random>

#include "base/exactness.h"
#include "base/interrupt.h"
#include "base/sha256.h"
#include "fraction/cells.h"
#include "support/calculator.h"
#include "support/folder.h"
#include "support/program.h"
#include "support/session.h"

namespace tivelo::tests {
namespace {

template <class T>
void append(std::string& all, const T& value) {
  all.append(reinterpret_cast<const char*>(&value), sizeof value);
}

void append(std::string& all, const Mark& mark) {
  append(all, mark.event);
  if (!mark.exact()) append(all, mark.times), all += mark.line;
}

void append(std::string& all, const numf& value) {
  for (const num* a : {value.c, value.m}) {
    for (const int field : {a->sign, a->len, a->dec, a->imag, a->rem, a->rdiv, a->used})
      append(all, field);
    for (const Limb limb : in_use(a)) append(all, limb);
  }
}

// All that a session can depend on, every word above the values included.
std::string everything() {
  std::string all;
  for (int v = 0; v < kVariables; ++v) {
    append(all, M[v]);
    all.append(reinterpret_cast<const char*>(Mc[v]->limbs), static_cast<std::size_t>(IS) * 4);
    append(all, mark_of(v));
    append(all, mark_of_cells(v));
  }
  append(all, Cn);
  append(all, mark_of_result());
  append(all, ROF[0]);
  return all;
}

// Types the lines at a precision; what is printed for those from `from` on, and everything() before
// line `at`.
struct Played {
  std::string printed, state;
};
Played play(const std::string& precision, const std::vector<std::string>& lines, std::size_t from,
            std::size_t at) {
  Feed feed;
  Played played;
  std::size_t next = 0;
  feed.next = [&](std::string& text) {
    if (next == from) feed.printed.take();
    if (next == at) played.state = everything();
    if (next == lines.size()) return false;
    text = lines[next++] + "\n";
    return true;
  };
  EXPECT_EQ(feed.run({precision}), 0);
  played.printed = feed.printed.take();
  return played;
}

// Lines that leave every kind of value and cell, in variables A to E.
struct Lines {
  std::mt19937 random;

  std::string pick(const std::vector<std::string>& from) { return from[random() % from.size()]; }
  std::string name() { return {static_cast<char>('A' + random() % 5)}; }
  std::string number() {
    return pick({"0",
                 "00",
                 "-0",
                 "1",
                 "-7",
                 "1/3",
                 "-22/7",
                 "1.5",
                 ".12345",
                 "-3.14159265358979",
                 "000000000012",
                 "SQR(-4)",
                 "SQR2",
                 "1/99999",
                 "10^8",
                 "1/(10^8)",
                 "9^99",
                 "2^3000",
                 "9^" + std::to_string(random() % 1600),
                 "1/0",
                 "5.",
                 name(),
                 name() + "1"});
  }
  std::string line() {
    const std::string x = name(), d = std::to_string(random() % 10);
    switch (random() % 10) {
      case 0:
        return pick({"X.", "X."}) + x + pick({"3", "-3", "9", "-9", "0"});
      case 1:
        return pick({"C." + x, "#ROF", "#RON", "V.F", "V.16", "V.8", "$"});
      case 2:
        return x + d + "=" + number();
      case 3:
        return x + "#" + std::to_string(10 + random() % 60) + "=" + number();
      case 4:
        return pick({"#WHY", "#LIST", "P." + x + d, "P." + x, "T=" + x + d, "#ID " + x});
      case 5:
        return x + "=" + number() + pick({"+", "-", "*", "/"}) + name();
      default:
        return x + "=" + number();
    }
  }
  std::vector<std::string> some(std::size_t count) {
    std::vector<std::string> all;
    while (all.size() < count) all.push_back(line());
    return all;
  }
};

TEST(StateFiles, BringEverythingBack) {
  OwnFolder folder;
  for (unsigned seed = 0; seed < 1000; ++seed) {
    SCOPED_TRACE(seed);
    Lines lines{std::mt19937(seed)};
    const std::string precision = std::to_string(seed % 4);
    std::vector<std::string> before = lines.some(seed % 40);
    before.emplace_back("#SAVE:a");
    const std::vector<std::string> after = lines.some(12);
    std::vector<std::string> whole = before, second = {"#LOAD:a", "#SAVE:b"};
    whole.insert(whole.end(), after.begin(), after.end());
    second.insert(second.end(), after.begin(), after.end());
    const Played first = play(precision, whole, before.size(), before.size());
    const Played again = play(precision, second, 2, 2);
    ASSERT_TRUE(first.state == again.state);
    ASSERT_EQ(content("a"), content("b"));
    ASSERT_EQ(first.printed, again.printed);
    // Through a longer precision and back.
    play(std::to_string(seed % 4 + 1), {"#LOAD:a", "#SAVE:c"}, 0, 0);
    ASSERT_TRUE(play(precision, {"#LOAD:c"}, 0, 1).state == first.state) << content("c");
    std::filesystem::remove("a");
  }
}

struct StateFile : testing::Test, Pool {
  OwnFolder folder;
  int display = 16;

  void fill(int units) {
    set_one_limb(M[0].c, static_cast<Limb>(units));
    write_cell(1, 3, {-3, 0, -7});
    put_mark(0, {Event::cut_sum, 72, "A=A+1/N"});
  }
  bool refuses(const std::string& text) {
    write("file", text);
    const std::string before = everything();
    const bool refused = !load_state("file", &display);
    return refused && printed() == "err " && everything() == before;
  }
};

std::string with_digest(const std::string& lines) {
  Sha256 digest;
  digest.update(lines);
  char hex[Sha256::kHexDigits];
  digest.finish(hex);
  return lines + "sha256 " + std::string(hex, sizeof hex) + "\n";
}

TEST_F(StateFile, IsNotBelievedWhenDamaged) {
  fill(12345);
  ASSERT_TRUE(save_state("state", display));
  const std::string text = content("state");
  EXPECT_EQ(text, with_digest("TIVELO state 1\nprecision 0\ndisplay 16\nreduction on\n"
                              "A numerator +12345\nA inexact cut_sum 72 A=A+1/N\n"
                              "B cells 4\nB cell 3 -3 0 -7\n"));
  for (std::size_t i = 0; i < text.size(); ++i) {
    EXPECT_TRUE(refuses(text.substr(0, i))) << i;
    for (const int change : {1, 2, 4, 8, 16, 32, 64, 128}) {
      std::string damaged = text;
      damaged[i] = static_cast<char>(damaged[i] ^ change);
      EXPECT_TRUE(refuses(damaged)) << i << " " << change;
    }
  }
  EXPECT_TRUE(refuses(text + "\n"));
  write("file", text);
  EXPECT_TRUE(load_state("file", &display));
}

TEST_F(StateFile, IsNotBelievedWhenOddlyMade) {
  const std::string head = "TIVELO state 1\nprecision 0\ndisplay 16\nreduction on\n";
  for (const std::string line : {"",
                                 "A",
                                 "A numerator",
                                 "A numerator 5",
                                 "A numerator +5x",
                                 "A numerator +5 ",
                                 "A numerator +5 point 1",
                                 "A numerator +5 point 3",
                                 "A numerator +5 imaginary -1",
                                 "A numerator +5 group 1",
                                 "A numerator +5 divisor 1 point 2",
                                 "AA numerator +5",
                                 "a numerator +5",
                                 "B numerator +5\nA numerator +5",
                                 "A numerator +5\nA numerator +5",
                                 "A denominator +5\nA numerator +5",
                                 "A denominator +00",
                                 "A denominator -5",
                                 "result denominator +5 point 2",
                                 "A inexact none 1 ",
                                 "A inexact cut_sum 0 ",
                                 "A inexact what 1 ",
                                 "A cell 0 1 2 3",
                                 "A cells 0",
                                 "A cells 9999999",
                                 "A cells 9\nA cell 0 0 0 0",
                                 "A cells 9\nA cell 0 1 2",
                                 "A cells 9\nA cell 0 1 2 3 ",
                                 "A cells 9\nA cell -1 1 2 3",
                                 "A cells 9\nA cell 1 1 2 3\nA cell 0 1 2 3",
                                 "A cells 9\nA cell 9 1 2 3",
                                 "A cells 9\nA cell 0 1 2 2147483648",
                                 "A cells 9\nA cell 0 -100000001 2 3",
                                 "A rest 1234567",
                                 "A rest ",
                                 "result cell 0 1 2 3",
                                 "result rest 00000001"})
    EXPECT_TRUE(refuses(with_digest(head + line + "\n"))) << line;
  EXPECT_TRUE(refuses(with_digest(head.substr(0, head.size() - 1))));
  EXPECT_TRUE(refuses(with_digest("TIVELO state 2" + head.substr(14))));
  EXPECT_FALSE(refuses(with_digest(head)));
}

TEST(StateFiles, OfAnotherPrecision) {
  OwnFolder folder;
  const auto told = [](const std::string& precision, const std::vector<std::string>& lines) {
    return play(precision, lines, 0, 0).printed;
  };
  told("2", {"A=9^1500", "A=1/3", "B#12=5", "#SAVE:short", "C=9^5000", "#SAVE:long", "C=1",
             "B1=400", "C#B1=1", "#SAVE:cells"});
  const std::string fits = told("0", {"#LOAD:short", "B#12", "#LIST"});
  EXPECT_TRUE(fits.find("short: 1 variable, 1 cell\n") != fits.npos) << fits;
  EXPECT_TRUE(fits.find("T= 5 \n") != fits.npos) << fits;
  EXPECT_TRUE(fits.find("A: fraction, 1/1 digits, exact\n") != fits.npos) << fits;
  for (const char* name : {"long", "cells"})
    EXPECT_TRUE(
        told("0", {"A=5", std::string("#LOAD:") + name, "A"}).ends_with("? err ? T= 5 \n\n? \n"))
        << name;
  Feed feed;
  bool typed = false;
  feed.next = [&](std::string& text) { return text = "#LOAD:long\n", !std::exchange(typed, true); };
  feed.run({"0"});
  EXPECT_EQ(feed.explained.take(), "tivelo: long needs precision 1; nothing loaded\n");
  EXPECT_TRUE(told("1", {"#LOAD:long"}).find("long: 2 variables") != std::string::npos);
}

long long left = 0;

// Saves in a child that is killed at its n-th poll, one stands before each write and each step; or
// has it broken off there. True when it came to its end.
bool save_until(long long n, void (*stop)()) {
  const pid_t child = fork();
  if (child == 0) {
    left = n;
    attendant = stop;
    attention = 1;
    int status = 1;
    try {
      status = save_state("state", 16) ? 0 : 2;
    } catch (const Interrupted&) {
    }
    _exit(status);
  }
  int state = 0;
  waitpid(child, &state, 0);
  return WEXITSTATUS(state) == 0;
}

TEST_F(StateFile, IsTheOldOrTheNewOneWhereverItStops) {
  fill(1);
  ASSERT_TRUE(save_state("state", display));
  const std::string old = content("state");
  fill(2);
  ASSERT_TRUE(save_state("new", display));
  void (*const stops[])() = {[] {
                               if (--left == 0) _exit(9);
                             },
                             [] {
                               if (--left == 0) interrupt();
                             }};
  for (const auto& stop : stops) {
    long long polls = 1;
    for (; !save_until(polls, stop); ++polls) {
      EXPECT_TRUE(content("state") == old || content("state") == content("new")) << polls;
    }
    EXPECT_GT(polls, 3);
    EXPECT_EQ(content("state"), content("new"));
    write("state", old);
  }
  const auto files = std::distance(std::filesystem::directory_iterator("."), {});
  EXPECT_LT(files, 2 + 9) << "an interruption removes its file";
}

TEST_F(StateFile, KeepsModesAndLinks) {
  fill(1);
  std::filesystem::create_directory("there");
  ASSERT_TRUE(save_state("there/state", display));
  chmod("there/state", 0640);
  std::filesystem::create_symlink("there/state", "link");
  std::filesystem::create_symlink("link", "second");
  fill(2);
  ASSERT_TRUE(save_state("second", display));
  EXPECT_TRUE(std::filesystem::is_symlink("second") && std::filesystem::is_symlink("link"));
  struct stat status {};
  stat("there/state", &status);
  EXPECT_EQ(status.st_mode & 0777, 0640u);
  EXPECT_TRUE(content("there/state").find("A numerator +2\n") != std::string::npos);
  std::filesystem::create_symlink("there/none", "dangling");
  EXPECT_TRUE(save_state("dangling", display) && std::filesystem::exists("there/none"));
  std::filesystem::create_symlink("round", "round");
  write("text", "TIVELO");
  mkfifo("fifo", 0600);
  for (const char* name : {"round", "text", "fifo", "there", "/dev/null", "none/x", "there/"}) {
    EXPECT_FALSE(save_state(name, display)) << name;
    EXPECT_EQ(printed(), "file_protected\n");
  }
  EXPECT_EQ(content("text"), "TIVELO");
}

TEST_F(StateFile, IsKeptWhereTheNewOneIsTooLong) {
  for (const auto& [line, bytes] :
       {std::pair("#SAVE:file", rlim_t{2000}), {"WC:Z9 file", 100}, {"#SAVE:file", 0}}) {
    write("file", "TIVELO state 1\n");
    const std::string typed = "A=9^1500\nB=A-1\n" + std::string(line) + "\n";
    const auto spoil = [limit = bytes] {
      const rlimit limits = {limit, limit};
      setrlimit(RLIMIT_FSIZE, &limits);
    };
    const Outcome outcome = run({typed, {"-q", "-p", "0"}, spoil});
    EXPECT_EQ(outcome.status, 3) << line << outcome.err;
    EXPECT_EQ(content("file"), "TIVELO state 1\n") << line;
  }
}

}  // namespace
}  // namespace tivelo::tests
