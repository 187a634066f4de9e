#include "ui/qfilelist.h"

#include <algorithm>
#include <string>

#include "ui/qapp.h"
#include "ui/qcanvas.h"
#include "ui/qcontrol.h"
#include "ui/qfont.h"
#include "ui/qplatform.h"

QFileList::QFileList(QWindow *parent, int x, int y, int wid, int hgt) : QWindow(parent, x, y, wid, hgt) {}

void QFileList::SetEntries(std::vector<QBrowseEntry> e) {
  entries = std::move(e);
  selected.assign(entries.size(), false);
  current = -1;
  top = 0;
  lastClickRow = -1;
}

int QFileList::GetVisibleRows() const { return std::max(1, (GetHeight() - 4) / std::max(1, rowHgt)); }

void QFileList::ScrollTo(int row) {
  int last = std::max(0, GetCount() - GetVisibleRows());
  top = std::clamp(row, 0, last);
}

void QFileList::Select(int row) {
  std::fill(selected.begin(), selected.end(), false);
  if (row < 0 || row >= GetCount()) {
    current = -1;
    return;
  }
  selected[static_cast<size_t>(row)] = true;
  current = row;
  if (row < top) ScrollTo(row);
  else if (row >= top + GetVisibleRows()) ScrollTo(row - GetVisibleRows() + 1);
}

bool QFileList::IsSelected(int row) const {
  return row >= 0 && row < GetCount() && selected[static_cast<size_t>(row)];
}

std::vector<int> QFileList::GetSelection() const {
  std::vector<int> out;
  for (int i = 0; i < GetCount(); i++)
    if (selected[static_cast<size_t>(i)]) out.push_back(i);
  return out;
}

int QFileList::RowAt(int x, int y) const {
  QRect r = GetAbsRect();
  if (!r.Contains(x, y)) return -1;
  int row = top + (y - r.y - 2) / std::max(1, rowHgt);
  return (row >= 0 && row < GetCount()) ? row : -1;
}

void QFileList::Paint(QCanvas *cv) {
  QRect r = GetAbsRect();
  QControlField(cv, r, HasFocus());
  QFont *font = cv->GetFont();
  if (font == nullptr || !font->IsCreated()) return;
  rowHgt = std::max(1, cv->GetTextHeight() + 2);
  int n = GetVisibleRows();
  cv->Clip(QRect(r.x + 1, r.y + 1, r.wid - 2, r.hgt - 2));
  for (int i = 0; i < n && top + i < GetCount(); i++) {
    int row = top + i;
    const QBrowseEntry &e = entries[static_cast<size_t>(row)];
    int y = r.y + 2 + i * rowHgt;
    if (IsSelected(row)) {
      cv->SetColor(qlook::ACCENT_PALE);
      cv->Rectfill(r.x + 2, y, r.wid - 4, rowHgt);
    }
    // Folders in the accent colour with a trailing slash.
    std::string text = e.folder ? e.name + "/" : e.name;
    cv->SetColor(e.folder ? qlook::ACCENT : qlook::INK_ON_LIGHT);
    cv->Text(text.c_str(), r.x + 4, y + 1);
  }
  cv->NoClip();
  if (GetCount() > n) {
    int barHgt = std::max(8, (r.hgt - 4) * n / GetCount());
    int barY = r.y + 2 + (r.hgt - 4 - barHgt) * top / std::max(1, GetCount() - n);
    cv->SetColor(qlook::ACCENT);
    cv->Rectfill(r.x + r.wid - 6, barY, 4, barHgt);
  }
}

void QFileList::Click(int row, bool toggle) {
  uint64_t now = qpTimeMs();
  bool twice = row == lastClickRow && now - lastClickMs <= DOUBLE_CLICK_MS;
  if (toggle && multiple) {
    selected[static_cast<size_t>(row)] = !selected[static_cast<size_t>(row)];
    current = row;
    twice = false;
  } else {
    Select(row);
  }
  PostControlEvent(QEVENT_CHANGE, row);
  if (twice) {
    PostControlEvent(QEVENT_CLICK, row);
    lastClickRow = -1;
  } else {
    lastClickRow = row;
    lastClickMs = now;
  }
}

bool QFileList::OnEvent(QEvent *ev) {
  int page = GetVisibleRows();
  switch (ev->type) {
    case QEVENT_BUTTONPRESS:
      if (ev->n == QMB_WHEELUP) ScrollTo(top - 3);
      else if (ev->n == QMB_WHEELDOWN) ScrollTo(top + 3);
      else if (ev->n == QMB_LEFT) {
        Focus();
        int row = RowAt(ev->x, ev->y);
        if (row >= 0) Click(row, app && app->IsControl());
      }
      return true;
    case QEVENT_BUTTONRELEASE:
    case QEVENT_MOTIONNOTIFY:
      return true;
    case QEVENT_KEYPRESS: {
      int to = current;
      switch (ev->n) {
        case QK_UP: to = current - 1; break;
        case QK_DOWN: to = current + 1; break;
        case QK_PAGEUP: to = current - page; break;
        case QK_PAGEDOWN: to = current + page; break;
        case QK_HOME: to = 0; break;
        case QK_END: to = GetCount() - 1; break;
        default: return false;
      }
      if (GetCount() == 0) return true;
      to = std::clamp(to, 0, GetCount() - 1);
      Select(to);
      PostControlEvent(QEVENT_CHANGE, to);
      return true;
    }
    default:
      return false;
  }
}
