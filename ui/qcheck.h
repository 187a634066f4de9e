// QCheck: a check box with its text to the right. A completed click or
// Space while it has the focus flips it and posts QEVENT_CHANGE with the
// new state (1 checked, 0 not); SetChecked from code posts nothing.
#pragma once

#include <string>

#include "ui/qcheck_logic.h"
#include "ui/qwindow.h"

class QCheck : public QWindow {
 public:
  // Side of the box in pixels (smaller in a lower control).
  static constexpr int BOX = 12;
  // Space between the box and the text.
  static constexpr int GAP = 6;

  QCheck(QWindow *parent, int x, int y, int wid, int hgt, const char *text, bool checked = false);
  const char *ClassName() const override { return "QCheck"; }

  void SetChecked(bool on) { logic.SetChecked(on); }
  bool IsChecked() const { return logic.Checked(); }
  void SetText(const char *t) { text = t ? t : ""; }
  const char *GetText() const { return text.c_str(); }
  QButtonState GetState() const { return logic.Button().State(); }

  void Paint(QCanvas *cv) override;
  bool OnEvent(QEvent *ev) override;

 private:
  std::string text;
  QCheckLogic logic;
};
