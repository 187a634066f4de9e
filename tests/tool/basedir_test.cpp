// Finding the base folder and seeding the settings file.
#include "tool/basedir.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

namespace {

struct Scratch {
  std::string root;
  Scratch() {
    char tmpl[] = "/tmp/tyro_baseXXXXXX";
    root = mkdtemp(tmpl);
  }
  ~Scratch() { (void)!system(("rm -rf '" + root + "'").c_str()); }
  void Dir(const std::string &rel) { mkdir((root + "/" + rel).c_str(), 0755); }
  void File(const std::string &rel, const std::string &text) { std::ofstream(root + "/" + rel) << text; }
  std::string Read(const std::string &rel) {
    std::ifstream in(root + "/" + rel);
    std::stringstream ss;
    ss << in.rdbuf();
    return ss.str();
  }
};

}  // namespace

TEST(BaseFolder, NearestAncestorHoldingData) {
  Scratch s;
  s.Dir("data");
  s.Dir("build");
  s.Dir("build/tool");
  // Started from the build folder: two levels up holds data/.
  EXPECT_EQ(BaseFolderFrom(s.root + "/build/tool/tyrograph"), s.root);
  // Started from the base folder itself.
  EXPECT_EQ(BaseFolderFrom(s.root + "/tyrograph"), s.root);
  // A nearer data/ wins.
  s.Dir("build/data");
  EXPECT_EQ(BaseFolderFrom(s.root + "/build/tool/tyrograph"), s.root + "/build");
}

TEST(BaseFolder, NoneFoundGivesEmpty) {
  Scratch s;
  s.Dir("bin");
  // Walks up to / which, on a test machine, holds no data/ folder.
  struct stat st;
  if (stat("/data", &st) == 0) GTEST_SKIP() << "/data exists on this machine";
  EXPECT_EQ(BaseFolderFrom(s.root + "/bin/tyrograph"), "");
}

TEST(BaseFolder, EnvironmentOverrides) {
  setenv("TYROGRAPH_HOME", "/some/where", 1);
  EXPECT_EQ(BaseFolderFind(), "/some/where");
  unsetenv("TYROGRAPH_HOME");
  // The test binary lives in the build tree under the source tree's data/ or
  // beside none; either way the answer is a folder, never empty.
  EXPECT_FALSE(BaseFolderFind().empty());
}

TEST(BaseFolder, SeedsSettingsOnlyWhenMissing) {
  Scratch s;
  s.Dir("data");
  s.File("data/pacejka.ini", "last\n{\n  car=touring\n}\n");
  ASSERT_TRUE(BaseFolderSeedSettings(s.root));
  EXPECT_EQ(s.Read("pacejka.ini"), "last\n{\n  car=touring\n}\n");
  s.File("pacejka.ini", "last\n{\n  car=mine\n}\n");
  ASSERT_TRUE(BaseFolderSeedSettings(s.root));
  EXPECT_EQ(s.Read("pacejka.ini"), "last\n{\n  car=mine\n}\n");
}

TEST(BaseFolder, NoDefaultsNoSeed) {
  Scratch s;
  EXPECT_TRUE(BaseFolderSeedSettings(s.root));
  struct stat st;
  EXPECT_NE(stat((s.root + "/pacejka.ini").c_str(), &st), 0);
}
