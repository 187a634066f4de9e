// A fresh scratch folder as the working folder of each test, and whole-file
// reads and writes.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

class ScratchTest : public testing::Test {
 protected:
  void SetUp() override {
    char tmpl[] = "/tmp/tyro_test_XXXXXX";
    ASSERT_NE(mkdtemp(tmpl), nullptr);
    old_ = std::filesystem::current_path();
    std::filesystem::current_path(tmpl);
    dir_ = std::filesystem::current_path();
  }
  void TearDown() override {
    std::filesystem::current_path(old_);
    std::filesystem::remove_all(dir_);
  }
  std::filesystem::path dir_, old_;
};

inline void WriteFile(const std::string &path, const std::string &bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

inline std::string ReadFile(const std::string &path) {
  std::ifstream f(path, std::ios::binary);
  std::stringstream s;
  s << f.rdbuf();
  return s.str();
}
