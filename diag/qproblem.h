// A problem as a value: what a library call hands back instead of printing
// it. The file and line name the place in the user's input the problem is
// about, when there is one; the text joins them as the reporters write it.
#pragma once

#include <string>
#include <vector>

struct QProblem {
  std::string file;      // the file it is about; empty when none
  int line = 0;          // the line in `file`, from 1; 0 when none
  std::string message;   // what is wrong, without file and line
  bool warning = false;  // a warning: the work went on

  // "file:line: message", "file: message" or "message".
  std::string Text() const;
};

// A reported text as a problem: "file:line: rest" (line a number) gives
// file, line and rest; any other text is all message. Line ends at the end
// are dropped.
QProblem QProblemFromText(const std::string &text, bool warning = false);
// A problem without a place whose message starts with "`file`: " is about
// `file`: the file moves out of the message. Its text stays the same.
void QProblemPlace(QProblem *problem, const std::string &file);
// True when any of `problems` is an error (not a warning).
bool QProblemsHaveError(const std::vector<QProblem> &problems);
