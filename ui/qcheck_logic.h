// Check box logic: a push whose completed click (or Space while it has the
// focus) flips its checked flag.
#pragma once

#include "ui/qbutton_logic.h"

class QCheckLogic {
 public:
  explicit QCheckLogic(QRect r = QRect(), bool checked = false) : button_(r), checked_(checked) {}
  // Feeds one event; returns true when the checked flag flipped.
  bool Feed(const QEvent &ev, bool focused);
  bool Checked() const { return checked_; }
  void SetChecked(bool on) { checked_ = on; }
  const QPushLogic &Button() const { return button_; }
  QPushLogic &Button() { return button_; }

 private:
  QPushLogic button_;
  bool checked_ = false;
};
