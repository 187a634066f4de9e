// The controls as windows, driven through the headless backend and the
// window manager: which control events user input posts (and which input
// posts nothing), slider drag and step keys, radio groups per parent and
// group number, tab order, and the focus ring on screen.
#include <GL/gl.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/headless/qpscript.h"
#include "tests/ui/gltest.h"
#include "ui/qapp.h"
#include "ui/qbutton.h"
#include "ui/qcanvas.h"
#include "ui/qcheck.h"
#include "ui/qcontrol.h"
#include "ui/qlabel.h"
#include "ui/qprop.h"
#include "ui/qradio.h"
#include "ui/qtitlebar.h"
#include "ui/qwindow.h"
#include "ui/qwinmgr.h"

namespace {

struct Posted {
  int type, n;
  QWindow *win;
};
std::vector<Posted> posted;
bool EventProc(QEvent *ev) {
  if (ev->type == QEVENT_CLICK || ev->type == QEVENT_CHANGE) posted.push_back({ev->type, ev->n, ev->win});
  return false;
}

class Controls : public ::testing::Test {
 protected:
  static constexpr int W = 320, H = 240;
  void SetUp() override {
    setenv("LP_NUM_THREADS", "0", 0);
    GLTEST_LSAN_DISABLE();
    qpsClear();
    posted.clear();
    a = new QApp(0, nullptr, "controls");
    main = new QWindow(a->GetRoot(), 0, 0, W, H);
    main->MakeRealX();
    ASSERT_TRUE(main->Create());
    a->SetMainWindow(main, main->GetPlatformWindow());
    a->SetEventProc(EventProc);
    wm = QGetWindowManager();
    ASSERT_NE(wm, nullptr);
  }
  void TearDown() override {
    for (auto it = owned.rbegin(); it != owned.rend(); ++it) delete *it;
    delete main;
    delete a;
    qpsClear();
    GLTEST_LSAN_ENABLE();
  }
  template <class T>
  T *Make(T *w) {
    EXPECT_TRUE(w->Create());
    owned.push_back(w);
    return w;
  }
  // Runs the loop until the script and the posted events are used up.
  void Drain() {
    while (a->Run1() != 2) {
    }
  }
  // The n of each posted event of `type` from `w`, in order; clears the list.
  std::vector<int> Take(int type, QWindow *w) {
    std::vector<int> ns;
    for (const Posted &p : posted)
      if (p.type == type && p.win == w) ns.push_back(p.n);
    posted.clear();
    return ns;
  }
  QApp *a = nullptr;
  QWindow *main = nullptr;
  QWindowManager *wm = nullptr;
  std::vector<QWindow *> owned;
};

using Ns = std::vector<int>;

TEST_F(Controls, ButtonClicksOnReleaseInsideOnly) {
  QButton *b = Make(new QButton(main, 20, 20, 100, 25, "Open tire"));
  qpsMouseMove(30, 30);
  qpsButtonPress(30, 30);
  Drain();
  EXPECT_EQ(b->GetState(), QButtonState::Pressed);
  EXPECT_TRUE(posted.empty());
  qpsButtonRelease(35, 31);
  Drain();
  EXPECT_EQ(Take(QEVENT_CLICK, b), Ns{0});

  // Dragged out and released outside: the button keeps the mouse and
  // cancels; dragged back in, it clicks.
  qpsButtonPress(30, 30);
  qpsMouseMove(200, 200);
  Drain();
  EXPECT_EQ(b->GetState(), QButtonState::PressedOut);
  qpsButtonRelease(200, 200);
  Drain();
  EXPECT_TRUE(posted.empty());
  qpsButtonPress(30, 30);
  qpsMouseMove(200, 200);
  qpsMouseMove(40, 30);
  qpsButtonRelease(40, 30);
  Drain();
  EXPECT_EQ(Take(QEVENT_CLICK, b).size(), 1u);

  // The right button and a disabled button do nothing.
  qpsClick(30, 30, QMB_RIGHT);
  b->Disable();
  qpsClick(30, 30);
  Drain();
  EXPECT_TRUE(posted.empty());
}

TEST_F(Controls, ButtonKeysWithFocusAndShortcut) {
  QButton *cancel = Make(new QButton(main, 10, 10, 80, 25, "Cancel"));
  QButton *ok = Make(new QButton(main, 100, 10, 80, 25, "OK"));
  cancel->Focus();
  qpsKeyTap(QK_SPACE);
  qpsKeyTap('A');
  Drain();
  EXPECT_EQ(Take(QEVENT_CLICK, cancel).size(), 1u);
  // Enter belongs to OK: it clicks OK once wherever the focus is, and not
  // the focused Cancel as well.
  ok->SetShortcut(QK_ENTER);
  qpsKeyTap(QK_ENTER);
  Drain();
  ASSERT_EQ(posted.size(), 1u);
  EXPECT_EQ(posted[0].win, ok);
  posted.clear();
  ok->Focus();
  qpsKeyTap(QK_ENTER);
  Drain();
  EXPECT_EQ(Take(QEVENT_CLICK, ok).size(), 1u);
}

TEST_F(Controls, SliderDragClickBesideAndWheel) {
  // Knob centre travels x = 15 .. 215: one pixel is 5 positions.
  QProp *p = Make(new QProp(main, 10, 100, 211, 18));
  p->SetRange(0, 1000);
  p->SetStepSizes(5, 10);
  p->SetPosition(500);
  EXPECT_EQ(p->GetKnobRect().x + QProp::KNOB_WID / 2, 115);
  qpsMouseMove(116, 108);
  qpsButtonPress(116, 108);  // on the knob, one pixel right of its centre
  qpsMouseMove(136, 108);
  qpsMouseMove(136, 300);    // off the slider vertically: still dragging
  qpsMouseMove(400, 108);    // past the end
  qpsButtonRelease(400, 108);
  Drain();
  EXPECT_EQ(Take(QEVENT_CHANGE, p), (Ns{600, 1000}));
  EXPECT_FALSE(p->IsDragging());

  qpsClick(30, 108);  // left of the knob: one big step down
  qpsClick(30, 108);
  Drain();
  EXPECT_EQ(Take(QEVENT_CHANGE, p), (Ns{990, 980}));
  EXPECT_EQ(p->GetPosition(), 980);

  // The wheel over the slider moves by the small step; the mouse up at
  // the end posts nothing.
  qpsClick(100, 108, QMB_WHEELUP);
  qpsClick(100, 108, QMB_WHEELDOWN);
  qpsClick(100, 108, QMB_WHEELDOWN);
  Drain();
  EXPECT_EQ(Take(QEVENT_CHANGE, p), (Ns{985, 980, 975}));
}

TEST_F(Controls, SliderKeysStepAndStopAtTheEnds) {
  QProp *p = Make(new QProp(main, 10, 100, 211, 18));
  p->SetRange(0, 1000);
  p->SetStepSizes(3, 10);
  p->SetPosition(995);
  p->Focus();
  for (int k : {QK_RIGHT, QK_RIGHT, QK_RIGHT, QK_LEFT, QK_PAGEDOWN, QK_DOWN, QK_UP, QK_PAGEUP, QK_HOME, QK_HOME,
                QK_END})
    qpsKeyTap(k);
  Drain();
  // 995 +3 = 998, +3 = 1000 (clamped), +3 = no change; ...
  EXPECT_EQ(Take(QEVENT_CHANGE, p), (Ns{998, 1000, 997, 987, 984, 987, 997, 0, 1000}));
}

TEST_F(Controls, SliderKeepsAPositionOutsideItsRangeUntilTheUserMovesIt) {
  QProp *p = Make(new QProp(main, 10, 100, 211, 18));
  p->SetRange(0, 1000);
  p->SetStepSizes(5, 10);
  p->SetPosition(1500);  // from code: kept, nothing posted
  p->SetCaption("1.5000");
  Drain();
  EXPECT_EQ(p->GetPosition(), 1500);
  EXPECT_STREQ(p->GetCaption(), "1.5000");
  EXPECT_TRUE(posted.empty());
  p->Focus();
  qpsKeyTap(QK_LEFT);  // steps from where it is drawn, the end
  Drain();
  EXPECT_EQ(Take(QEVENT_CHANGE, p), Ns{995});
  // A range given upside down is read as a single position.
  p->SetRange(10, 5);
  EXPECT_EQ(p->GetMin(), 10);
  EXPECT_EQ(p->GetMax(), 10);
}

TEST_F(Controls, CheckFlipsOnClickAndSpace) {
  QCheck *c = Make(new QCheck(main, 10, 10, 150, 16, "Zoom in horizontally", true));
  qpsClick(100, 15);  // on the text: the whole control takes the click
  Drain();
  EXPECT_FALSE(c->IsChecked());
  EXPECT_EQ(Take(QEVENT_CHANGE, c), Ns{0});
  c->Focus();
  qpsKeyTap(QK_SPACE);
  qpsKeyTap(QK_ENTER);  // not for a check box
  Drain();
  EXPECT_TRUE(c->IsChecked());
  EXPECT_EQ(Take(QEVENT_CHANGE, c), Ns{1});
  c->SetChecked(false);
  Drain();
  EXPECT_FALSE(c->IsChecked());
  EXPECT_TRUE(posted.empty());
}

TEST_F(Controls, RadioGroupsArePerParentAndNumber) {
  QWindow *box = Make(new QWindow(main, 200, 0, 120, 100));
  QRadio *r[3], *s[2], *q[2];
  for (int i = 0; i < 3; i++) r[i] = Make(new QRadio(main, 10, 10 + 17 * i, 150, 16, "r", 1000));
  for (int i = 0; i < 2; i++) s[i] = Make(new QRadio(main, 10, 80 + 17 * i, 150, 16, "s", 1001));
  for (int i = 0; i < 2; i++) q[i] = Make(new QRadio(box, 10, 10 + 17 * i, 100, 16, "q", 1000));
  r[0]->SetChecked();
  s[0]->SetChecked();
  q[0]->SetChecked();
  EXPECT_TRUE(posted.empty());

  qpsClick(20, 10 + 17 + 5);  // r[1]
  Drain();
  EXPECT_EQ(Take(QEVENT_CHANGE, r[1]), Ns{1});
  EXPECT_FALSE(r[0]->IsChecked());
  EXPECT_TRUE(r[1]->IsChecked());
  EXPECT_FALSE(r[2]->IsChecked());
  // Another number under the same parent, and the same number under
  // another parent, are other groups.
  EXPECT_TRUE(s[0]->IsChecked());
  EXPECT_TRUE(q[0]->IsChecked());
  q[1]->SetChecked();
  EXPECT_TRUE(r[1]->IsChecked());
  EXPECT_FALSE(q[0]->IsChecked());

  // Clicking the checked one posts again (the program may act on it).
  qpsClick(20, 10 + 17 + 5);
  Drain();
  EXPECT_EQ(Take(QEVENT_CHANGE, r[1]), Ns{1});
}

TEST_F(Controls, RadioArrowsMoveTheCheckAndTheFocusWithinTheGroup) {
  QRadio *r[3];
  for (int i = 0; i < 3; i++) r[i] = Make(new QRadio(main, 10, 10 + 17 * i, 150, 16, "r", 7));
  QRadio *other = Make(new QRadio(main, 10, 80, 150, 16, "o", 8));
  r[1]->SetChecked();
  r[1]->Focus();
  qpsKeyTap(QK_DOWN);
  Drain();
  EXPECT_EQ(wm->GetFocus(), r[2]);
  EXPECT_TRUE(r[2]->IsChecked());
  EXPECT_EQ(Take(QEVENT_CHANGE, r[2]), Ns{1});
  r[0]->Disable();
  qpsKeyTap(QK_DOWN);  // wraps past the disabled first one
  Drain();
  EXPECT_TRUE(r[1]->IsChecked());
  EXPECT_FALSE(other->IsChecked());
  qpsKeyTap(QK_SPACE);
  Drain();
  EXPECT_EQ(Take(QEVENT_CHANGE, r[1]), (Ns{1, 1}));
}

TEST_F(Controls, TabFollowsTheOrderOfConstruction) {
  QButton *b = Make(new QButton(main, 10, 10, 80, 25, "b"));
  QLabel *l = Make(new QLabel(main, 10, 40, 80, 16, "label"));
  QProp *p = Make(new QProp(main, 10, 60, 150, 16));
  QCheck *c = Make(new QCheck(main, 10, 80, 150, 16, "c"));
  EXPECT_LT(l->GetTabOrder(), 0);  // labels never take the focus
  b->Focus();
  qpsKeyTap(QK_TAB);
  Drain();
  EXPECT_EQ(wm->GetFocus(), p);
  qpsKeyTap(QK_TAB);
  Drain();
  EXPECT_EQ(wm->GetFocus(), c);
  // A press focuses the control under the mouse.
  qpsClick(20, 20);
  Drain();
  EXPECT_EQ(wm->GetFocus(), b);
}

TEST_F(Controls, LabelLinesAndTitleText) {
  QLabel *l = Make(new QLabel(main, 10, 10, 200, 40, "one\ntwo\nthree"));
  EXPECT_EQ(l->GetLineCount(), 3);
  l->SetText("");
  EXPECT_EQ(l->GetLineCount(), 0);
  QTitleBar *t = Make(new QTitleBar(main, 0, 0, W, 20, "first"));
  t->SetText("second");
  EXPECT_STREQ(t->GetText(), "second");
  // A click on a label or the title bar is not theirs to consume.
  qpsClick(15, 15);
  Drain();
  EXPECT_TRUE(posted.empty());
}

// The focus ring and the ink on screen: the frame of a focused control is
// drawn in the focus colour, text on a dialog's body in light ink.
TEST_F(Controls, FocusRingOnScreen) {
  QButton *b = Make(new QButton(main, 20, 20, 100, 25, "OK"));
  QProp *p = Make(new QProp(main, 20, 60, 150, 16));
  QCanvas cv;
  cv.SetTargetSize(W, H);
  auto frameAt = [&](int x, int y) {
    cv.Select();
    cv.SetColor(QCANVAS_PX_WHITE);
    cv.Clear();
    wm->Paint(&cv);
    glFinish();
    unsigned char px[4] = {};
    glReadBuffer(GL_BACK);
    glReadPixels(x, H - 1 - y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, px);
    return QColor(px[0], px[1], px[2]);
  };
  const QColor focus(qlook::FOCUS.GetR(), qlook::FOCUS.GetG(), qlook::FOCUS.GetB());
  b->Focus();
  EXPECT_EQ(frameAt(20, 30), focus);
  EXPECT_EQ(frameAt(21, 30), focus);  // two pixels wide
  EXPECT_FALSE(frameAt(20, 65) == focus);
  p->Focus();
  EXPECT_FALSE(frameAt(20, 30) == focus);
  EXPECT_EQ(frameAt(20, 65), focus);
}

}  // namespace
