// The text viewer: a large modal dialog that shows the lines of a text file
// in the canvas font. The mouse wheel, the arrow keys, PageUp/PageDown and
// Home/End scroll; OK, Enter or Escape closes it. A file that cannot be read
// shows one line naming it.
#pragma once

#include <string>
#include <vector>

#include "ui/qdialog.h"

class QButton;
class QLabel;

// The scrolling area: lines from a top line on, as many as fit.
class QTextPane : public QWindow {
 public:
  QTextPane(QWindow *parent, int x, int y, int wid, int hgt);
  const char *ClassName() const override { return "QTextPane"; }
  void SetLines(std::vector<std::string> lines);
  const std::vector<std::string> &GetLines() const { return lines; }
  int GetTop() const { return top; }
  // Scrolls to `line` as the top line, kept within the text.
  void ScrollTo(int line);
  // Lines that fit in the pane (with the line height of the last paint).
  int GetVisibleLines() const;

  void Paint(QCanvas *cv) override;
  // Wheel (buttons 4 and 5), arrows, PageUp/PageDown, Home/End.
  bool OnEvent(QEvent *ev) override;

 private:
  std::vector<std::string> lines;
  int top = 0;
  int lineHgt = 16;
};

class QTextView : public QDialog {
 public:
  QTextView(QWindow *parent, const QRect &r, const char *title, const char *caption);
  ~QTextView() override;
  const char *ClassName() const override { return "QTextView"; }
  // Reads the file's lines into the pane; false (and a line naming the file
  // in the pane) when it cannot be read.
  bool Load(const char *file);
  bool Create() override;
  void Filter(QEvent *ev) override;
  QTextPane *GetPane() const { return pane; }
  QButton *GetOK() const { return ok; }

 private:
  QLabel *caption = nullptr;
  QTextPane *pane = nullptr;
  QButton *ok = nullptr;
};

// Shows `file` with `caption` above the text in a dialog titled `title`.
void QTextViewRun(const char *file, const char *caption, const char *title);
