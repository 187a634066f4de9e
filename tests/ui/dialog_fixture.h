// A QApp with a main window on the headless backend for the modal dialogs.
// Tests script events, or hand steps to the idle procedure: each time the
// modal loop runs dry, the next step runs (it may look at the dialog and push
// more events). When the steps are used up the guard ends the modal dialog
// with result 99, so that a test that forgot to close its dialog fails
// instead of hanging.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <deque>
#include <functional>

#include "platform/headless/qpscript.h"
#include "tests/ui/gltest.h"
#include "ui/qapp.h"
#include "ui/qdialog.h"
#include "ui/qplatform.h"
#include "ui/qwindow.h"
#include "ui/qwinmgr.h"

class DialogTest : public ::testing::Test {
 protected:
  static constexpr int MW = 800, MH = 600;

  // Tests that paint need a real GL window; the others stand the main
  // window on a placeholder platform window (nothing draws into it).
  virtual bool UsesGL() const { return false; }

  void SetUp() override {
    steps().clear();
    guardFired() = false;
    qpsClear();
    qpsSetMessageBoxAnswer(QPMB_IDOK);
    a = new QApp(0, nullptr, "dialogtest");
    if (UsesGL()) {
      setenv("LP_NUM_THREADS", "0", 0);
      GLTEST_LSAN_DISABLE();
      pw = qpCreateWindow("dialogs", 0, 0, MW, MH, 0);
      ASSERT_NE(pw, nullptr) << qpLastError();
      qpMakeCurrent(pw);
    } else {
      pw = reinterpret_cast<QPWindow *>(&placeholder);
    }
    mw = new QWindow(a->GetRoot(), 0, 0, MW, MH);
    mw->MakeRealX();
    mw->AdoptPlatformWindow(pw);
    ASSERT_TRUE(mw->Create());
    a->SetMainWindow(mw, pw);
    a->SetIdleProc(Idle);
  }
  void TearDown() override {
    EXPECT_FALSE(guardFired()) << "a dialog was still open when the script ran dry";
    EXPECT_TRUE(steps().empty()) << steps().size() << " idle steps never ran";
    delete mw;
    if (UsesGL()) qpDestroyWindow(pw);  // before the display closes
    delete a;
    qpsClear();
    if (UsesGL()) {
      GLTEST_LSAN_ENABLE();
    }
  }

  // The dialog running modally now (null: none).
  static QDialog *Modal() {
    return app && app->GetFocusShell() ? dynamic_cast<QDialog *>(app->GetFocusShell()->GetModal()) : nullptr;
  }
  template <class T>
  static T *ModalAs() {
    return dynamic_cast<T *>(Modal());
  }
  // Runs `f` the next time the loop has nothing to do.
  static void OnIdle(std::function<void()> f) { steps().push_back(std::move(f)); }
  // A click in the middle of window `w`.
  static void ClickOn(const QWindow *w, int button = QMB_LEFT) {
    QRect r = w->GetAbsRect();
    qpsClick(r.x + r.wid / 2, r.y + r.hgt / 2, button);
  }

  static std::deque<std::function<void()>> &steps() {
    static std::deque<std::function<void()>> s;
    return s;
  }
  static bool &guardFired() {
    static bool fired = false;
    return fired;
  }
  static void Idle() {
    if (!steps().empty()) {
      std::function<void()> f = std::move(steps().front());
      steps().pop_front();
      f();
      return;
    }
    if (QDialog *d = Modal()) {
      guardFired() = true;
      d->SetResult(99);
    }
  }

  QApp *a = nullptr;
  QPWindow *pw = nullptr;
  QWindow *mw = nullptr;
  int placeholder = 0;
};
