// The TIR writer: bundled files and random bit patterns survive write and
// re-import bit for bit, every keyed member lands in its section, the text
// matches a golden file, refusals and write failures are reported.
#include "tyre/kpacejka_tirwrite.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "base/qfile.h"
#include "tests/base/capture.h"
#include "tests/tyre/tyre_fixtures.h"
#include "tyre/ptirfile.h"

namespace fs = std::filesystem;
using TirWriteTest = TyreFileTest;

namespace {

// The names of the members whose bytes differ.
std::string MemberDiff(const KPacejka &a, const KPacejka &b) {
  std::string diff;
  for (int i = 0; i < kpacejkaMemberCount; i++) {
    const KPacejkaMember &m = kpacejkaMembers[i];
    const char *pa = reinterpret_cast<const char *>(&a) + m.offset;
    const char *pb = reinterpret_cast<const char *>(&b) + m.offset;
    if (memcmp(pa, pb, 4)) diff += std::string(diff.empty() ? "" : ", ") + m.name;
  }
  return diff;
}

// Points where Fx, Fy or Mz of the two tyres differ in any bit, over a grid
// of loads, slip ratios, slip angles and cambers.
int ForceDiffs(KPacejka &a, KPacejka &b) {
  int diffs = 0;
  for (double Fz : {800.0, 2500.0, 4000.0, 6500.0, 12000.0})
    for (double kappa : {-0.6, -0.1, -0.01, 0.0, 0.02, 0.08, 0.3})
      for (double alpha : {-0.35, -0.05, 0.0, 0.01, 0.12})
        for (double gamma : {-0.08, 0.0, 0.04}) {
          Evaluate(a, Fz, kappa, alpha, gamma);
          Evaluate(b, Fz, kappa, alpha, gamma);
          const float ra[3] = {a.Fx, a.Fy, a.Mz}, rb[3] = {b.Fx, b.Fy, b.Mz};
          diffs += memcmp(ra, rb, sizeof ra) != 0;
        }
  return diffs;
}

std::vector<std::string> BundledTirFiles() {
  std::vector<std::string> files;
  for (const auto &e : fs::directory_iterator(TYRO_SOURCE_DIR "/data/tyres"))
    if (e.path().extension() == ".tir") files.push_back(e.path().string());
  std::sort(files.begin(), files.end());
  return files;
}

std::string ReadAll(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream ss;
  ss << in.rdbuf();
  return ss.str();
}

}  // namespace

// Each bundled file: import, write, import the written file into a fresh
// tyre. FITTYP 61 files come back as 6.1; every other FITTYP (5, 6, 62 or
// none) is imported as 5.2 after the import's error, and written as 52.
TEST_F(TirWriteTest, BundledFilesRoundTripBitForBit) {
  const std::vector<std::string> files = BundledTirFiles();
  ASSERT_EQ(files.size(), 7u);
  int mf61 = 0;
  for (const std::string &file : files) {
    ReportCapture cap;
    KPacejka original, back;
    original.LoadFromTirFile(file.c_str());
    const bool fittyp61 = PTirFile(file.c_str()).GetInt("model.fittyp", 0) == 61;
    EXPECT_EQ(original.model, fittyp61 ? KPacejka::MF61 : KPacejka::MF52) << file;
    EXPECT_EQ(cap.errors.find("only 52 (MF5.2) or 61 (MF6.1) supported") != std::string::npos, !fittyp61) << file;
    mf61 += fittyp61;

    const std::string out = dir + "/" + fs::path(file).filename().string();
    ASSERT_TRUE(KPacejkaWriteTirFile(out.c_str(), original)) << file;
    cap.errors.clear();
    back.LoadFromTirFile(out.c_str());
    EXPECT_EQ(cap.errors, "") << file << ": the written file has a FITTYP the import rejects";
    EXPECT_EQ(MemberDiff(original, back), "") << file;
    EXPECT_EQ(ForceDiffs(original, back), 0) << file;
  }
  EXPECT_EQ(mf61, 2);
}

