// Middle elision of texts that do not fit.
#include "base/qelide.h"

#include <vector>

namespace {

// UTF-8 continuation bytes never start a character.
bool StartsChar(const std::string &s, size_t i) { return i >= s.size() || (static_cast<unsigned char>(s[i]) & 0xC0) != 0x80; }

// The number of characters of `s` (UTF-8 aware) and the byte offset of the
// i-th character.
std::vector<size_t> CharStarts(const std::string &s) {
  std::vector<size_t> at;
  for (size_t i = 0; i < s.size(); i++)
    if (StartsChar(s, i)) at.push_back(i);
  at.push_back(s.size());
  return at;
}

}  // namespace

std::string QElideMiddle(const std::string &text, int avail, const std::function<int(const std::string &)> &width) {
  if (width(text) <= avail) return text;
  static const std::string dots = "...";
  const std::vector<size_t> at = CharStarts(text);
  const size_t chars = at.size() - 1;
  // Keep `n` characters in all: n / 2 at the start, the rest at the end. The
  // width grows with n, so the largest n that fits is found by halving.
  auto shortened = [&](size_t n) {
    size_t head = n / 2, tail = n - head;
    return text.substr(0, at[head]) + dots + text.substr(at[chars - tail]);
  };
  size_t lo = 0, hi = chars;  // shortened(lo) is the best known; hi does not fit
  while (lo + 1 < hi) {
    size_t mid = (lo + hi) / 2;
    if (width(shortened(mid)) <= avail) lo = mid;
    else hi = mid;
  }
  if (lo >= 2) return shortened(lo);
  // Not even one character each side: as many dots as fit.
  std::string d = dots;
  while (!d.empty() && width(d) > avail) d.pop_back();
  return d;
}

std::string QPathTail(const std::string &path) {
  size_t slash = path.find_last_of('/');
  if (slash == std::string::npos || slash + 1 == path.size()) return path;
  return path.substr(slash + 1);
}
