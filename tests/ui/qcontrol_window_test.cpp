// The controls as windows, driven through the headless backend and the
// window manager: the control events user input posts, slider drag and
// step keys, radio groups per parent and group number.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/ui/gltest.h"
#include "ui/qcanvas.h"
#include "ui/qfont.h"
#include "ui/qbutton.h"
#include "ui/qcontrol.h"
#include "ui/qlabel.h"
#include "ui/qprop.h"
#include "ui/qradio.h"

namespace {

using Ns = std::vector<int>;

class Controls : public MainWindowTest {
 protected:
  // The n of each control event of `type` from `w`, in order; clears the list.
  Ns Take(int type, QWindow *w) {
    Ns ns;
    for (const QEvent &e : Seen())
      if (e.type == type && e.win == w) ns.push_back(e.n);
    Seen().clear();
    return ns;
  }
};

TEST_F(Controls, ButtonClicksOnReleaseInsideAndByKeys) {
  QButton *b = Make(new QButton(main, 20, 20, 100, 25, "Open tire"));
  qpsMouseMove(30, 30);
  qpsButtonPress(30, 30);
  Drain();
  EXPECT_EQ(b->GetState(), QButtonState::Pressed);
  EXPECT_TRUE(Seen().empty());
  qpsButtonRelease(35, 31);
  Drain();
  EXPECT_EQ(Take(QEVENT_CLICK, b), Ns{0});
  // Dragged out, the button keeps the mouse and cancels; the right button and a disabled button do nothing.
  qpsButtonPress(30, 30);
  qpsMouseMove(200, 200);
  Drain();
  EXPECT_EQ(b->GetState(), QButtonState::PressedOut);
  qpsButtonRelease(200, 200);
  qpsClick(30, 30, QMB_RIGHT);
  b->Disable();
  qpsClick(30, 30);
  Drain();
  EXPECT_TRUE(Seen().empty());
  b->Enable();
  b->Focus();
  qpsKeyTap(QK_SPACE);
  qpsKeyTap('A');
  Drain();
  EXPECT_EQ(Take(QEVENT_CLICK, b).size(), 1u);
  // Enter clicks OK once wherever the focus is, and not the focused button as well.
  QButton *ok = Make(new QButton(main, 150, 20, 80, 25, "OK"));
  ok->SetShortcut(QK_ENTER);
  qpsKeyTap(QK_ENTER);
  Drain();
  ASSERT_EQ(Seen().size(), 1u);
  EXPECT_EQ(Seen()[0].win, ok);
}

TEST_F(Controls, SliderDragClickBesideWheelAndKeys) {
  // Knob centre travels x = 15 .. 215: one pixel is 5 positions.
  QProp *p = Make(new QProp(main, 10, 100, 211, 18));
  p->SetRange(0, 1000);
  p->SetStepSizes(5, 10);
  p->SetPosition(500);
  qpsMouseMove(116, 108);
  qpsButtonPress(116, 108);  // on the knob, one pixel right of its centre
  qpsMouseMove(136, 108);
  qpsMouseMove(136, 300);  // off the slider vertically: still dragging
  qpsMouseMove(400, 108);  // past the end
  qpsButtonRelease(400, 108);
  qpsClick(30, 108);  // left of the knob: one big step down
  qpsClick(100, 108, QMB_WHEELUP);
  qpsClick(100, 108, QMB_WHEELDOWN);
  Drain();
  EXPECT_EQ(Take(QEVENT_CHANGE, p), (Ns{600, 1000, 990, 995, 990}));
  EXPECT_FALSE(p->IsDragging());
  p->SetStepSizes(3, 10);
  p->SetPosition(995);
  p->Focus();
  for (int k : {QK_RIGHT, QK_RIGHT, QK_RIGHT, QK_LEFT, QK_PAGEDOWN, QK_DOWN, QK_UP, QK_PAGEUP, QK_HOME, QK_HOME,
                QK_END})
    qpsKeyTap(k);
  Drain();
  EXPECT_EQ(Take(QEVENT_CHANGE, p), (Ns{998, 1000, 997, 987, 984, 987, 997, 0, 1000}));
  // A position set from code outside the range is kept until the user moves it.
  p->SetStepSizes(5, 10);
  p->SetPosition(1500);
  EXPECT_EQ(p->GetPosition(), 1500);
  EXPECT_EQ(p->GetKnobRect().x + p->GetKnobRect().wid, 10 + 211 - 1);  // drawn at the end
  qpsKeyTap(QK_LEFT);  // steps from where it is drawn, the end
  Drain();
  EXPECT_EQ(Take(QEVENT_CHANGE, p), Ns{995});
}

// Pressing and releasing the knob where it stands is no move: a position
// outside the range, drawn at the end, is kept. Moving it is a move.
TEST_F(Controls, SliderKnobClickWithoutMoveKeepsThePosition) {
  QProp *p = Make(new QProp(main, 10, 100, 211, 18));  // knob centre at x = 215 for 1000
  p->SetRange(0, 1000);
  for (int outside : {1500, -300}) {
    p->SetPosition(outside);
    int x = outside > 0 ? 215 : 15;
    qpsMouseMove(x, 108);
    qpsButtonPress(x, 108);
    qpsButtonRelease(x, 108);
    qpsClick(x + 1, 108);  // one pixel beside the centre, still the knob
    Drain();
    EXPECT_EQ(Take(QEVENT_CHANGE, p), Ns{}) << outside;
    EXPECT_EQ(p->GetPosition(), outside);
  }
  p->SetPosition(1500);
  qpsMouseMove(215, 108);
  qpsButtonPress(215, 108);
  qpsMouseMove(214, 108);
  qpsMouseMove(215, 108);  // back where it began: the knob was moved all the same
  qpsButtonRelease(215, 108);
  Drain();
  EXPECT_EQ(Take(QEVENT_CHANGE, p), (Ns{995, 1000}));
}

namespace {
std::vector<std::pair<std::string, QRect>> &Drawn() {
  static std::vector<std::pair<std::string, QRect>> drawn;
  return drawn;
}
void Record(const char *text, const QRect &box) { Drawn().push_back({text, box}); }
bool Meet(const QRect &a, const QRect &b) {
  return a.x < b.x + b.wid && b.x < a.x + a.wid && a.y < b.y + b.hgt && b.y < a.y + a.hgt;
}
}  // namespace

// Wherever the knob stands, the caption's letters keep clear of it, on long
// and short sliders.
TEST_F(Controls, SliderCaptionStaysClearOfTheKnob) {
  QFont font((std::string(TYRO_SOURCE_DIR) + "/data/fonts/eurostile11").c_str());
  ASSERT_TRUE(font.Create());
  QCanvas cv;
  cv.SetTargetSize(W, H);
  cv.SetFont(&font);
  QProp *wide = Make(new QProp(main, 5, 20, 300, 18));
  QProp *narrow = Make(new QProp(main, 5, 60, 150, 18));
  wide->SetCaption("Slipratio 0.00");
  narrow->SetCaption("23.3000");
  QCanvas::TextObserver old = QCanvas::SetTextObserver(Record);
  for (QProp *p : {wide, narrow}) {
    p->SetRange(0, 1000);
    for (int pos = -100; pos <= 1100; pos += 10) {
      p->SetPosition(pos);
      Drawn().clear();
      p->Paint(&cv);
      ASSERT_EQ(Drawn().size(), 1u);
      EXPECT_FALSE(Meet(Drawn()[0].second, p->GetKnobRect())) << p->GetCaption() << " at " << pos;
    }
  }
  QCanvas::SetTextObserver(old);
}

// An eliding label keeps a long line inside its width, start and end shown;
// a plain one lets it run on.
TEST_F(Controls, ElidingLabelKeepsLongLinesInside) {
  QFont font((std::string(TYRO_SOURCE_DIR) + "/data/fonts/eurostile11").c_str());
  ASSERT_TRUE(font.Create());
  QCanvas cv;
  cv.SetTargetSize(W, H);
  cv.SetFont(&font);
  const std::string text = "'/home/user/tyres/winter/MagicFormula61_Parameters.tir' not found";
  QLabel *label = Make(new QLabel(main, 5, 60, 150, 18, text.c_str()));
  QCanvas::TextObserver old = QCanvas::SetTextObserver(Record);
  auto paint = [&] {
    Drawn().clear();
    label->Paint(&cv);
    int right = 0;
    for (const auto &d : Drawn()) right = std::max(right, d.second.x + d.second.wid);
    return right;
  };
  EXPECT_GT(paint(), 5 + 150);  // plain: runs on past the right edge
  label->SetElide(true);
  EXPECT_LE(paint(), 5 + 150);
  ASSERT_EQ(Drawn().size(), 1u);  // one run of text, not squeezed glyph by glyph
  const std::string shown = Drawn()[0].first;
  EXPECT_GT(Drawn()[0].second.wid, 150 - 20) << shown;  // uses the room it has
  EXPECT_EQ(shown.rfind("'/home", 0), 0u) << shown;
  EXPECT_NE(shown.find("..."), std::string::npos) << shown;
  EXPECT_EQ(shown.substr(shown.size() - 10), " not found") << shown;
  EXPECT_EQ(std::string(label->GetText()), text);  // the text itself stays whole
  label->SetText("short");
  paint();
  ASSERT_EQ(Drawn().size(), 1u);
  EXPECT_EQ(Drawn()[0].first, "short");
  QCanvas::SetTextObserver(old);
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
  EXPECT_TRUE(Seen().empty());
  qpsClick(20, 10 + 17 + 5);  // r[1]
  qpsClick(20, 10 + 17 + 5);  // the checked one posts again
  Drain();
  EXPECT_EQ(Take(QEVENT_CHANGE, r[1]), (Ns{1, 1}));
  EXPECT_FALSE(r[0]->IsChecked());
  EXPECT_TRUE(r[1]->IsChecked());
  // Another number under the same parent, or the same number under another parent, is another group.
  EXPECT_TRUE(q[0]->IsChecked());
  q[1]->SetChecked();
  EXPECT_TRUE(r[1]->IsChecked());
  EXPECT_FALSE(q[0]->IsChecked());
  // Arrows move the check and the focus within the group, wrapping past a disabled one.
  r[1]->Focus();
  qpsKeyTap(QK_DOWN);
  Drain();
  EXPECT_EQ(wm->GetFocus(), r[2]);
  EXPECT_EQ(Take(QEVENT_CHANGE, r[2]), Ns{1});
  r[0]->Disable();
  qpsKeyTap(QK_DOWN);
  Drain();
  EXPECT_TRUE(r[1]->IsChecked());
  EXPECT_TRUE(s[0]->IsChecked());
}

}  // namespace
