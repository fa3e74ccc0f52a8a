// The rows of the language; those of the commands with a '#' stand beside their functions.
#include "console/help.h"

#include "base/report.h"

namespace tivelo {

namespace {

constexpr Help kLanguage[] = {
    {"+",
     "X + Y, X - Y, -X",
     "sum and difference",
     {"1/3 + 1/6", "5 - 7"},
     "a common denominator above 100000000 makes a decimal of 16 places"},
    {"*",
     "X * Y, X / Y",
     "product and quotient",
     {"2/3 * 6", "22/7"},
     "2PI is no product: write 2*PI"},
    {"^", "X ^ N", "power", {"2^100", "(2/3)^-4"}, "2^3^2 takes brackets: 2^(3^2)"},
    {"!", "N !", "factorial", {"30!", "(5+5)!"}, "0! counts as 0"},
    {"P", "N P digits", "permutations", {"5P2", "(N)P3"}, "5P stands for 1"},
    {"C", "N C digits", "combinations", {"49C6", "(N)C2"}, "C.X is a command"},
    {"G", "X G Y", "greatest common divisor", {"12G18", "(A)G12"}, "AG is read as one name: (A)G"},
    {"L", "X L Y", "least common multiple", {"12L18", "(A)L12"}, "L:name is a command"},
    {"%", "X % digits, X M digits", "remainder", {"17%5", "(2^64)M1000"}, "digits only"},
    {"|", "|X|", "absolute value", {"|2-5|", "|-1/3|"}, nullptr},
    {"SIN",
     "SIN X, COS X, TAN X",
     "of an angle in degrees",
     {"SIN30", "COS(75/2)"},
     "SIN37.5 ends at the point"},
    {"SQR", "SQR X", "square root", {"SQR16", "SQR(-4)"}, "2 is not exact: 16 places"},
    {"LOG", "LOG base.N", "logarithm of digits", {"LOG10.100", "LOG2.1024"}, "no brackets"},
    {"ATAN", "ATAN X,Y", "the angle of X and Y", {"ATAN1,1", "ATAN(3),(4)"}, nullptr},
    {"PI", "PI, E', TIME", "constants and the clock", {"2*PI", "E'"}, "16 places"},
    {"C.", "C.X", "cuts X to its whole part", {"C.A", "C.B"}, "places of a decimal stay"},
    {"X.", "X.Yn, X.Y-n", "Y times, or divided by, ten to the n", {"X.A3", "X.A-3"}, nullptr},
    {"I.", "I.X:text", "asks, and reads X", {"I.A:how many?", "I.A1:cell one?"}, nullptr},
    {"P.", "P.X, P.Xd", "prints a variable or a cell", {"P.A", "P.A1"}, nullptr},
    {"W.", "W.X", "prints into the print file", {"#FW:table.txt", "W.A"}, nullptr},
    {"F.", "F.value", "factorises", {"F.360", "F.(2^67-1)"}, "one value is read: use brackets"},
    {"O.", "O.X,Y", "orders the sizes of X and Y", {"O.A,B", "O.A=B"}, "numerators only"},
    {"V.", "V.F, V.n", "shows fractions, or n places", {"V.F", "V.16"}, "groups of eight"},
    {"L:", "L:name", "runs a script", {"L:sums.txt", "L:more.txt"}, "11216 bytes are read"},
    {"LC:", "LC:name", "loads cells from a table", {"LC:table.csv", "LC:prices.csv"}, nullptr},
    {"WC:",
     "WC:Xd,name",
     "saves cells 1 to d of A to X",
     {"WC:B2,t.csv", "WC:Z9,t.csv"},
     "low words only; #SAVE keeps all"},
    {"{", "{ lines }", "stores a block", {"{", "N=N+1"}, "what is behind '{' is dropped"},
    {"R", "R, Rn, R.X", "runs the block, n or X times", {"R100", "R.N"}, "P.R shows the variable"},
    {"#ROF", "#ROF, #RON", "cancels long fractions no more, and again", {"#ROF", "#RON"}, nullptr},
    {"#FW",
     "#FW:name, #FR:name, #FC",
     "opens and closes the print file",
     {"#FW:a.txt", "#FC"},
     nullptr},
    {"Q.", "Q., Q:", "leaves", {"Q.", "Q:"}, nullptr},
};

bool is_called(const Help& row, std::string_view word) {
  const auto bare = [](std::string_view name) {
    if (name.size() > 1 && name.starts_with('#')) name.remove_prefix(1);
    return name;
  };
  return bare(row.word) == bare(word);
}

const Help* find(std::string_view word, std::span<const Help> rows) {
  for (const Help& row : rows)
    if (is_called(row, word)) return &row;
  return nullptr;
}

// Words in lines of one screen's width.
void print_words(std::span<const Help> rows) {
  constexpr std::size_t kWidth = 72;
  std::size_t column = 0;
  for (const Help& row : rows) {
    if (column > 0 && column + row.word.size() >= kWidth) {
      put(*answers, "\n");
      column = 0;
    }
    if (column > 0) put(*answers, " ");
    put(*answers, row.word);
    column += row.word.size() + 1;
  }
  put(*answers, "\n");
}

}  // namespace

void print_index(std::span<const Help> own) {
  print_words(kLanguage);
  print_words(own);
  put(*answers, "#HELP and one of these tells more\n");
}

bool print_help(std::string_view word, std::span<const Help> own) {
  const Help* row = find(word, own);
  if (row == nullptr) row = find(word, kLanguage);
  if (row == nullptr) return false;
  print(*answers, "%s  %s\n", row->syntax, row->does);
  for (const char* example : row->examples) print(*answers, "  %s\n", example);
  if (row->trap != nullptr) print(*answers, "trap: %s\n", row->trap);
  return true;
}

}  // namespace tivelo
