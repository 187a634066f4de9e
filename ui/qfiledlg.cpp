#include "ui/qfiledlg.h"

#include <cctype>

bool QDlgFileIsSave(const std::string &title) {
  if (title.find("xport") != std::string::npos) return true;
  return title.find("ave") != std::string::npos;
}

std::vector<QFileFilter> QDlgFileFilters(const std::string &filter) {
  if (filter.size() < 2 || filter.compare(0, 2, "*.") != 0) return {{"All Files (*.*)", "*.*"}};
  std::string ext = filter.substr(2);
  for (char &c : ext) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return {{ext + " files (" + filter + ")", filter}, {"All files (*.*)", "*.*"}};
}

bool QDlgFileMatches(const std::string &pattern, const std::string &name) {
  if (pattern == "*.*" || pattern == "*" || pattern.empty()) return true;
  if (pattern.size() < 2 || pattern.compare(0, 2, "*.") != 0) return name == pattern;
  std::string tail = pattern.substr(1);  // ".ext"
  if (name.size() <= tail.size()) return false;
  size_t off = name.size() - tail.size();
  for (size_t i = 0; i < tail.size(); i++) {
    if (std::tolower(static_cast<unsigned char>(name[off + i])) != std::tolower(static_cast<unsigned char>(tail[i])))
      return false;
  }
  return true;
}
