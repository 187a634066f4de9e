// Eval as a table: one row per case, with an ID to find it by.
#include <gtest/gtest.h>

#include "base/qeval.h"
#include "tests/base/capture.h"

namespace {

struct EvalCase {
  const char *id;
  const char *text;
  int expected;
};

const EvalCase kCases[] = {
    {"num-1", "0", 0},
    {"num-2", "42", 42},
    {"num-oct", "010", 8},
    {"num-oct-stop", "019", 1},  // 9 is no octal digit: the number ends there
    {"num-hex-dollar", "$ff", 255},
    {"num-hex-0x", "0x1F", 31},
    {"num-hex-0X", "0XfF", 255},
    {"num-bin", "#101", 5},
    {"num-wrap", "4294967297", 1},
    {"mix-1", "$ff+#101", 260},
    {"or-1", "0x10|1", 17},
    {"prec-1", "2+3*4", 14},
    {"prec-2", "(2+3)*4", 20},
    {"prec-3", "4|2&1", 4},
    {"assoc-1", "10-3-2", 5},
    {"assoc-2", "100/10/5", 2},
    {"div-0", "7/0", 0},
    {"mod-0", "7%0", 0},
    {"div-trunc", "-7/2", -3},
    {"mod-sign", "7%3", 1},
    {"unary-rest-1", "-2+3", -5},
    {"unary-rest-2", "2*-3+1", -8},
    {"unary-neg", "-1", -1},
    {"unary-not", "~0", -1},
    {"unary-plus", "+5", 5},
    {"blanks", "  1 +  2 ", 3},
    {"empty", "", 0},
    {"paren-missing", "(1+2", 3},
    {"garbage-stop", "3+x", 3},
    {"garbage-first", "x", 0},
};

TEST(Eval, Table) {
  for (const EvalCase &c : kCases) {
    EXPECT_EQ(Eval(c.text), c.expected) << c.id << ": '" << c.text << "'";
  }
  // & and ^ share one level and bind left to right: (6^3)&1 = 5&1.
  EXPECT_EQ(Eval("6^3&1"), 1);
  EXPECT_EQ(Eval("1&3^2"), 3);
}

TEST(Eval, NullTextWarnsAndGivesZero) {
  ReportCapture cap;
  EXPECT_EQ(Eval(nullptr), 0);
  EXPECT_EQ(cap.warnings, "Eval() is passed 0-pointer\n");
  EXPECT_EQ(Eval(""), 0);
  EXPECT_EQ(cap.warnings, "Eval() is passed 0-pointer\n");  // empty text: no report
}

TEST(Eval, DeepNestingKeepsWorking) {
  // 45 operands waiting on the stack exceed its 40 slots; the top slot is
  // overwritten, which must neither crash nor read outside the stack.
  std::string s;
  for (int i = 0; i < 45; i++) s += "1+(";
  s += "1";
  for (int i = 0; i < 45; i++) s += ")";
  (void)Eval(s.c_str());
  EXPECT_EQ(Eval("1+(2+(3))"), 6);
}

}  // namespace