// Values that need all nine digits, tiny and huge magnitudes and -0 come
// back with the same bits.
TEST_F(TirWriteTest, EveryFloatComesBackExactly) {
  std::mt19937 rng(20261123);
  std::uniform_int_distribution<uint32_t> bits;
  KPacejka original, back;
  original.model = KPacejka::MF61;
  int n = 0;
  for (int i = 0; i < kpacejkaMemberCount; i++) {
    const KPacejkaMember &m = kpacejkaMembers[i];
    if (!m.tirKey) continue;
    float v;
    do {
      const uint32_t b = bits(rng);
      memcpy(&v, &b, sizeof v);
    } while (!std::isfinite(v));
    if (n == 0) v = -0.0f;
    if (n == 1) v = 1e-38f;
    if (n == 2) v = 3.4e38f;
    if (n == 3) v = 0.1f;
    *KPacejkaFloat(original, m) = v;
    n++;
  }
  const std::string out = dir + "/bits.tir";
  ASSERT_TRUE(KPacejkaWriteTirFile(out.c_str(), original));
  back.LoadFromTirFile(out.c_str());
  EXPECT_EQ(MemberDiff(original, back), "");
}

// Only about one float in seventy needs all nine digits, so random bits can
// miss them. Known nine-digit values, and runs of neighbouring bit patterns
// at magnitudes where eight digits lose many of them, fill the keyed members
// file after file and must come back with the same bits.
TEST_F(TirWriteTest, NineDigitFloatsAndDenseBitRunsComeBackExactly) {
  const auto fromBits = [](uint32_t b) {
    float v;
    memcpy(&v, &b, sizeof v);
    return v;
  };
  const auto needsNine = [](float v) {
    char buf[32];
    snprintf(buf, sizeof buf, "%.8g", double(v));
    const float back = strtof(buf, nullptr);
    return memcmp(&back, &v, sizeof v) != 0;
  };
  std::vector<float> values;
  for (uint32_t b : {0x416D4B17u /* 14.8308325 */, 0x447A0001u /* 1000.00006 */, 0xC2C80002u /* -100.000015 */,
                     0x3DCCCCD0u /* 0.100000024 */, 0x38D1B718u /* 0.000100000005 */}) {
    values.push_back(fromBits(b));
    EXPECT_TRUE(needsNine(values.back())) << std::hex << b << " no longer needs nine digits";
  }
  int nine = 0;
  for (uint32_t start : {0x416D4B00u, 0x447A0000u, 0xC2C80000u, 0x3DCCCC00u, 0x38D1B700u, 0x4CBEBC00u})
    for (uint32_t k = 0; k < 256; k++) {
      values.push_back(fromBits(start + k));
      nine += needsNine(values.back());
    }
  EXPECT_GT(nine, 200) << "the runs hold too few nine-digit floats to guard the writer";

  std::vector<const KPacejkaMember *> keyed;
  for (int i = 0; i < kpacejkaMemberCount; i++)
    if (kpacejkaMembers[i].tirKey) keyed.push_back(&kpacejkaMembers[i]);
  ASSERT_FALSE(keyed.empty());
  for (size_t first = 0, file = 0; first < values.size(); first += keyed.size(), file++) {
    KPacejka original, back;
    original.model = KPacejka::MF61;
    for (size_t i = 0; i < keyed.size(); i++)
      *KPacejkaFloat(original, *keyed[i]) = values[(first + i) % values.size()];
    const std::string out = dir + "/run" + std::to_string(file) + ".tir";
    ASSERT_TRUE(KPacejkaWriteTirFile(out.c_str(), original));
    back.LoadFromTirFile(out.c_str());
    EXPECT_EQ(MemberDiff(original, back), "") << "values from #" << first;
  }
}

