// Reading a large car file and looking up every key of it.
//
// The generated file holds 50,000 keys: 500 wheel-like groups, each with a
// "pacejka" block of 90 coefficients and 10 keys of its own.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>
#include <vector>

#include "base/qinfo.h"
#include "diag/qdebug.h"

namespace {

constexpr int kGroups = 500, kCoefs = 90, kOwn = 10;

struct CarFile {
  std::string path = "/tmp/bench_info_car.ini";
  std::vector<std::string> keys;
  CarFile() {
    FILE *f = fopen(path.c_str(), "w");
    for (int g = 0; g < kGroups; g++) {
      fprintf(f, "wheel%d\n{\n", g);
      for (int k = 0; k < kOwn; k++) {
        fprintf(f, "  key%d=%d\n", k, g * k);
        keys.push_back("wheel" + std::to_string(g) + ".key" + std::to_string(k));
      }
      fprintf(f, "  pacejka\n  {\n");
      for (int k = 0; k < kCoefs; k++) {
        fprintf(f, "    a%d=%d.%03d\n", k, k, g);
        keys.push_back("wheel" + std::to_string(g) + ".pacejka.a" + std::to_string(k));
      }
      fprintf(f, "  }\n}\n");
    }
    fclose(f);
  }
  ~CarFile() { remove(path.c_str()); }
};

const CarFile &Car() {
  static CarFile car;
  return car;
}

void BM_ReadCarFile(benchmark::State &state) {
  const CarFile &car = Car();
  for (auto _ : state) {
    QInfo *info = new QInfo(car.path.c_str());
    benchmark::DoNotOptimize(info->GetRoot());
    delete info;
  }
  state.SetItemsProcessed(state.iterations());  // items = whole-file reads
  state.counters["keys"] = double(car.keys.size());
}
BENCHMARK(BM_ReadCarFile)->Unit(benchmark::kMillisecond);

void BM_LookupEveryKey(benchmark::State &state) {
  const CarFile &car = Car();
  QInfo *info = new QInfo(car.path.c_str());
  for (auto _ : state) {
    float sum = 0;
    for (const std::string &k : car.keys) sum += info->GetFloat(k.c_str(), 0.0f);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * int64_t(car.keys.size()));  // items = lookups
  delete info;
}
BENCHMARK(BM_LookupEveryKey)->Unit(benchmark::kMillisecond);

}  // namespace
