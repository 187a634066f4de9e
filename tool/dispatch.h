// The tool's event callback: control events of the panel reach their
// operations and commands; Escape and Shift+Q end the program.
#pragma once

struct QEvent;
struct ToolEnv;

// Handles one event. A control event (click or change) from an
// operating-point slider applies its value first; then the control's own
// operation runs. True when the event was handled and goes no further
// (focus radios, the zoom check box and the command buttons).
bool ToolDispatch(QEvent *ev, const ToolEnv &env);
