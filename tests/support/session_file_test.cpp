// The transcript format: what each mark stands for, and that nothing is lost between text and
// steps.
#include "support/session_file.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>

namespace tivelo::tests {
namespace {

Session read_text(const std::string& text) {
  const auto file =
      std::filesystem::temp_directory_path() / ("tivelo-" + std::to_string(getpid()) + ".session");
  std::ofstream(file, std::ios::binary) << text;
  Session session = read_session(file);
  std::filesystem::remove(file);
  return session;
}

TEST(SessionFile, TellsTypedFromPrinted) {
  struct Row {
    const char *text, *printed, *typed;
  };
  const Row rows[] = {
      {"Hello \n? 1+2\nT= 3 \n\n? \n", "Hello \n? T= 3 \n\n? \n", "1+2\n"},  // end of input
      {"? \nhelp\n? \n", "? help\n? \n", "\n"},          // Enter alone, then the end of input
      {"err ? A=1\n? Q.\n", "err ? ? ", "A=1\nQ.\n"},    // a prompt need not begin its line
      {"? A=1? 2\n\\? B=1\n", "? ? B=1\n", "A=1? 2\n"},  // only the first; an echoed block entry
      {"N=\\>5\nx\n", "N=x\n", "5\n"},                   // any other prompt
      {"? 7\\\nT= 7 \\\n", "? T= 7 ", "7"},              // no Enter, no line end
      {"? a\\tb\\r\\x00\\\\\n\\$ 1\n", "? $ 1\n", nullptr},
      {"? \\{90*3}\n\\{x*2}\n", "? xx\n", "909090\n"},
  };
  for (const Row& row : rows) {
    const Session session = read_text(std::string("#! note\n$ tivelo 0 a\\x20b\n") + row.text);
    ASSERT_EQ(session.steps.size(), 1u) << row.text;
    const Step& run = session.steps[0];
    EXPECT_EQ(session.header, "#! note\n");
    EXPECT_EQ(run.args, (std::vector<std::string>{"0", "a b"}));
    EXPECT_EQ(printed(run), row.printed) << row.text;
    EXPECT_EQ(typed(run), row.typed ? row.typed : std::string("a\tb\r\0\\\n", 7)) << row.text;
    const Session again = read_text(write_session(session));
    EXPECT_EQ(printed(again.steps.at(0)), printed(run)) << row.text;
    EXPECT_EQ(typed(again.steps.at(0)), typed(run)) << row.text;
  }
}

TEST(SessionFile, KnowsFilesAndStatus) {
  const Session session = read_text(
      "$ cat > in\nA=1\\\n$ tivelo in\n? \n$ cat no\ncat: no: No such file or directory\n"
      "$ echo $?\n1\n");
  ASSERT_EQ(session.steps.size(), 4u);
  EXPECT_EQ(session.steps[0].kind, Step::Kind::kMake);
  EXPECT_EQ(session.steps[0].args.at(0), "in");
  EXPECT_EQ(session.steps[0].text, "A=1");
  EXPECT_EQ(session.steps[2].kind, Step::Kind::kMissing);
  EXPECT_EQ(session.steps[3].text, "1\n");
  EXPECT_EQ(write_session(read_text(write_session(session))), write_session(session));
}

}  // namespace
}  // namespace tivelo::tests
