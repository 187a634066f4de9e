// Window layer: creation rules, visibility, hit test, tab focus, active
// group, event routing with mouse capture and the modal run of a dialog.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/ui/capture.h"
#include "tests/ui/gltest.h"
#include "ui/qdialog.h"

namespace {

// A window that records what reaches it and consumes presses.
class Probe : public QWindow {
 public:
  Probe(QWindow *parent, int x, int y, int w, int h, std::vector<std::string> *log, const char *tag)
      : QWindow(parent, x, y, w, h), log(log), tag(tag) {}
  bool OnEvent(QEvent *ev) override {
    log->push_back(tag + ":" + std::to_string(ev->type));
    if (ev->type == QEVENT_BUTTONRELEASE) PostControlEvent(QEVENT_CLICK, 7);
    return ev->type == QEVENT_BUTTONPRESS || ev->type == QEVENT_KEYPRESS;
  }
  void OnShortcut() override { log->push_back(tag + ":shortcut"); }
  std::vector<std::string> *log;
  std::string tag;
};

class WindowTest : public MainWindowTest {
 protected:
  Probe *Add(int x, int y, int w, int h, const char *tag, int tab = -1, QWindow *parent = nullptr) {
    Probe *p = new Probe(parent ? parent : main, x, y, w, h, &log, tag);
    p->SetTabOrder(tab);
    return Make(p);
  }
  std::vector<std::string> log;
};

TEST_F(WindowTest, CreationRulesAndVisibility) {
  ReportCapture cap;
  QWindow orphan(nullptr, 0, 0, 10, 10), underRoot(a->GetRoot(), 0, 0, 10, 10);
  EXPECT_FALSE(orphan.Create());
  EXPECT_FALSE(underRoot.Create());  // not inside a real window: an orphan too
  EXPECT_TRUE(cap.Has(cap.errors, "QWindow::Create() without a parent real X window"));
  Probe *outer = Add(100, 50, 200, 100, "outer");
  Probe *inner = Add(10, 20, 30, 40, "inner", -1, outer);
  EXPECT_FALSE(inner->MakeRealX());
  EXPECT_FALSE(inner->MakeSoftWindow());
  for (const char *f : {"MakeRealX", "MakeSoftWindow"})
    EXPECT_TRUE(cap.Has(cap.warnings, std::string("QWindow:") + f + "() called after window was created")) << f;
  EXPECT_TRUE(inner->GetAbsRect().x == 110 && inner->GetAbsRect().y == 70);
  outer->Hide();
  EXPECT_FALSE(inner->IsVisible());
  EXPECT_EQ(inner->GetFlags() & QWF_HIDDEN, 0u);
}

TEST_F(WindowTest, HitTestTakesTheFirstAddedAndSkipsHiddenAndDisabled) {
  Probe *first = Add(0, 0, 50, 50, "first");
  Probe *second = Add(25, 25, 50, 50, "second");
  EXPECT_EQ(wm->WindowAt(nullptr, 30, 30), first);
  EXPECT_EQ(wm->WindowAt(nullptr, 60, 60), second);
  EXPECT_EQ(wm->WindowAt(nullptr, 50, 10), nullptr);  // right edge is outside
  first->Hide();
  EXPECT_EQ(wm->WindowAt(nullptr, 30, 30), second);
  first->Show();
  first->Disable();
  EXPECT_EQ(wm->WindowAt(nullptr, 30, 30), second);
  EXPECT_EQ(wm->WindowAt(reinterpret_cast<QPWindow *>(&log), 60, 60), nullptr);  // another real window
}

TEST_F(WindowTest, TabOrderWrapsBothWaysAndSkipsNegativeNumbers) {
  Probe *w3 = Add(0, 0, 5, 5, "3", 3);
  Probe *w1 = Add(0, 0, 5, 5, "1", 1);
  Probe *w2 = Add(0, 0, 5, 5, "2", 2);
  Add(0, 0, 5, 5, "none", -1);
  wm->SetFocus(w2);
  EXPECT_EQ(wm->FocusNext(), w3);
  EXPECT_EQ(wm->FocusNext(), w1);
  wm->SetFocus(nullptr);
  EXPECT_EQ(wm->FocusPrev(), w3);
  // Ties keep the earliest; a hidden window is passed over.
  Probe *tie = Add(0, 0, 5, 5, "tie", 1);
  EXPECT_EQ(wm->FocusFirst(), w1);
  w1->Hide();
  EXPECT_EQ(wm->FocusFirst(), tie);
  wm->SetFocus(w2);
  qpsKeyTap(QK_TAB);
  Drain();
  EXPECT_EQ(wm->GetFocus(), w3);
  qpsKeyPress(QK_SHIFT);
  qpsKeyTap(QK_TAB);
  qpsKeyRelease(QK_SHIFT);
  Drain();
  EXPECT_EQ(wm->GetFocus(), w2);
}

TEST_F(WindowTest, ActiveGroupRefusesOutsidersAndLimitsInput) {
  ReportCapture cap;
  Probe *group = Add(0, 0, 100, 100, "group");
  wm->SetActiveGroup(group);
  Probe *inside = Add(10, 10, 20, 20, "inside", 1, group);
  Probe *outside = new Probe(main, 0, 0, 300, 200, &log, "outside");
  owned.push_back(outside);
  outside->SetTabOrder(0);
  EXPECT_FALSE(outside->Create());
  EXPECT_TRUE(cap.Has(cap.warnings, "QWindowManager:AddWindow(); not part of activegroup, refusing to add window"));
  EXPECT_EQ(wm->WindowAt(nullptr, 150, 150), nullptr);
  EXPECT_EQ(wm->FocusFirst(), inside);
  wm->SetActiveGroup(nullptr);
  EXPECT_EQ(wm->WindowAt(nullptr, 150, 150), outside);
}

TEST_F(WindowTest, MouseCaptureShortcutsAndPostedClicksReachTheProgram) {
  Probe *b = Add(10, 10, 40, 20, "b", 0);
  Probe *c = Add(100, 10, 40, 20, "c", 1);
  c->SetShortcut(QK_ENTER);
  qpsButtonPress(20, 15);
  qpsMouseMove(120, 15);      // dragged off: still b's
  qpsButtonRelease(120, 15);  // release goes to b, which posts its click
  qpsKeyTap(QK_ENTER);        // c's shortcut; the key goes on to the focus (b)
  Drain();
  EXPECT_EQ(log, (std::vector<std::string>{"b:4", "b:6", "b:5", "c:shortcut", "b:2", "b:3"}));
  ASSERT_EQ(Seen().size(), 1u);
  EXPECT_TRUE(Seen()[0].type == QEVENT_CLICK && Seen()[0].win == b && Seen()[0].n == 7);
  // A window that goes away takes its queued events with it.
  b->PostControlEvent(QEVENT_CHANGE, 1);
  c->PostControlEvent(QEVENT_CHANGE, 2);
  owned.erase(owned.begin());
  delete b;
  Drain();
  ASSERT_EQ(Seen().size(), 2u);
  EXPECT_EQ(Seen()[1].win, c);
}

// Ends on a click of its button or on a close request.
class TestDialog : public QDialog {
 public:
  using QDialog::QDialog;
  QWindow *button = nullptr;
  std::vector<int> filtered;
  void Filter(QEvent *ev) override {
    filtered.push_back(ev->type);
    if (ev->type == QEVENT_CLICK && ev->win == button) SetResult(1);
    if (ev->type == QEVENT_CLOSE) SetResult(2);
  }
};

TEST_F(WindowTest, DialogRunsModallyAndRestoresTheGroupAndFocus) {
  Probe *beneath = Add(0, 0, 320, 240, "beneath", 0);
  wm->SetFocus(beneath);
  TestDialog d(nullptr, 50, 50, 200, 100, "Question");
  ASSERT_TRUE(d.Create());
  d.button = Add(10, 60, 50, 20, "ok", 0, &d);
  qpsClick(5, 5);     // beneath the dialog: not reachable while it runs
  qpsClick(70, 120);  // the dialog's button
  EXPECT_EQ(d.Execute(), 1);
  EXPECT_EQ(log, (std::vector<std::string>{"ok:6", "ok:4", "ok:5"}));
  EXPECT_EQ(wm->GetActiveGroup(), nullptr);
  EXPECT_EQ(wm->GetFocus(), beneath);
  EXPECT_EQ(a->GetFocusShell()->GetModal(), nullptr);
  EXPECT_EQ(d.filtered.back(), QEVENT_CLICK);  // after the program saw it
  ASSERT_EQ(Seen().size(), 1u);
  // Closing the main window ends the dialog with Cancel.
  a->SetState(QApp::STATE_EXIT_RETURNS);
  qpsClose();
  EXPECT_EQ(d.Execute(), 2);
}

}  // namespace
