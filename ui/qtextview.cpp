#include "ui/qtextview.h"

#include <algorithm>
#include <fstream>

#include "diag/qdebug.h"
#include "ui/qapp.h"
#include "ui/qbutton.h"
#include "ui/qcanvas.h"
#include "ui/qcontrol.h"
#include "ui/qdlgowner.h"
#include "ui/qfont.h"
#include "ui/qlabel.h"
#include "ui/qlang.h"
#include "ui/qtextdlg.h"

// ---- QTextPane -------------------------------------------------------------------------

QTextPane::QTextPane(QWindow *parent, int x, int y, int wid, int hgt) : QWindow(parent, x, y, wid, hgt) {}

void QTextPane::SetLines(std::vector<std::string> l) {
  lines = std::move(l);
  top = 0;
}

int QTextPane::GetVisibleLines() const { return std::max(1, (GetHeight() - 8) / std::max(1, lineHgt)); }

void QTextPane::ScrollTo(int line) {
  int last = std::max(0, static_cast<int>(lines.size()) - GetVisibleLines());
  top = std::clamp(line, 0, last);
}

void QTextPane::Paint(QCanvas *cv) {
  QRect r = GetAbsRect();
  QControlField(cv, r, HasFocus());
  QFont *font = cv->GetFont();
  if (font == nullptr || !font->IsCreated()) return;
  lineHgt = std::max(1, cv->GetTextHeight());
  cv->Clip(QRect(r.x + 1, r.y + 1, r.wid - 2, r.hgt - 2));
  cv->SetColor(qlook::INK_ON_LIGHT);
  int n = GetVisibleLines();
  for (int i = 0; i < n && top + i < static_cast<int>(lines.size()); i++) {
    const std::string &s = lines[static_cast<size_t>(top + i)];
    if (!s.empty()) cv->Text(s.c_str(), r.x + 4, r.y + 4 + i * lineHgt);
  }
  cv->NoClip();
  // A scroll mark on the right edge shows where the visible part lies.
  int total = static_cast<int>(lines.size());
  if (total > n) {
    int barHgt = std::max(8, (r.hgt - 4) * n / total);
    int barY = r.y + 2 + (r.hgt - 4 - barHgt) * top / std::max(1, total - n);
    cv->SetColor(qlook::ACCENT);
    cv->Rectfill(r.x + r.wid - 6, barY, 4, barHgt);
  }
}

bool QTextPane::OnEvent(QEvent *ev) {
  int page = GetVisibleLines();
  if (ev->type == QEVENT_BUTTONPRESS) {
    if (ev->n == QMB_WHEELUP) ScrollTo(top - 3);
    else if (ev->n == QMB_WHEELDOWN) ScrollTo(top + 3);
    else if (ev->n == QMB_LEFT) Focus();
    return true;
  }
  if (ev->type == QEVENT_BUTTONRELEASE) return true;
  if (ev->type != QEVENT_KEYPRESS) return false;
  switch (ev->n) {
    case QK_UP: ScrollTo(top - 1); return true;
    case QK_DOWN: ScrollTo(top + 1); return true;
    case QK_PAGEUP: ScrollTo(top - page); return true;
    case QK_PAGEDOWN: ScrollTo(top + page); return true;
    case QK_HOME: ScrollTo(0); return true;
    case QK_END: ScrollTo(static_cast<int>(lines.size())); return true;
    default: return false;
  }
}

// ---- QTextView ---------------------------------------------------------------------------

namespace {
constexpr int MARGIN = 10, TOP = 30;
}

QTextView::QTextView(QWindow *parent, const QRect &r, const char *title_, const char *caption_)
    : QDialog(parent, r.x, r.y, r.wid, r.hgt, title_) {
  int capHgt = QDialogLineHeight() + 4;
  caption = new QLabel(this, MARGIN, TOP, r.wid - 2 * MARGIN, capHgt, caption_ ? caption_ : "");
  QTextDlgLayout l = QTextDlgPlace(r.wid, r.hgt, QTEXTDLG_OKONLY);
  int paneY = TOP + capHgt + 4;
  pane = new QTextPane(this, MARGIN, paneY, r.wid - 2 * MARGIN, l.ok.y - 8 - paneY);
  pane->SetTabOrder(0);
  ok = new QButton(this, l.ok.x, l.ok.y, l.ok.wid, l.ok.hgt, QLangText("misc.ok", "OK").c_str());
  ok->SetShortcut(QK_ENTER);
  ok->SetTabOrder(1);
}

QTextView::~QTextView() {
  delete ok;
  delete pane;
  delete caption;
}

bool QTextView::Load(const char *file) {
  std::ifstream in(file ? file : "", std::ios::binary);
  if (!in) {
    QWARN("Can't read '%s'", file ? file : "");
    pane->SetLines({std::string("Can't read '") + (file ? file : "") + "'"});
    return false;
  }
  std::vector<std::string> lines;
  std::string line;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    // Tabs and other control characters to spaces: the font has no glyphs for them.
    std::string out;
    for (char c : line) {
      if (c == '\t') out.append(8 - out.size() % 8, ' ');
      else out += (static_cast<unsigned char>(c) < 32) ? ' ' : c;
    }
    lines.push_back(std::move(out));
  }
  pane->SetLines(std::move(lines));
  return true;
}

bool QTextView::Create() {
  if (!QDialog::Create()) return false;
  bool good = caption->Create();
  good = pane->Create() && good;
  good = ok->Create() && good;
  pane->Focus();
  return good;
}

void QTextView::Filter(QEvent *ev) {
  // Enter, Escape, OK and a close request all end the view.
  if (ev && QTextDlgFilter(*ev, ok, nullptr, 0) != 0) SetResult(QTEXTDLG_OK);
}

void QTextViewRun(const char *file, const char *caption, const char *title) {
  QWindow *owner = QDialogOwner();
  if (owner == nullptr) {
    QWARN("QTextViewRun(%s); no window to show it in", file ? file : "");
    return;
  }
  QRect at = QDialogCentred(app->GetMainWindow()->GetWidth() - 80, app->GetMainWindow()->GetHeight() - 80);
  QTextView *dlg = new QTextView(owner, QDialogPlace(owner, at), title, caption);
  dlg->Load(file);
  dlg->Execute();
  delete dlg;
}

