// QFileList: the file dialog's list of folders and files. A click selects a
// row (Control+click adds or removes it when several may be chosen) and
// posts QEVENT_CHANGE with the row; a second click on the same row soon after
// posts QEVENT_CLICK with the row (double-click). The wheel scrolls; Up/Down,
// PageUp/PageDown and Home/End move the selection.
#pragma once

#include <cstdint>
#include <vector>

#include "ui/qfilebrowse.h"
#include "ui/qwindow.h"

class QFileList : public QWindow {
 public:
  static constexpr int DOUBLE_CLICK_MS = 500;

  QFileList(QWindow *parent, int x, int y, int wid, int hgt);
  const char *ClassName() const override { return "QFileList"; }

  // New rows: nothing selected, scrolled to the top.
  void SetEntries(std::vector<QBrowseEntry> e);
  const std::vector<QBrowseEntry> &GetEntries() const { return entries; }
  int GetCount() const { return static_cast<int>(entries.size()); }
  // The row last clicked or moved to (-1: none).
  int GetCurrent() const { return current; }
  // Selects only `row` (scrolling it into view); -1 clears the selection.
  void Select(int row);
  bool IsSelected(int row) const;
  // The selected rows, in list order.
  std::vector<int> GetSelection() const;
  void SetMultiple(bool on) { multiple = on; }

  int GetTop() const { return top; }
  void ScrollTo(int row);
  int GetRowHeight() const { return rowHgt; }
  int GetVisibleRows() const;
  // The row at a point of the real window (-1: none).
  int RowAt(int x, int y) const;

  void Paint(QCanvas *cv) override;
  bool OnEvent(QEvent *ev) override;

 private:
  void Click(int row, bool toggle);
  std::vector<QBrowseEntry> entries;
  std::vector<bool> selected;
  int current = -1;
  int top = 0;
  int rowHgt = 16;
  bool multiple = false;
  int lastClickRow = -1;
  uint64_t lastClickMs = 0;
};
