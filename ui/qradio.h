// QRadio: one choice of a radio group. The radios of a group are those with
// the same parent and the same group number; checking one unchecks the
// others. A completed click or Space while it has the focus checks it and
// posts QEVENT_CHANGE with n = 1 (also when it was checked already); the
// arrow keys move the check to the next or previous radio of the group,
// which takes the focus and posts. SetChecked from code posts nothing.
#pragma once

#include <string>

#include "ui/qbutton_logic.h"
#include "ui/qwindow.h"

class QRadio : public QWindow {
 public:
  // Diameter of the circle in pixels (smaller in a lower control).
  static constexpr int DIAMETER = 12;
  static constexpr int GAP = 6;

  QRadio(QWindow *parent, int x, int y, int wid, int hgt, const char *text, int group);
  ~QRadio() override;
  const char *ClassName() const override { return "QRadio"; }

  // Checks this radio and unchecks the others of its group.
  void SetChecked();
  bool IsChecked() const { return checked; }
  int GetGroup() const { return group; }
  void SetText(const char *t) { text = t ? t : ""; }
  const char *GetText() const { return text.c_str(); }
  QButtonState GetState() const { return push.State(); }

  void Paint(QCanvas *cv) override;
  bool OnEvent(QEvent *ev) override;

 private:
  // The radio of the same group `step` places on (wrapping) that can take
  // the focus; this one when there is none.
  QRadio *Neighbour(int step);
  void UserCheck();

  std::string text;
  int group = 0;
  bool checked = false;
  QPushLogic push;
};