// Every member with a TIR key is written under its own section, once; the
// model and dimension sections are there. (A writer that drops a section
// whose values happen to equal the import's defaults still fails here.)
TEST_F(TirWriteTest, EveryKeyedMemberIsInItsSection) {
  KPacejka t;
  SetTestMF(t, KPacejka::MF61);
  t.nompres = 220000.0f;  // a tyre with pressure: the pressure keys too
  std::string text;
  ASSERT_TRUE(KPacejkaTirText(t, &text));
  const std::string path = Write("sections.tir", text);
  PTirFile tir(path.c_str());
  for (int i = 0; i < kpacejkaMemberCount; i++) {
    const KPacejkaMember &m = kpacejkaMembers[i];
    if (!m.tirKey) continue;
    const std::string name = std::string(m.tirSection) + "." + m.tirKey;
    EXPECT_GE(tir.FindIndex(name.c_str()), 0) << name << " missing";
  }
  EXPECT_EQ(tir.GetInt("model.fittyp", 0), 61);
  for (const char *section : {"[MODEL]", "[DIMENSIONS]", "[VERTICAL]", "[LONG_SLIP_RANGE]", "[SLIP_ANGLE_RANGE]",
                              "[INCLINATION_ANGLE_RANGE]", "[VERTICAL_FORCE_RANGE]", "[SCALING_COEFFICIENTS]",
                              "[LONGITUDINAL_COEFFICIENTS]", "[LATERAL_COEFFICIENTS]", "[ALIGNING_COEFFICIENTS]",
                              "[OPERATING_CONDITIONS]"}) {
    const size_t at = text.find(std::string("\n") + section + "\n");
    EXPECT_NE(at, std::string::npos) << section;
    EXPECT_EQ(text.find(std::string("\n") + section + "\n", at + 1), std::string::npos) << section << " twice";
  }
  EXPECT_EQ(text.find("QBZ4"), std::string::npos);  // the import does not read it
}

// The text of the bundled sample tyre, byte for byte.
TEST_F(TirWriteTest, GoldenText) {
  KPacejka t;
  t.LoadFromTirFile(TYRO_SOURCE_DIR "/data/tyres/sample.tir");
  std::string text;
  ASSERT_TRUE(KPacejkaTirText(t, &text));
  const std::string golden = TYRO_TEST_DATA "/tyre/sample_written.tir";
  if (getenv("TYRO_UPDATE_GOLDEN")) std::ofstream(golden, std::ios::binary) << text;
  EXPECT_EQ(text, ReadAll(golden)) << "regenerate with TYRO_UPDATE_GOLDEN=1 after checking the change";
}

TEST_F(TirWriteTest, OtherModelsAreRefusedWithoutAFile) {
  for (int model : {int(KPacejka::PAC96), int(KPacejka::PAC2006), 7}) {
    ReportCapture cap;
    KPacejka t;
    t.model = model;
    const std::string out = dir + "/refused.tir";
    EXPECT_FALSE(KPacejkaWriteTirFile(out.c_str(), t)) << model;
    EXPECT_FALSE(fs::exists(out)) << model;
    EXPECT_NE(cap.errors.find("has no TIR form; only Magic Formula 5.2 and 6.1 tyres can be written"),
              std::string::npos) << cap.errors;
    EXPECT_NE(cap.errors.find(KPacejka::GetModelName(model)), std::string::npos) << cap.errors;
  }
}

// An unwritable path is in tests/cli/export_tir.sh.
TEST_F(TirWriteTest, FailedWriteLeavesNoFile) {
  KPacejka t;
  SetTestMF(t, KPacejka::MF52);
  ReportCapture cap;
  const std::string out = dir + "/full.tir";
  qfFailNextWrites(1);
  EXPECT_FALSE(KPacejkaWriteTirFile(out.c_str(), t));
  qfFailNextWrites(0);
  EXPECT_NE(cap.errors.find(out + ": write failed"), std::string::npos) << cap.errors;
  EXPECT_FALSE(fs::exists(out));
}
