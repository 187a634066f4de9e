// QApp: dispatch order of Run1, the procedure tables, input state, close
// requests and screenshots, driven through the headless backend's script.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/headless/qpscript.h"
#include "tests/ui/capture.h"
#include "tests/ui/gltest.h"
#include "base/qinfo.h"
#include "ui/qapp.h"
#include "ui/qcanvas.h"
#include "ui/qplatform.h"

namespace {

std::vector<std::string> trace;  // which stage saw the event, in order
bool consumeAt[8];               // stage index -> returns true

bool Stage(int i, const char *name) {
  trace.push_back(name);
  return consumeAt[i];
}
bool Key0(QEvent *) { return Stage(0, "key0"); }
bool Key1(QEvent *) { return Stage(1, "key1"); }
bool EventProc(QEvent *) { return Stage(3, "proc"); }
int idleCalls = 0;
void Idle() { idleCalls++; }

class TraceSink : public QEventSink {
 public:
  bool ProcessEvent(QEvent *) override { return Stage(2, "wm"); }
};
class TraceShell : public QFocusShell {
 public:
  bool ProcessEvent(QEvent *) override { return Stage(4, "shell"); }
};

class QAppTest : public ::testing::Test {
 protected:
  void SetUp() override {
    trace.clear();
    for (bool &c : consumeAt) c = false;
    idleCalls = 0;
    qpsClear();
    a = new QApp(0, nullptr, "apptest");
  }
  void TearDown() override {
    delete a;
    qpsClear();
  }
  // Wires every dispatch stage to the trace.
  void WireAll() {
    a->AddKeyboardHandler(Key0);
    a->AddKeyboardHandler(Key1);
    a->SetWindowManager(new TraceSink());
    a->SetEventProc(EventProc);
    a->SetFocusShell(new TraceShell());
  }
  QApp *a = nullptr;
};

TEST_F(QAppTest, NoEventCallsIdleOnceAndReturns2) {
  a->SetIdleProc(Idle);
  EXPECT_EQ(a->Run1(), 2);
  EXPECT_EQ(idleCalls, 1);
}

TEST_F(QAppTest, NameDefaultsToTessel) {
  QApp *saved = app;
  {
    // A second object only to read its default name; the test's own stays current.
    QApp other;
    EXPECT_STREQ(other.GetName(), "Tessel");
  }
  app = saved;
  EXPECT_STREQ(a->GetName(), "apptest");
}

// Each row: event type, the stage that consumes (-1: none), expected trace, result.
struct DispatchRow {
  int type;
  int consumer;
  std::vector<std::string> expect;
  int result;
};

TEST_F(QAppTest, Run1DispatchOrder) {
  const std::vector<DispatchRow> rows = {
      {QEVENT_KEYPRESS, -1, {"key0", "key1", "wm", "proc", "shell"}, 1},
      {QEVENT_KEYRELEASE, -1, {"key0", "key1", "wm", "proc", "shell"}, 1},
      {QEVENT_KEYPRESS, 0, {"key0"}, 0},
      {QEVENT_KEYPRESS, 1, {"key0", "key1"}, 0},
      {QEVENT_KEYPRESS, 2, {"key0", "key1", "wm"}, 0},
      {QEVENT_KEYPRESS, 3, {"key0", "key1", "wm", "proc"}, 0},
      {QEVENT_KEYPRESS, 4, {"key0", "key1", "wm", "proc", "shell"}, 0},
      // Keyboard handlers see key events only.
      {QEVENT_BUTTONPRESS, -1, {"wm", "proc", "shell"}, 1},
      {QEVENT_MOTIONNOTIFY, 3, {"wm", "proc"}, 0},
      {QEVENT_CHAR, -1, {"wm", "proc", "shell"}, 1},
  };
  WireAll();
  for (size_t i = 0; i < rows.size(); i++) {
    const DispatchRow &r = rows[i];
    trace.clear();
    for (int s = 0; s < 8; s++) consumeAt[s] = (s == r.consumer);
    QEvent e;
    e.type = r.type;
    e.n = 'A';
    qpsPushEvent(e);
    EXPECT_EQ(a->Run1(), r.result) << "row " << i;
    EXPECT_EQ(trace, r.expect) << "row " << i;
  }
}

TEST_F(QAppTest, RunPendingHandsFlagAndModalWindowToTheShellAndDrainsTheQueue) {
  WireAll();
  TraceShell *shell = static_cast<TraceShell *>(a->GetFocusShell());
  QWindow *modal = reinterpret_cast<QWindow *>(0x4000);
  qpsKeyTap('X');
  qpsClick(5, 6);
  a->RunPending(modal, 7);
  EXPECT_EQ(shell->GetFlag(), 7);
  EXPECT_EQ(shell->GetModal(), modal);
  EXPECT_EQ(qpsPendingCount(), 0);
  EXPECT_EQ(a->GetMouseX(), 5);
  EXPECT_EQ(a->GetMouseButtons(), 0u);  // pressed and released
  int x = 0, y = 0;
  unsigned b = 1;
  qpGetMouse(&x, &y, &b);  // the scripted mouse followed the events
  EXPECT_EQ(x, 5);
  EXPECT_EQ(y, 6);
  EXPECT_EQ(b, 0u);
}

TEST_F(QAppTest, KeyboardHandlerSlots) {
  static bool (*const handlers[6])(QEvent *) = {
      [](QEvent *) { return false; }, [](QEvent *) { return false; }, [](QEvent *) { return false; },
      [](QEvent *) { return false; }, [](QEvent *) { return false; }, [](QEvent *) { return false; }};
  ReportCapture rc;
  for (int i = 0; i < 5; i++) EXPECT_TRUE(a->AddKeyboardHandler(handlers[i])) << i;
  EXPECT_FALSE(a->AddKeyboardHandler(handlers[5]));
  ASSERT_EQ(rc.warnings.size(), 1u);
  EXPECT_EQ(rc.warnings[0], "QApp::AddKeyboardHandler(); out of handlers\n");
  EXPECT_FALSE(a->RemoveKeyboardHandler(handlers[5]));
  char expect[128];
  snprintf(expect, sizeof(expect), "QApp::RemoveKeyboardHandler(); can't find handler (%p)\n",
           reinterpret_cast<void *>(handlers[5]));
  ASSERT_EQ(rc.errors.size(), 1u);
  EXPECT_EQ(rc.errors[0], expect);
  // Removing one frees its slot for the refused handler.
  EXPECT_TRUE(a->RemoveKeyboardHandler(handlers[2]));
  EXPECT_TRUE(a->AddKeyboardHandler(handlers[5]));
}

std::vector<int> calls;
template <int N>
void Rec() {
  calls.push_back(N);
}
void ExitProc() { calls.push_back(-1); }

TEST_F(QAppTest, CleanupTableRunsInOrderAndRefusesThe101st) {
  calls.clear();
  ReportCapture rc;
  for (int i = 0; i < 100; i++) EXPECT_TRUE(a->AddCleanupProc(i % 2 ? Rec<1> : Rec<0>));
  EXPECT_FALSE(a->AddCleanupProc(Rec<7>));
  ASSERT_EQ(rc.errors.size(), 1u);
  EXPECT_EQ(rc.errors[0], "QApp::AddCleanupProc(); out of space - memory leaks WILL occur!\n");
  EXPECT_EQ(a->GetCleanupProcCount(), 100);
  a->SetExitProc(ExitProc);
  a->SetState(QApp::STATE_EXIT_RETURNS);
  a->Exit(0);  // returns: the bit asks for it
  ASSERT_EQ(calls.size(), 101u);
  EXPECT_EQ(calls[0], -1);  // exit procedure first
  for (int i = 0; i < 100; i++) EXPECT_EQ(calls[size_t(i) + 1], i % 2) << i;
  EXPECT_EQ(a->GetState() & QApp::STATE_EXIT_RETURNS, 0u);  // consumed
  ASSERT_EQ(rc.debug.size(), 200u);
  EXPECT_EQ(rc.debug[0], "QApp: calling cleanup proc 0...\n");
  EXPECT_EQ(rc.debug[1], "  cleanup 0 returned.\n");
  EXPECT_EQ(rc.debug[199], "  cleanup 99 returned.\n");
}

TEST_F(QAppTest, CrashTableRefusesNullAndTheEleventh) {
  calls.clear();
  ReportCapture rc;
  EXPECT_FALSE(a->AddCrashProc(nullptr));
  for (int i = 0; i < 10; i++) EXPECT_TRUE(a->AddCrashProc(i == 3 ? Rec<3> : Rec<0>));
  EXPECT_FALSE(a->AddCrashProc(Rec<9>));
  ASSERT_EQ(rc.errors.size(), 2u);
  EXPECT_EQ(rc.errors[0], "QApp:AddCrashProc(); func=0\n");
  EXPECT_EQ(rc.errors[1], "QApp::AddCrashProc(); out of space\n");
  a->RunCrashProcs();
  ASSERT_EQ(calls.size(), 10u);
  EXPECT_EQ(calls[3], 3);
}

TEST_F(QAppTest, UnsupportedCallsReturnZero) {
  ReportCapture rc;
  EXPECT_EQ(a->AddTimer(10, Idle), 0);
  EXPECT_EQ(a->GetEventFD(), 0);
  EXPECT_EQ(a->GetVTraceCount(), 0);
  ASSERT_EQ(rc.errors.size(), 3u);
  EXPECT_EQ(rc.errors[0], "QApp:AddTimer() not supported on Win32/Linux\n");
  EXPECT_EQ(rc.errors[1], "QApp:GetEventFD() not supported on this platform.\n");
  EXPECT_EQ(rc.errors[2], "QApp:GetVTraceCount() no longer supported\n");
}

TEST_F(QAppTest, SecondSetInfoIsRefused) {
  ReportCapture rc;
  QInfo *first = reinterpret_cast<QInfo *>(0x10), *second = reinterpret_cast<QInfo *>(0x20);
  a->SetInfo(first);
  a->SetInfo(second);
  EXPECT_EQ(a->GetInfo(), first);
  ASSERT_EQ(rc.errors.size(), 1u);
  EXPECT_EQ(rc.errors[0], "QApp::SetInfo(); info is already open; call CloseInfo() first\n");
  a->CloseInfo();
  a->SetInfo(second);
  EXPECT_EQ(a->GetInfo(), second);
}

TEST_F(QAppTest, LogCarriesTheApplicationName) {
  EXPECT_STREQ(qGetAppName(), "apptest");
}

// Feeds one event and returns the combined key code QApp computed.
int Feed(QApp *a, int type, int n, int x = 0, int y = 0) {
  QEvent e;
  e.type = type;
  e.n = n;
  e.x = x;
  e.y = y;
  qpsPushEvent(e);
  a->Run1();
  return a->GetCurrentEvent()->xn;
}

TEST_F(QAppTest, ModifierWord) {
  Feed(a, QEVENT_KEYPRESS, QK_SHIFT);
  EXPECT_EQ(a->GetModifiers(), QK_MOD_SHIFT);
  EXPECT_EQ(Feed(a, QEVENT_KEYPRESS, 'A'), 0x10041);
  Feed(a, QEVENT_KEYRELEASE, QK_SHIFT);
  EXPECT_EQ(a->GetModifiers(), 0);
  Feed(a, QEVENT_KEYPRESS, QK_CTRL);
  EXPECT_EQ(Feed(a, QEVENT_KEYPRESS, QK_ALT), 0xC0012);
  // A focus change clears Control and Alt although their releases never came.
  Feed(a, QEVENT_RESETMODIFIERS, 0);
  EXPECT_EQ(a->GetModifiers(), 0);
  Feed(a, QEVENT_KEYPRESS, QK_SHIFT);
  a->ResetModifiers();
  EXPECT_EQ(a->GetModifiers(), 0);
}

TEST_F(QAppTest, MouseState) {
  Feed(a, QEVENT_BUTTONPRESS, QMB_LEFT);
  Feed(a, QEVENT_BUTTONPRESS, QMB_RIGHT);
  EXPECT_EQ(a->GetMouseButtons(), (1u << 1) | (1u << 3));
  Feed(a, QEVENT_BUTTONRELEASE, QMB_LEFT);
  EXPECT_EQ(a->GetMouseButtons(), 1u << 3);
  Feed(a, QEVENT_BUTTONPRESS, 33);  // code mod 32
  EXPECT_TRUE(a->IsButtonDown(1));
  EXPECT_FALSE(a->IsMouseInside());
  Feed(a, QEVENT_MOTIONNOTIFY, 0, 17, 23);
  EXPECT_EQ(a->GetMouseX(), 17);
  EXPECT_EQ(a->GetMouseY(), 23);
  EXPECT_TRUE(a->IsMouseInside());
  Feed(a, QEVENT_LEAVE, 0);
  EXPECT_FALSE(a->IsMouseInside());
}

int exits = 0;
void CountExit() { exits++; }

TEST_F(QAppTest, CloseRequestOfMainWindowExits) {
  exits = 0;
  a->SetExitProc(CountExit);
  QPWindow *mainPW = reinterpret_cast<QPWindow *>(0x1000);
  QPWindow *otherPW = reinterpret_cast<QPWindow *>(0x2000);
  a->SetMainWindow(nullptr, mainPW);
  QEvent e;
  e.type = QEVENT_CLOSE;
  e.pwin = otherPW;
  qpsPushEvent(e);
  EXPECT_EQ(a->Run1(), 0);
  EXPECT_EQ(exits, 0);  // another window: nothing happens
  e.pwin = mainPW;
  qpsPushEvent(e);
  a->SetState(QApp::STATE_EXIT_RETURNS);
  EXPECT_EQ(a->Run1(), 0);
  EXPECT_EQ(exits, 1);
  // A consumed close request does not exit.
  a->SetEventProc([](QEvent *) { return true; });
  qpsPushEvent(e);
  a->Run1();
  EXPECT_EQ(exits, 1);
}

TEST_F(QAppTest, CloseRequestWithoutAnyWindowExits) {
  exits = 0;
  a->SetExitProc(CountExit);
  a->SetState(QApp::STATE_EXIT_RETURNS);
  Feed(a, QEVENT_CLOSE, 0);
  EXPECT_EQ(exits, 1);
}

// Screenshots go to the temporary folder; TMPDIR points it at a fresh one.
class ScreenshotTest : public QAppTest {
 protected:
  void SetUp() override {
    dir = std::filesystem::temp_directory_path() / ("tyro_shots_" + std::to_string(getpid()));
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
    oldTmp = getenv("TMPDIR") ? getenv("TMPDIR") : "";
    setenv("TMPDIR", dir.c_str(), 1);
    setenv("LP_NUM_THREADS", "0", 0);
    GLTEST_LSAN_DISABLE();  // see gltest.h
    QAppTest::SetUp();
    pw = qpCreateWindow("shot", 0, 0, 64, 48, 0);
    ASSERT_NE(pw, nullptr) << qpLastError();
  }
  void TearDown() override {
    qpDestroyWindow(pw);
    QAppTest::TearDown();
    GLTEST_LSAN_ENABLE();
    if (oldTmp.empty()) unsetenv("TMPDIR");
    else setenv("TMPDIR", oldTmp.c_str(), 1);
    std::filesystem::remove_all(dir);
  }
  std::filesystem::path dir;
  std::string oldTmp;
  QPWindow *pw = nullptr;
};

TEST_F(ScreenshotTest, ControlAltF11SavesNumberedUiFiles) {
  ReportCapture rc;
  Feed(a, QEVENT_KEYPRESS, QK_F11);  // no back-buffer canvas: nothing written
  Feed(a, QEVENT_KEYRELEASE, QK_F11);
  Feed(a, QEVENT_KEYPRESS, QK_CTRL);
  Feed(a, QEVENT_KEYPRESS, QK_ALT);
  EXPECT_EQ(Feed(a, QEVENT_KEYPRESS, QK_F11), 0xC007A);  // no main window yet: nothing
  EXPECT_FALSE(std::filesystem::exists(dir / "ui00001.tga"));
  a->SetMainWindow(nullptr, pw);
  Feed(a, QEVENT_KEYPRESS, QK_F11);
  EXPECT_TRUE(std::filesystem::exists(dir / "ui00001.tga"));
  Feed(a, QEVENT_KEYPRESS, QK_F11);
  EXPECT_TRUE(std::filesystem::exists(dir / "ui00002.tga"));
  EXPECT_FALSE(std::filesystem::exists(dir / "bc00001.tga"));
  ASSERT_EQ(rc.debug.size(), 4u);
  EXPECT_EQ(rc.debug[0], "> No BC present.\n");
  EXPECT_EQ(rc.debug[1], "> No UI present.\n");
  EXPECT_EQ(rc.debug[2], "> Saving screenshot of UI in '" + (dir / "ui00001.tga").string() + "'\n");
}

TEST_F(ScreenshotTest, F11SavesTheBackBufferCanvas) {
  QCanvas bc;
  bc.SetTargetSize(64, 48);
  a->SetBC(&bc);
  // A free number is found past existing files.
  FILE *f = fopen((dir / "bc00001.tga").c_str(), "wb");
  ASSERT_NE(f, nullptr);
  fclose(f);
  Feed(a, QEVENT_KEYPRESS, QK_F11);
  EXPECT_TRUE(std::filesystem::exists(dir / "bc00002.tga"));
  EXPECT_EQ(std::filesystem::file_size(dir / "bc00002.tga"), 18u + 64u * 48u * 3u);
}

}  // namespace
