// Check box logic: a button whose completed click (or Space while it has the
// focus) flips its checked flag.
#pragma once

#include "ui/qbutton.h"

class QCheck {
 public:
  explicit QCheck(QRect r, bool checked = false) : button_(r), checked_(checked) {}
  // Feeds one event; returns true when the checked flag flipped.
  bool Feed(const QEvent &ev, bool focused);
  bool Checked() const { return checked_; }
  void SetChecked(bool on) { checked_ = on; }
  const QButton &Button() const { return button_; }

 private:
  QButton button_;
  bool checked_ = false;
};
