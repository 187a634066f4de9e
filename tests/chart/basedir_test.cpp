// Finding the base folder and seeding the settings file.
#include "chart/basedir.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <fstream>
#include <string>

#include "golden.h"

TEST(BaseFolder, NearestAncestorHoldingData) {
  ScratchDir s;
  for (const char *d : {"/data", "/build", "/build/tool"}) mkdir((s.root + d).c_str(), 0755);
  EXPECT_EQ(BaseFolderFrom(s.root + "/build/tool/tyrograph"), s.root);
  EXPECT_EQ(BaseFolderFrom(s.root + "/tyrograph"), s.root);
  mkdir((s.root + "/build/data").c_str(), 0755);  // a nearer data/ wins
  EXPECT_EQ(BaseFolderFrom(s.root + "/build/tool/tyrograph"), s.root + "/build");
  setenv("TYROGRAPH_HOME", "/some/where", 1);
  EXPECT_EQ(BaseFolderFind(), "/some/where");
  unsetenv("TYROGRAPH_HOME");
  EXPECT_FALSE(BaseFolderFind().empty());
  // None found up to /: empty.
  ScratchDir none;
  mkdir((none.root + "/bin").c_str(), 0755);
  struct stat st;
  if (stat("/data", &st) == 0) GTEST_SKIP() << "/data exists on this machine";
  EXPECT_EQ(BaseFolderFrom(none.root + "/bin/tyrograph"), "");
}

TEST(BaseFolder, SeedsSettingsOnlyWhenMissing) {
  ScratchDir s;
  ASSERT_TRUE(BaseFolderSeedSettings(s.root));  // no defaults: no seed
  struct stat st;
  EXPECT_NE(stat((s.root + "/pacejka.ini").c_str(), &st), 0);
  mkdir((s.root + "/data").c_str(), 0755);
  std::ofstream(s.root + "/data/pacejka.ini") << "last\n{\n  car=touring\n}\n";
  ASSERT_TRUE(BaseFolderSeedSettings(s.root));
  EXPECT_EQ(ReadFileBytes(s.root + "/pacejka.ini"), "last\n{\n  car=touring\n}\n");
  std::ofstream(s.root + "/pacejka.ini") << "last\n{\n  car=mine\n}\n";
  ASSERT_TRUE(BaseFolderSeedSettings(s.root));
  EXPECT_EQ(ReadFileBytes(s.root + "/pacejka.ini"), "last\n{\n  car=mine\n}\n");
}
