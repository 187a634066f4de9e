// What the window's commands and keys need of the running program: the
// settings tree (the file dialogs keep their folders in it), the graph
// area's size and the title bar. The start-up fills it and hands it to the
// event dispatch; a test passes its own.
#pragma once

class QInfo;

struct ToolEnv {
  QInfo *settingsTree = nullptr;           // pacejka.ini, open until exit; may be null
  int viewWidth = 700, viewHeight = 500;   // the graph area (view.width, view.height)
  void (*updateTitle)() = nullptr;         // rewrites the title bar; may be null
};
