// Tyrograph: placeholder entry point until the application lands.
#include <cstdio>
int main() {
  std::puts("Tyrograph: the application window is not built yet; see tyrograph-cli --help");
  return 0;
}
