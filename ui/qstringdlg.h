// String entry logic: a one-line text with a caret, the editing keys, a
// character limit, and Enter/Escape ending the entry. Input goes in as key
// and character events; Feed reports whether the entry is still open or how
// it ended. The dialog window draws Text() and Caret().
#pragma once

#include <string>

#include "ui/qevent.h"

enum class QEntryResult { Open, Ok, Cancel };

class QStringEntry {
 public:
  // limit: the most characters the text may hold (0 or less: no room at all).
  QStringEntry(const std::string &initial, int limit);
  QEntryResult Feed(const QEvent &ev);
  const std::string &Text() const { return text_; }
  int Caret() const { return caret_; }

 private:
  void Key(int code);
  void Char(int ch);
  std::string text_;
  int caret_ = 0;
  int limit_ = 0;
};
