// Helpers of the chart tests: golden files under tests/data/tool/, the test
// car, three graphs on it, and scratch folders.
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

// Three chained graphs, every wheel loaded from the test car.
inline void CreateTouringGraphs(Graph *graphs[CURVE_COUNT]) {
  Graph *prev = nullptr;
  for (int i = 0; i < CURVE_COUNT; i++) graphs[i] = prev = new Graph(CurveKind(i), prev);
  for (int i = 0; i < CURVE_COUNT; i++)
    for (int w = 0; w < CAR_WHEELS; w++) {
      std::string error;
      ASSERT_TRUE(CarLoadTyreSource(TouringCar().c_str(), w, graphs[i]->GetTyre(w), &error)) << error;
    }
}

inline void DeleteGraphs(Graph *graphs[CURVE_COUNT]) {
  for (int i = 0; i < CURVE_COUNT; i++) delete std::exchange(graphs[i], nullptr);
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
