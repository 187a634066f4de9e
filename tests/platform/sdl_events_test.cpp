// The SDL backend's translation of window-system events into QEvent
// records, fed through SDL's own event queue on the offscreen driver.
#include <SDL2/SDL.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

#include "tests/ui/gltest.h"
#include "ui/qplatform.h"

namespace {

class SdlEvents : public ::testing::Test {
 protected:
  void SetUp() override {
    setenv("SDL_VIDEODRIVER", "offscreen", 1);
    setenv("LP_NUM_THREADS", "0", 0);
    GLTEST_LSAN_DISABLE();  // the GL driver's own allocations; see gltest.h
    ASSERT_TRUE(qpOpenDisplay()) << qpLastError();
    win = qpCreateWindow("events", 0, 0, 100, 80, 0);
    ASSERT_NE(win, nullptr) << qpLastError();
    Drain();
  }
  void TearDown() override {
    qpDestroyWindow(win);
    qpCloseDisplay();
    GLTEST_LSAN_ENABLE();
  }
  std::vector<QEvent> Drain(SDL_Event *ev = nullptr) {
    if (ev) SDL_PushEvent(ev);
    std::vector<QEvent> out;
    QEvent e;
    while (qpNextEvent(&e)) out.push_back(e);
    return out;
  }
  QPWindow *win = nullptr;
};

TEST_F(SdlEvents, KeyCodes) {
  const int rows[][2] = {{SDLK_a, 'A'},          {SDLK_9, '9'},          {SDLK_RSHIFT, 16},        {SDLK_LCTRL, 17},
                         {SDLK_LALT, 18},        {SDLK_KP_ENTER, 13},    {SDLK_ESCAPE, 27},        {SDLK_F1, 112},
                         {SDLK_F12, 123},        {SDLK_BACKSPACE, 8},    {SDLK_TAB, 9},            {SDLK_SPACE, 32},
                         {SDLK_LEFT, QK_LEFT},   {SDLK_DELETE, QK_DELETE}, {SDLK_MINUS, '-'},      {SDLK_CAPSLOCK, 0}};
  for (const auto &r : rows) {
    for (Uint32 type : {SDL_KEYDOWN, SDL_KEYUP}) {
      SDL_Event ev = {};
      ev.type = type;
      ev.key.keysym.sym = r[0];
      SDL_PushEvent(&ev);
    }
    std::vector<QEvent> ev = Drain();
    ASSERT_EQ(ev.size(), r[1] ? 2u : 0u) << r[0];  // unknown keys are dropped
    for (size_t i = 0; i < ev.size(); i++)
      EXPECT_EQ(ev[i].type * 1000 + ev[i].n, (i ? QEVENT_KEYRELEASE : QEVENT_KEYPRESS) * 1000 + r[1]) << r[0];
  }
}

TEST_F(SdlEvents, WindowEventsAndQuit) {
  const int rows[][2] = {{SDL_WINDOWEVENT_ENTER, QEVENT_ENTER},
                         {SDL_WINDOWEVENT_LEAVE, QEVENT_LEAVE},
                         {SDL_WINDOWEVENT_FOCUS_LOST, QEVENT_RESETMODIFIERS},
                         {SDL_WINDOWEVENT_CLOSE, QEVENT_CLOSE},
                         {-1, QEVENT_CLOSE}};  // -1: SDL_QUIT
  for (const auto &r : rows) {
    SDL_Event ev = {};
    ev.type = r[0] < 0 ? SDL_QUIT : SDL_WINDOWEVENT;
    ev.window.event = Uint8(r[0]);
    std::vector<QEvent> got = Drain(&ev);
    ASSERT_EQ(got.size(), 1u) << r[0];
    EXPECT_EQ(got[0].type, r[1]);
    EXPECT_TRUE(r[0] >= 0 || got[0].pwin == win);  // the main window asks to close
  }
}

}  // namespace
