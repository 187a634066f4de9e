// QButton: a push button window. A completed click (pressed and released
// inside), Space or Enter while it has the focus, or its shortcut key post
// QEVENT_CLICK into the application's loop. A text that names a symbol
// ("$PLAY", "$REVERSE", "$REWIND", "$FORWARD", "$LEFT", "$RIGHT", "$DOWN",
// ui/qbutton_symbol.h) draws the symbol instead.
#pragma once

#include <string>

#include "ui/qbutton_logic.h"
#include "ui/qwindow.h"

class QButton : public QWindow {
 public:
  // Content of a pressed face moves by one pixel; the symbol box rule
  // receives this as its press offset with the content area starting
  // PRESS_SHIFT pixels in (ui/qbutton_symbol.h).
  static constexpr int PRESS_SHIFT = 2;

  QButton(QWindow *parent, int x, int y, int wid, int hgt, const char *text);
  const char *ClassName() const override { return "QButton"; }

  void SetText(const char *t) { text = t ? t : ""; }
  const char *GetText() const { return text.c_str(); }
  // Grey value (red = green = blue) of the text and symbols on the face:
  // dark on the light face, lighter when disabled.
  int GetShade() const;
  // Idle, Hover, Pressed (mouse down inside) or PressedOut (dragged out).
  QButtonState GetState() const { return push.State(); }

  void Paint(QCanvas *cv) override;
  bool OnEvent(QEvent *ev) override;
  void OnShortcut() override;

 private:
  std::string text;
  QPushLogic push;
};
