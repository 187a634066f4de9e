// Replays stored inputs through a fuzz target's LLVMFuzzerTestOneInput:
// every regular file named on the command line, and every regular file of
// every folder named there, in name order. Built with any compiler into the
// normal and sanitizer builds, so that each stored corpus runs with the unit
// tests and an input that once broke a target stays a test.
//   replay_<target> PATH...
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace fs = std::filesystem;

static bool Collect(const char *arg, std::vector<fs::path> *out) {
  std::error_code ec;
  fs::path p(arg);
  if (fs::is_regular_file(p, ec)) {
    out->push_back(p);
    return true;
  }
  if (!fs::is_directory(p, ec)) {
    fprintf(stderr, "replay: %s: no such file or folder\n", arg);
    return false;
  }
  std::vector<fs::path> files;
  for (const fs::directory_entry &e : fs::directory_iterator(p, ec))
    if (e.is_regular_file(ec)) files.push_back(e.path());
  std::sort(files.begin(), files.end());
  out->insert(out->end(), files.begin(), files.end());
  return true;
}

int main(int argc, char **argv) {
  std::vector<fs::path> inputs;
  for (int i = 1; i < argc; i++)
    if (!Collect(argv[i], &inputs)) return 2;
  if (inputs.empty()) {
    fprintf(stderr, "replay: no inputs\n");
    return 2;
  }
  for (const fs::path &p : inputs) {
    std::ifstream in(p, std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(bytes.data()), bytes.size());
  }
  printf("replayed %zu inputs\n", inputs.size());
  return 0;
}
