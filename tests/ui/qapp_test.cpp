// QApp: dispatch order of Run1, the procedure tables and screenshots, driven
// through the headless backend's script.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "base/qinfo.h"
#include "tests/ui/capture.h"
#include "tests/ui/gltest.h"

namespace {

std::vector<std::string> trace;  // which stage saw the event, in order
int consumer = -1;               // the stage that consumes

bool Stage(int i, const char *name) {
  trace.push_back(name);
  return i == consumer;
}
bool Key0(QEvent *) { return Stage(0, "key0"); }
bool Key1(QEvent *) { return Stage(1, "key1"); }
bool EventProc(QEvent *) { return Stage(3, "proc"); }
class TraceSink : public QEventSink {
 public:
  bool ProcessEvent(QEvent *) override { return Stage(2, "wm"); }
};
class TraceShell : public QFocusShell {
 public:
  bool ProcessEvent(QEvent *) override { return Stage(4, "shell"); }
};

std::vector<int> calls;
template <int N>
void Rec() {
  calls.push_back(N);
}

class QAppTest : public ::testing::Test {
 protected:
  void SetUp() override {
    trace.clear();
    calls.clear();
    consumer = -1;
    qpsClear();
    a = new QApp(0, nullptr, "apptest");
  }
  void TearDown() override {
    delete a;
    qpsClear();
  }
  // Feeds one event and returns the combined key code QApp computed.
  int Feed(int type, int n, int x = 0, int y = 0) {
    QEvent e;
    e.type = type;
    e.n = n;
    e.x = x;
    e.y = y;
    qpsPushEvent(e);
    a->Run1();
    return a->GetCurrentEvent()->xn;
  }
  QApp *a = nullptr;
};

TEST_F(QAppTest, Run1DispatchOrder) {
  a->SetIdleProc(Rec<0>);
  EXPECT_EQ(a->Run1(), 2);  // no event: idle once
  EXPECT_EQ(calls, std::vector<int>{0});
  const struct {
    int type, consumer;
    std::vector<std::string> expect;
    int result;
  } rows[] = {
      {QEVENT_KEYPRESS, -1, {"key0", "key1", "wm", "proc", "shell"}, 1},
      {QEVENT_KEYRELEASE, -1, {"key0", "key1", "wm", "proc", "shell"}, 1},
      {QEVENT_KEYPRESS, 0, {"key0"}, 0},
      {QEVENT_KEYPRESS, 1, {"key0", "key1"}, 0},
      {QEVENT_KEYPRESS, 2, {"key0", "key1", "wm"}, 0},
      {QEVENT_KEYPRESS, 3, {"key0", "key1", "wm", "proc"}, 0},
      {QEVENT_KEYPRESS, 4, {"key0", "key1", "wm", "proc", "shell"}, 0},
      {QEVENT_BUTTONPRESS, -1, {"wm", "proc", "shell"}, 1},  // keyboard handlers see key events only
      {QEVENT_MOTIONNOTIFY, 3, {"wm", "proc"}, 0},
      {QEVENT_CHAR, -1, {"wm", "proc", "shell"}, 1},
  };
  a->AddKeyboardHandler(Key0);
  a->AddKeyboardHandler(Key1);
  a->SetWindowManager(new TraceSink());
  a->SetEventProc(EventProc);
  a->SetFocusShell(new TraceShell());
  for (const auto &r : rows) {
    trace.clear();
    consumer = r.consumer;
    QEvent e;
    e.type = r.type;
    e.n = 'A';
    qpsPushEvent(e);
    EXPECT_EQ(a->Run1(), r.result) << r.type << "/" << r.consumer;
    EXPECT_EQ(trace, r.expect) << r.type << "/" << r.consumer;
  }
}

TEST_F(QAppTest, TableLimitsAndTheirReports) {
  ReportCapture rc;
  using Handler = bool (*)(QEvent *);
  static const Handler handlers[6] = {
      [](QEvent *) { return false; }, [](QEvent *) { return false; }, [](QEvent *) { return false; },
      [](QEvent *) { return false; }, [](QEvent *) { return false; }, [](QEvent *) { return false; }};
  for (int i = 0; i < 5; i++) EXPECT_TRUE(a->AddKeyboardHandler(handlers[i])) << i;
  EXPECT_FALSE(a->AddKeyboardHandler(handlers[5]));
  EXPECT_FALSE(a->RemoveKeyboardHandler(handlers[5]));
  EXPECT_TRUE(a->RemoveKeyboardHandler(handlers[2]));  // frees its slot for the refused one
  EXPECT_TRUE(a->AddKeyboardHandler(handlers[5]));
  EXPECT_FALSE(a->AddCrashProc(nullptr));
  for (int i = 0; i < 10; i++) EXPECT_TRUE(a->AddCrashProc(i == 3 ? Rec<3> : Rec<0>));
  EXPECT_FALSE(a->AddCrashProc(Rec<9>));
  a->RunCrashProcs();
  ASSERT_EQ(calls.size(), 10u);
  EXPECT_EQ(calls[3], 3);
  EXPECT_EQ(a->AddTimer(10, Rec<0>), 0);
  EXPECT_EQ(a->GetEventFD(), 0);
  EXPECT_EQ(a->GetVTraceCount(), 0);
  QInfo *first = reinterpret_cast<QInfo *>(0x10), *second = reinterpret_cast<QInfo *>(0x20);
  a->SetInfo(first);
  a->SetInfo(second);
  EXPECT_EQ(a->GetInfo(), first);
  char removeMsg[128];
  snprintf(removeMsg, sizeof(removeMsg), "QApp::RemoveKeyboardHandler(); can't find handler (%p)\n",
           reinterpret_cast<void *>(handlers[5]));
  EXPECT_EQ(rc.warnings, std::vector<std::string>{"QApp::AddKeyboardHandler(); out of handlers\n"});
  EXPECT_EQ(rc.errors, (std::vector<std::string>{removeMsg, "QApp:AddCrashProc(); func=0\n",
                                                 "QApp::AddCrashProc(); out of space\n",
                                                 "QApp:AddTimer() not supported on Win32/Linux\n",
                                                 "QApp:GetEventFD() not supported on this platform.\n",
                                                 "QApp:GetVTraceCount() no longer supported\n",
                                                 "QApp::SetInfo(); info is already open; call CloseInfo() first\n"}));
}

TEST_F(QAppTest, CleanupTableRunsInOrderAfterTheExitProcAndRefusesThe101st) {
  ReportCapture rc;
  for (int i = 0; i < 100; i++) EXPECT_TRUE(a->AddCleanupProc(i % 2 ? Rec<1> : Rec<0>));
  EXPECT_FALSE(a->AddCleanupProc(Rec<7>));
  ASSERT_EQ(rc.errors, std::vector<std::string>{"QApp::AddCleanupProc(); out of space - memory leaks WILL occur!\n"});
  a->SetExitProc(Rec<-1>);
  a->SetState(QApp::STATE_EXIT_RETURNS);
  a->Exit(0);  // returns: the bit asks for it
  ASSERT_EQ(calls.size(), 101u);
  EXPECT_EQ(calls[0], -1);
  for (int i = 0; i < 100; i++) EXPECT_EQ(calls[size_t(i) + 1], i % 2) << i;
  EXPECT_EQ(a->GetState() & QApp::STATE_EXIT_RETURNS, 0u);  // consumed
  ASSERT_EQ(rc.debug.size(), 200u);
  EXPECT_EQ(rc.debug[0], "QApp: calling cleanup proc 0...\n");
  EXPECT_EQ(rc.debug[199], "  cleanup 99 returned.\n");
}

TEST_F(QAppTest, ScreenshotsGetNumberedFilesInTheTemporaryFolder) {
  std::filesystem::path dir = std::filesystem::temp_directory_path() / ("tyro_shots_" + std::to_string(getpid()));
  std::filesystem::remove_all(dir);
  std::filesystem::create_directories(dir);
  setenv("TMPDIR", dir.c_str(), 1);
  setenv("LP_NUM_THREADS", "0", 0);
  GLTEST_LSAN_DISABLE();  // see gltest.h
  QPWindow *pw = qpCreateWindow("shot", 0, 0, 64, 48, 0);
  ASSERT_NE(pw, nullptr) << qpLastError();
  ReportCapture rc;
  Feed(QEVENT_KEYPRESS, QK_F11);  // no back-buffer canvas: nothing written
  Feed(QEVENT_KEYPRESS, QK_CTRL);
  Feed(QEVENT_KEYPRESS, QK_ALT);
  EXPECT_EQ(Feed(QEVENT_KEYPRESS, QK_F11), 0xC007A);  // no main window yet: nothing
  a->SetMainWindow(nullptr, pw);
  Feed(QEVENT_KEYPRESS, QK_F11);
  Feed(QEVENT_KEYPRESS, QK_F11);
  EXPECT_EQ(rc.debug, (std::vector<std::string>{
                          "> No BC present.\n", "> No UI present.\n",
                          "> Saving screenshot of UI in '" + (dir / "ui00001.tga").string() + "'\n",
                          "> Saving screenshot of UI in '" + (dir / "ui00002.tga").string() + "'\n"}));
  Feed(QEVENT_KEYRELEASE, QK_CTRL);
  Feed(QEVENT_KEYRELEASE, QK_ALT);
  QCanvas bc;  // plain F11 saves it under the first free number
  bc.SetTargetSize(64, 48);
  a->SetBC(&bc);
  fclose(fopen((dir / "bc00001.tga").c_str(), "wb"));
  Feed(QEVENT_KEYPRESS, QK_F11);
  EXPECT_EQ(std::filesystem::file_size(dir / "bc00002.tga"), 18u + 64u * 48u * 3u);
  qpDestroyWindow(pw);
  GLTEST_LSAN_ENABLE();
  unsetenv("TMPDIR");
  std::filesystem::remove_all(dir);
}

}  // namespace
