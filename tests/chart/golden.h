// Helpers of the tool tests: golden files under tests/data/tool/, the test
// car, the session's graphs on it, and scratch folders.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>

#include "chart/carload.h"
#include "chart/graph.h"
#include "tool/session.h"

inline std::string ReadFileBytes(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

inline void ExpectGolden(const std::string &name, const std::string &text) {
  std::string path = std::string(TYRO_TEST_DATA) + "/tool/" + name;
  EXPECT_EQ(text, ReadFileBytes(path)) << "differs from " << path;
}

inline std::string TouringCar() { return std::string(TYRO_TEST_DATA) + "/tool/touring/car.ini"; }
inline std::string TirFile(const char *name) { return std::string(TYRO_SOURCE_DIR) + "/data/tyres/" + name; }

// The session's three chained graphs, every wheel loaded from the test car.
inline void CreateTouringGraphs() {
  Graph *prev = nullptr;
  for (int i = 0; i < CURVE_COUNT; i++) session.graphs[i] = prev = new Graph(CurveKind(i), prev);
  for (Graph *g : session.graphs)
    for (int w = 0; w < CAR_WHEELS; w++) {
      std::string error;
      ASSERT_TRUE(CarLoadTyreSource(TouringCar().c_str(), w, g->GetTyre(w), &error)) << error;
    }
  session.wheel = 0;
}

inline void DeleteGraphs() {
  for (Graph *&g : session.graphs) delete std::exchange(g, nullptr);
}

// A scratch folder, removed with its contents at the end of the scope.
struct ScratchDir {
  std::string root;
  ScratchDir() {
    char tmpl[] = "/tmp/tyro_testXXXXXX";
    root = mkdtemp(tmpl) ? tmpl : "/nonexistent";
  }
  ~ScratchDir() { (void)!system(("rm -rf '" + root + "'").c_str()); }
  // data/cars/<car> links to the test cars, as under the tool's base folder.
  void LinkCar(const std::string &car) {
    EXPECT_EQ(system(("mkdir -p '" + root + "/data/cars' && ln -s '" TYRO_TEST_DATA "/tool/" + car + "' '" + root +
                      "/data/cars/" + car + "'").c_str()), 0);
  }
};

// Works in another folder until the end of the scope.
struct WorkingDir {
  std::string old;
  explicit WorkingDir(const std::string &dir) {
    char buf[4096];
    old = getcwd(buf, sizeof buf) ? buf : ".";
    EXPECT_EQ(chdir(dir.c_str()), 0);
  }
  ~WorkingDir() { EXPECT_EQ(chdir(old.c_str()), 0); }
};
