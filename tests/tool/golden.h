// Golden-file helpers of the tool tests: compare text with a file under
// tests/data/tool/, or rewrite the file when TYRO_UPDATE_GOLDEN=1 is set
// (then review the diff before committing it).
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

inline std::string ReadFileBytes(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream ss;
  ss << in.rdbuf();
  return ss.str();
}

inline void ExpectGolden(const std::string &name, const std::string &text) {
  std::string path = std::string(TYRO_TEST_DATA) + "/tool/" + name;
  const char *update = getenv("TYRO_UPDATE_GOLDEN");
  if (update && *update == '1') {
    std::ofstream(path, std::ios::binary) << text;
    return;
  }
  std::string want = ReadFileBytes(path);
  ASSERT_FALSE(want.empty()) << "missing golden file " << path;
  EXPECT_EQ(text, want) << "differs from " << path;
}

// The test car of tests/data/tool/touring.
inline std::string TouringCar() { return std::string(TYRO_TEST_DATA) + "/tool/touring/car.ini"; }
