// Middle elision: what is kept, what fits, UTF-8 left whole.
#include "base/qelide.h"

#include <gtest/gtest.h>

namespace {

// One unit per character (a UTF-8 sequence counts once).
int Chars(const std::string &s) {
  int n = 0;
  for (unsigned char c : s) n += (c & 0xC0) != 0x80;
  return n;
}

}  // namespace

TEST(QElide, KeepsStartAndEndAroundDotsAndFits) {
  const std::string name = "MagicFormula61_Parameters.tir";  // 29 characters
  EXPECT_EQ(QElideMiddle(name, 29, Chars), name);
  EXPECT_EQ(QElideMiddle(name, 100, Chars), name);
  for (int avail = 5; avail < 29; avail++) {
    std::string s = QElideMiddle(name, avail, Chars);
    EXPECT_EQ(Chars(s), avail) << s;  // one unit per character: exactly full
    size_t dots = s.find("...");
    ASSERT_NE(dots, std::string::npos) << s;
    EXPECT_EQ(name.rfind(s.substr(0, dots), 0), 0u) << s;
    const std::string tail = s.substr(dots + 3);
    EXPECT_EQ(name.compare(name.size() - tail.size(), tail.size(), tail), 0) << s;
    EXPECT_GE(tail.size(), dots);  // the end (the extension) gets the extra character
  }
  EXPECT_EQ(QElideMiddle(name, 12, Chars), "Magi...s.tir");
  // Too narrow for a character on each side: only dots, as many as fit.
  EXPECT_EQ(QElideMiddle(name, 4, Chars), "...");
  EXPECT_EQ(QElideMiddle(name, 2, Chars), "..");
  EXPECT_EQ(QElideMiddle(name, 0, Chars), "");
}

TEST(QElide, NeverSplitsAUtf8Sequence) {
  const std::string text = "\xC2\xB5\xC2\xB5\xC2\xB5-load-\xC2\xB5\xC2\xB5\xC2\xB5";  // µµµ-load-µµµ
  for (int avail = 5; avail < 12; avail++) {
    std::string s = QElideMiddle(text, avail, Chars);
    EXPECT_EQ(Chars(s), avail);
    for (size_t i = 0; i + 1 < s.size(); i++) {
      const bool lead = static_cast<unsigned char>(s[i]) == 0xC2;
      EXPECT_TRUE(!lead || static_cast<unsigned char>(s[i + 1]) == 0xB5) << s;
    }
    EXPECT_NE(static_cast<unsigned char>(s.back()), 0xC2) << s;
  }
}

TEST(QElide, PathTail) {
  EXPECT_EQ(QPathTail("/a/b/c.tir"), "c.tir");
  EXPECT_EQ(QPathTail("c.tir"), "c.tir");
  EXPECT_EQ(QPathTail("data/cars/touring/"), "data/cars/touring/");
  EXPECT_EQ(QPathTail(""), "");
}
