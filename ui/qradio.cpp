// QRadio: group membership, input and drawing.
#include "ui/qradio.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "ui/qcanvas.h"
#include "ui/qcontrol.h"
#include "ui/qevent.h"

namespace {

// Every radio alive, in the order they were made: a group's members are
// found here, whether or not they are created yet.
std::vector<QRadio *> &Radios() {
  static std::vector<QRadio *> all;
  return all;
}

bool SameGroup(const QRadio *a, const QRadio *b) {
  return a->GetParent() == b->GetParent() && a->GetGroup() == b->GetGroup();
}

// A filled disc of diameter d with its bounding square at (x, y), one
// rectangle per row.
void Disc(QCanvas *cv, int x, int y, int d) {
  float rad = float(d) / 2.0f;
  for (int row = 0; row < d; row++) {
    float dy = float(row) + 0.5f - rad;
    float half = std::sqrt(std::max(0.0f, rad * rad - dy * dy));
    int w = int(std::lround(half * 2.0f));
    cv->Rectfill(x + (d - w) / 2, y + row, w, 1);
  }
}

}  // namespace

QRadio::QRadio(QWindow *parent, int x, int y, int wid, int hgt, const char *t, int group_)
    : QWindow(parent, x, y, wid, hgt), text(t ? t : ""), group(group_) {
  SetTabOrder(QControlNextTab());
  Radios().push_back(this);
}

QRadio::~QRadio() {
  std::vector<QRadio *> &all = Radios();
  all.erase(std::remove(all.begin(), all.end(), this), all.end());
}

void QRadio::SetChecked() {
  for (QRadio *r : Radios())
    if (r != this && SameGroup(r, this)) r->checked = false;
  checked = true;
}

QRadio *QRadio::Neighbour(int step) {
  std::vector<QRadio *> members;
  for (QRadio *r : Radios())
    if (SameGroup(r, this)) members.push_back(r);
  int n = int(members.size());
  int at = int(std::find(members.begin(), members.end(), this) - members.begin());
  for (int i = 1; i < n; i++) {
    QRadio *r = members[size_t(((at + step * i) % n + n) % n)];
    if (r->IsEnabled() && r->IsVisible()) return r;
  }
  return this;
}

void QRadio::UserCheck() {
  SetChecked();
  PostControlEvent(QEVENT_CHANGE, 1);
}

bool QRadio::OnEvent(QEvent *ev) {
  if (!IsEnabled()) {
    push.Reset();
    return false;
  }
  bool clicked = false, consumed = false;
  if (QControlPushMouse(this, push, *ev, &clicked, &consumed)) {
    if (clicked) UserCheck();
    return consumed;
  }
  if (ev->type != QEVENT_KEYPRESS) return false;
  if (ev->n == QK_SPACE) {
    UserCheck();
    return true;
  }
  int step = (ev->n == QK_DOWN || ev->n == QK_RIGHT) ? 1 : (ev->n == QK_UP || ev->n == QK_LEFT) ? -1 : 0;
  if (!step) return false;
  QRadio *next = Neighbour(step);
  if (next != this) next->Focus();
  next->UserCheck();
  return true;
}

void QRadio::Paint(QCanvas *cv) {
  QRect r = GetAbsRect();
  if (r.wid <= 0 || r.hgt <= 0) return;
  bool enabled = IsEnabled();
  QButtonState st = enabled ? push.State() : QButtonState::Idle;
  int d = std::min(DIAMETER, r.hgt);
  int cx = r.x + 1, cy = r.y + (r.hgt - d) / 2;
  cv->SetBlending(0);

  cv->SetColor(!enabled ? qlook::FRAME_DISABLED
               : (st == QButtonState::Hover || st == QButtonState::Pressed) ? qlook::ACCENT_HOT
                                                                             : qlook::FRAME);
  Disc(cv, cx, cy, d);
  cv->SetColor(!enabled ? qlook::FIELD_DISABLED : st == QButtonState::Pressed ? qlook::FIELD_PRESSED : qlook::FIELD);
  Disc(cv, cx + 1, cy + 1, d - 2);
  if (checked && d >= 8) {
    cv->SetColor(enabled ? qlook::ACCENT : qlook::MARK_DISABLED);
    Disc(cv, cx + 3, cy + 3, d - 6);
  }

  if (!text.empty() && cv->GetFont()) {
    QControlMarkCaption(cv, this, text.c_str(), cx + d + GAP, r);
  } else if (HasFocus() && enabled) {
    QControlFocusRing(cv, QRect(cx - 1, cy - 1, d + 2, d + 2));
  }
}
