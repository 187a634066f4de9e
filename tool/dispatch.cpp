// Dispatch of control and key events.
#include "tool/dispatch.h"

#include "tool/commands.h"
#include "tool/fitkeys.h"
#include "tool/panel.h"
#include "tool/viewkeys.h"
#include "ui/qapp.h"
#include "ui/qbutton.h"
#include "ui/qcheck.h"
#include "ui/qprop.h"
#include "ui/qwindow.h"

bool ToolDispatch(QEvent *ev, const ToolEnv &env) {
  if (ev->type == QEVENT_CLICK || ev->type == QEVENT_CHANGE) {
    QWindow *w = ev->win;
    int i = PanelOpIndex(w);
    if (i >= 0) PanelOpMoved(OpSlider(i), ev->n);
    if ((i = PanelFocusIndex(w)) >= 0) {
      PanelFocus(i);
      return true;
    }
    if ((i = PanelCoeffIndex(w)) >= 0) {
      PanelCoefficientRadio(i);
    } else if (w && w == panel.zoom) {
      PanelZoom(panel.zoom->IsChecked());
      return true;
    } else if (w && w == panel.value) {
      PanelValueMoved(ev->n);
    } else if (w && w == panel.wheel) {
      PanelSelectWheel(ev->n);
    } else if ((i = PanelCommandIndex(w)) >= 0) {
      CommandRun(i, env);
      return true;
    } else if (w && w == panel.enterNumerically) {
      PanelEnterNumerically();
    }
  }
  if (ViewKeyDispatch(ev, env) || FitKeyDispatch(ev, env)) return true;
  // Escape or Shift+Q (0x51 with the Shift bit) ends the program.
  if (ev->type == QEVENT_KEYPRESS && (ev->n == QK_ESC || ev->xn == (0x51 | QK_MOD_SHIFT))) app->Exit(0);
  return false;
}
