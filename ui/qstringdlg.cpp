#include "ui/qstringdlg.h"

#include <algorithm>

QStringEntry::QStringEntry(const std::string &initial, int limit) : limit_(std::max(0, limit)) {
  // A preset longer than the limit is cut, so the limit always holds.
  text_ = initial.substr(0, static_cast<size_t>(limit_));
  caret_ = static_cast<int>(text_.size());
}

void QStringEntry::Key(int code) {
  int len = static_cast<int>(text_.size());
  switch (code) {
    case QK_LEFT: caret_ = std::max(0, caret_ - 1); break;
    case QK_RIGHT: caret_ = std::min(len, caret_ + 1); break;
    case QK_HOME: caret_ = 0; break;
    case QK_END: caret_ = len; break;
    case QK_BACKSPACE:
      if (caret_ > 0) text_.erase(static_cast<size_t>(--caret_), 1);
      break;
    case QK_DELETE:
      if (caret_ < len) text_.erase(static_cast<size_t>(caret_), 1);
      break;
    default: break;
  }
}

void QStringEntry::Char(int ch) {
  ch &= 0xFFFF;
  // Control characters arrive as keys too (Backspace, Enter, Tab); only
  // printable Latin-1 goes into the text.
  if (ch < 32 || ch == 127 || ch > 255) return;
  if (static_cast<int>(text_.size()) >= limit_) return;
  text_.insert(text_.begin() + caret_, static_cast<char>(ch));
  caret_++;
}

QEntryResult QStringEntry::Feed(const QEvent &ev) {
  if (ev.type == QEVENT_KEYPRESS) {
    if (ev.n == QK_ENTER) return QEntryResult::Ok;
    if (ev.n == QK_ESC) return QEntryResult::Cancel;
    Key(ev.n);
  } else if (ev.type == QEVENT_CHAR) {
    Char(ev.n);
  }
  return QEntryResult::Open;
}
