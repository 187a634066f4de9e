// Connects the log's message-box output (QLOG_MSGBOX) to the platform's box.
#include "ui/qerror.h"

// The log writer in this build shows its boxes itself; nothing to connect
// until it offers a handler.
void QInstallMessageBox() {}
