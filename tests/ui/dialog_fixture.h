// A QApp with a main window on the headless backend for the modal dialogs. OnIdle
// steps run one each time the modal loop runs dry; then the guard ends the dialog
// with 99, so a test that forgot to close its dialog fails instead of hanging.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <iterator>
#include <string>

#include "platform/headless/qpscript.h"
#include "ui/qapp.h"
#include "ui/qdialog.h"
#include "ui/qplatform.h"
#include "ui/qwindow.h"
#include "ui/qwinmgr.h"

inline std::string ReadAll(const std::string &path) {
  std::ifstream f(path);
  return std::string(std::istreambuf_iterator<char>(f), {});
}

inline std::filesystem::path FreshDir(const std::string &tag) {
  std::filesystem::path d = std::filesystem::weakly_canonical(std::filesystem::temp_directory_path()) /
                            (tag + "_" + std::to_string(getpid()) + "_" +
                             ::testing::UnitTest::GetInstance()->current_test_info()->name());
  std::filesystem::remove_all(d);
  std::filesystem::create_directories(d);
  return d;
}

// Plays keys: the control characters below are keys (\x01 Home, \x05 End,
// \x02 Left, \x06 Right), the rest is typed.
inline void Keys(const char *s) {
  static const std::map<char, int> keys = {{'\n', QK_ENTER}, {'\x1b', QK_ESC},   {'\b', QK_BACKSPACE},
                                           {'\t', QK_TAB},   {'\x7f', QK_DELETE}, {'\x01', QK_HOME},
                                           {'\x05', QK_END}, {'\x02', QK_LEFT},   {'\x06', QK_RIGHT}};
  for (; *s; s++) {
    char c[2] = {*s, 0};
    if (keys.count(*s)) qpsKeyTap(keys.at(*s));
    else qpsType(c);
  }
}

class DialogTest : public ::testing::Test {
 public:
  static constexpr int MW = 800, MH = 600;
  static QDialog *Modal() {
    return app && app->GetFocusShell() ? dynamic_cast<QDialog *>(app->GetFocusShell()->GetModal()) : nullptr;
  }
  template <class T>
  static T *ModalAs() { return dynamic_cast<T *>(Modal()); }

 protected:
  void SetUp() override {
    steps.clear();
    guardFired = false;
    qpsClear();
    qpsSetMessageBoxAnswer(QPMB_IDOK);
    a = new QApp(0, nullptr, "dialogtest");
    pw = reinterpret_cast<QPWindow *>(&placeholder);  // no GL: a placeholder window
    mw = new QWindow(a->GetRoot(), 0, 0, MW, MH);
    mw->MakeRealX();
    mw->AdoptPlatformWindow(pw);
    ASSERT_TRUE(mw->Create());
    a->SetMainWindow(mw, pw);
    a->SetIdleProc(Idle);
  }
  void TearDown() override {
    EXPECT_FALSE(guardFired) << "a dialog was still open when the script ran dry";
    EXPECT_TRUE(steps.empty()) << steps.size() << " idle steps never ran";
    delete mw;
    delete a;
    qpsClear();
  }

  static void OnIdle(std::function<void()> f) { steps.push_back(std::move(f)); }
  static void ClickOn(const QWindow *w, int button = QMB_LEFT) {
    QRect r = w->GetAbsRect();
    qpsClick(r.x + r.wid / 2, r.y + r.hgt / 2, button);
  }
  void CloseRequest() {
    a->SetState(QApp::STATE_EXIT_RETURNS);
    qpsClose();
  }

  static void Idle() {
    if (!steps.empty()) {
      std::function<void()> f = std::move(steps.front());
      steps.pop_front();
      f();
    } else if (QDialog *d = Modal()) {
      guardFired = true;
      d->SetResult(99);
    }
  }
  static inline std::deque<std::function<void()>> steps;
  static inline bool guardFired = false;

  QApp *a = nullptr;
  QPWindow *pw = nullptr;
  QWindow *mw = nullptr;
  int placeholder = 0;
};
