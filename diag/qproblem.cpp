// Problems as values.
#include "diag/qproblem.h"

#include <cctype>

std::string QProblem::Text() const {
  if (file.empty()) return message;
  if (line > 0) return file + ":" + std::to_string(line) + ": " + message;
  return file + ": " + message;
}

QProblem QProblemFromText(const std::string &text, bool warning) {
  QProblem p;
  p.warning = warning;
  std::string s = text;
  while (!s.empty() && (s.back() == '\n' || s.back() == '\r')) s.pop_back();
  p.message = s;
  // file:line: rest, the file without line breaks and the line all digits
  const size_t colon = s.find(':');
  if (colon == 0 || colon == std::string::npos || s.find('\n') < colon) return p;
  size_t end = colon + 1;
  while (end < s.size() && isdigit(static_cast<unsigned char>(s[end]))) end++;
  if (end == colon + 1 || end - colon > 10 || s.compare(end, 2, ": ") != 0) return p;
  p.file = s.substr(0, colon);
  p.line = std::stoi(s.substr(colon + 1, end - colon - 1));
  p.message = s.substr(end + 2);
  if (p.line <= 0) {  // "file:0: ..." is no place in the file
    p.file.clear();
    p.line = 0;
    p.message = s;
  }
  return p;
}

void QProblemPlace(QProblem *p, const std::string &file) {
  if (!p->file.empty() || file.empty() || p->message.size() <= file.size() + 2) return;
  if (p->message.compare(0, file.size(), file) != 0 || p->message.compare(file.size(), 2, ": ") != 0) return;
  p->file = file;
  p->message.erase(0, file.size() + 2);
}

bool QProblemsHaveError(const std::vector<QProblem> &problems) {
  for (const QProblem &p : problems)
    if (!p.warning) return true;
  return false;
}
