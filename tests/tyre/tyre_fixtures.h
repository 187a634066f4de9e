// Coefficient sets and helpers shared by the tyre tests. The sets are the
// ones tests/tyre/make_reference.py computes its reference values from.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "tyre/kpacejka.h"

struct NamedValue {
  const char *name;
  double value;
};

inline void SetMembers(KPacejka &t, std::initializer_list<NamedValue> values) {
  for (const NamedValue &v : values) {
    const KPacejkaMember *m = KPacejkaFindMember(v.name);
    ASSERT_NE(m, nullptr) << v.name;
    KPacejkaSetMember(t, *m, v.value);
  }
}

// The touring Pacejka89/96 set (a111/a112 split, every shift non-zero).
inline void SetTouringPac96(KPacejka &t) {
  const double v[46] = {1.55, -55, 1450, 1900, 7.2, 0.014, -0.24, 1.0, -0.03, -0.0013, -0.15,
                        -8.5, -0.29, 17.8, -2.4, 1.65, -110, 1800, 23.3, 410, 0.075, 0, 0.055,
                        -0.024, 0.014, 0.26, 0, 0, 2.2, -4.3, -4.4, -1.9, -9.6, 0.0225, 0, 0.044,
                        -0.58, 0.18, 0.043, 0.048, -0.0035, -0.18, 0.14, -1.029, 0.27, -1.1};
  t.model = KPacejka::PAC96;
  for (int i = 0; i < KPacejka::PAC96_COUNT; i++) t.Pac96(i) = float(v[i]);
}

// A Magic Formula set with every term non-zero and scaling factors other
// than 1 where a mix-up would hide.
inline void SetTestMF(KPacejka &t, int model) {
  t.model = model;
  SetMembers(t, {
      {"pcx1", 1.65}, {"pdx1", 1.2}, {"pdx2", -0.1}, {"pdx3", 8.0}, {"pex1", 0.4}, {"pex2", 0.2},
      {"pex3", -0.1}, {"pex4", 0.05}, {"pkx1", 22.0}, {"pkx2", -2.0}, {"pkx3", 0.3}, {"phx1", 0.001},
      {"phx2", 0.0005}, {"pvx1", 0.01}, {"pvx2", 0.005}, {"rbx1", 12.0}, {"rbx2", -9.0}, {"rbx3", 0.5},
      {"rcx1", 1.05}, {"rex1", -0.4}, {"rex2", 0.3}, {"rhx1", 0.004}, {"pcy1", 1.35}, {"pdy1", 1.1},
      {"pdy2", -0.15}, {"pdy3", 3.0}, {"pey1", -0.8}, {"pey2", -0.6}, {"pey3", 0.1}, {"pey4", -5.0},
      {"pky1", -18.0}, {"pky2", 1.8}, {"pky3", 0.6}, {"phy1", 0.002}, {"phy2", 0.001}, {"phy3", 0.03},
      {"pvy1", 0.03}, {"pvy2", -0.01}, {"pvy3", -0.2}, {"pvy4", -0.4}, {"rby1", 7.0}, {"rby2", 2.5},
      {"rby3", 0.01}, {"rby4", 0.2}, {"rcy1", 1.05}, {"rey1", 0.1}, {"rey2", 0.05}, {"rhy1", 0.01},
      {"rhy2", 0.02}, {"rvy1", 0.05}, {"rvy2", 0.02}, {"rvy3", -0.3}, {"rvy4", 20.0}, {"rvy5", 1.9},
      {"rvy6", 10.0}, {"qbz1", 10.0}, {"qbz2", -1.5}, {"qbz3", -0.8}, {"qbz4", 0.1}, {"qbz5", -0.3},
      {"qbz6", 0.2}, {"qbz9", 15.0}, {"qbz10", 0.2}, {"qcz1", 1.2}, {"qdz1", 0.1}, {"qdz2", -0.005},
      {"qdz3", 0.3}, {"qdz4", -2.0}, {"qdz6", 0.003}, {"qdz7", -0.002}, {"qdz8", -0.2}, {"qdz9", 0.03},
      {"qez1", -1.5}, {"qez2", 0.5}, {"qez3", 0.1}, {"qez4", 0.3}, {"qez5", -0.5}, {"qhz1", 0.003},
      {"qhz2", 0.002}, {"qhz3", 0.1}, {"qhz4", -0.1}, {"ssz1", 0.02}, {"ssz2", 0.03}, {"ssz3", 0.5},
      {"ssz4", -0.3}, {"r0", 0.31}, {"fz0", 4000.0}, {"lfz0", 1.1}, {"lmux", 0.95}, {"lkx", 1.05},
      {"lgax", 1.2}, {"lmuy", 0.9}, {"lky", 1.1}, {"lgay", 0.8}, {"lyka", 0.9}, {"lres", 1.3},
      {"lgaz", 1.5},
  });
}

inline void Evaluate(KPacejka &t, double Fz, double kappa, double alpha, double gamma) {
  t.SetNormalLoad(float(Fz));
  t.SetSlipRatio(float(kappa));
  t.SetSlipAngle(float(alpha));
  t.SetCamber(float(gamma));
  t.Calculate();
}

// Float results against double references: relative 5e-5, plus 0.01 (N or
// N·m) for values that are small differences of forces of thousands of N.
#define EXPECT_REF(got, ref) EXPECT_NEAR(double(got), (ref), 5e-5 * std::fabs(ref) + 1e-2) << #got

// A scratch folder per test; Write puts `text` in dir/name and returns the full name.
class TyreFileTest : public testing::Test {
 protected:
  void SetUp() override {
    char tmpl[] = "/tmp/tyre_test_XXXXXX";
    ASSERT_NE(mkdtemp(tmpl), nullptr);
    dir = tmpl;
  }
  void TearDown() override { std::filesystem::remove_all(dir); }
  std::string Write(const std::string &name, const std::string &text) {
    const std::string path = dir + "/" + name;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }
  std::string dir;
};
