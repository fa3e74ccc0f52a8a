// Command lines with options: what each prints, tells and leaves as its status.
#include <gtest/gtest.h>

#include <sstream>

#include "support/folder.h"
#include "support/program.h"

namespace tivelo::tests {
namespace {

struct Row {
  std::string args;             // between '|'
  std::string typed, out, err;  // err: its beginning; empty where there is none, or a status tells
  int status = 0;
};

TEST(Options, CommandLines) {
  OwnFolder folder;
  write("sums.txt", "#!/usr/bin/env -S tivelo -f\nA.0\nA=3\n A * A ; squared\n1/0\nA=1$\nA");
  write("head.txt", "A:1\n10^1600/10^1600");
  write("script", "A.0\nB=7\n");
  const std::string zero = "column 2: division by zero; 0 in its place\n";
  const std::string power = "1606938044258990275541962092341162602522202993782792835301376\n";
  const Row rows[] = {
      {"-e|2^200", "", power, ""},
      {"-e|1/0", "", "", "tivelo: -e 1: " + zero, 1},
      {"-e-12|-e|7/3|-e|0-0|-e|V.2|-e|1/3|-e-5|-eV.0|-e|5/2", "", "-12\n7/3\n0\n0.33\n-5.00\n2\n",
       ""},
      {"-e|.5000|-e|V.20|-e|.50000000000000000|-e|1/8", "",
       "0.5\n0.50000000000000000000\n0.12500000000000000000\n", "tivelo: -e 1: column 1: four or"},
      {"-e|A=6*7|-e|P.A|-e|F.A|-e|O.A,B|-e|A1=-1/3|-e|P.A1", "", "42\n2*3*7\nA>B\n-1/3\n", ""},
      {"-f|sums.txt", "", "9\n3\n",
       "tivelo: sums.txt:5: " + zero + "tivelo: sums.txt:6: column 4:", 1},
      {"-f|head.txt|-f|sums.txt|-e|B=10^1600", "", "1\n9\n3\n", "", 1},
      {"-p0|-f|head.txt", "", "", "tivelo: head.txt:2: column 3: the power needs 1601 digits", 1},
      {"-q", "5\n\n6+;\n{\nA=A+1,A\n}\nR3", "5\n6\n1\n2\n3\n", ""},
      {"-p0|-e|V.800|-e|1/3", "", "0." + std::string(800, '3') + "\n", ""},
      {"-q|0", "$\n1/0\n", "", "tivelo: -:1: column 1: '$' is not accepted", 2},
      {"-f|none|-e|1", "", "1\n", "tivelo: none cannot be read\n", 3},
      {"-e|I.A:how many? |-e|A|-f|-", "7\n8", "7\n8\n", "how many? "},
      {"script|-e|B", "", "7\n", ""},
      {"-e", "", "", "tivelo: -e: its value is missing; try --help\n", 2},
      {"-p|12", "", "", "tivelo: -p 12: a precision is one digit, 0 to 9; try --help\n", 2},
      {"-e|1|--hepl", "", "", "tivelo: --hepl: no such option; try --help\n", 2},
      {"-V", "", "TIVELO Algebra 2022.10.29\n", ""},
      {"--|-e", "Q.", "file not found.TIVELO Algebra 2022.10.29 (559984 digits,8) \n? ", ""},
      {"--explain|0", "1/0", "TIVELO Algebra 2022.10.29 (1584 digits,8) \n? err T= 0 \n\n? \n",
       "tivelo: " + zero},
      {"-e|L:none|-e|F.2^67-1|-e|A=9^99|-eA1=A", "", "", "", 3},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.args);
    std::istringstream words(row.args);
    Start start{row.typed, {}};
    for (std::string word; std::getline(words, word, '|');) start.args.push_back(word);
    const Outcome outcome = run(start);
    EXPECT_EQ(outcome.status, row.status);
    EXPECT_EQ(outcome.out, row.out);
    EXPECT_TRUE(row.err.empty() ? row.status != 0 || outcome.err.empty()
                                : outcome.err.starts_with(row.err))
        << outcome.err;
  }
  EXPECT_TRUE(run({"", {"--help"}}).out.starts_with("Usage: tivelo "));
}

}  // namespace
}  // namespace tivelo::tests
