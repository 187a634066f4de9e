// Eval: one row per case.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "base/qeval.h"
#include "tests/base/capture.h"

namespace {

const std::pair<const char *, int> kCases[] = {
    {"0", 0},          {"42", 42},        {"010", 8},        {"019", 1},  // 9 is no octal digit
    {"$ff", 255},      {"0x1F", 31},      {"0XfF", 255},     {"#101", 5},
    {"4294967297", 1}, {"$ff+#101", 260}, {"0x10|1", 17},    {"2+3*4", 14},
    {"(2+3)*4", 20},   {"4|2&1", 4},      {"10-3-2", 5},     {"100/10/5", 2},
    {"7/0", 0},        {"7%0", 0},        {"-7/2", -3},      {"7%3", 1},
    {"-2+3", -5},      {"2*-3+1", -8},    {"-1", -1},        {"~0", -1},  // unary minus takes the rest
    {"+5", 5},         {"  1 +  2 ", 3},  {"", 0},           {"(1+2", 3},
    {"3+x", 3},        {"x", 0},          {"6^3&1", 1},      {"1&3^2", 3},  // & and ^: one level, left to right
};

TEST(Eval, TableNullTextAndDeepNesting) {
  ReportCapture cap;
  for (auto &[text, want] : kCases) EXPECT_EQ(Eval(text), want) << "'" << text << "'";
  EXPECT_EQ(Eval(nullptr), 0);
  EXPECT_EQ(cap.warnings, "Eval() is passed 0-pointer\n");
  std::string s;
  for (int i = 0; i < 45; i++) s += "1+(";  // 45 waiting operands, 40 slots
  s += "1" + std::string(45, ')');
  (void)Eval(s.c_str());  // overwrites the top slot without crashing
  EXPECT_EQ(Eval("1+(2+(3))"), 6);
}

}  // namespace

// Each evaluation keeps its own state: threads evaluating at once each get
// their own expression's value.
TEST(Eval, ThreadsDoNotShareAParse) {
  std::atomic<int> wrong{0};
  auto run = [&](const char *text, int want) {
    for (int i = 0; i < 200000; i++)
      if (Eval(text) != want) wrong++;
  };
  std::thread a(run, "(1+2)*(3+4)*(5+6)*(7+8)", 3465), b(run, "$ff & #1010 | 010", 10 | 8);
  a.join();
  b.join();
  EXPECT_EQ(wrong.load(), 0);
}
