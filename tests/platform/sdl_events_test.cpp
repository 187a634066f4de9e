// The SDL backend's translation of window-system events into QEvent
// records, fed through SDL's own event queue on the offscreen driver.
#include <SDL2/SDL.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
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
  // Everything pending, translated.
  std::vector<QEvent> Drain() {
    std::vector<QEvent> out;
    QEvent e;
    while (qpNextEvent(&e)) out.push_back(e);
    return out;
  }
  void PushKey(Uint32 type, SDL_Keycode sym) {
    SDL_Event ev = {};
    ev.type = type;
    ev.key.keysym.sym = sym;
    SDL_PushEvent(&ev);
  }
  QPWindow *win = nullptr;
};

TEST_F(SdlEvents, KeyCodes) {
  struct Row {
    SDL_Keycode sym;
    int code;
  };
  const Row rows[] = {
      {SDLK_a, 'A'},         {SDLK_z, 'Z'},          {SDLK_0, '0'},         {SDLK_9, '9'},
      {SDLK_LSHIFT, 16},     {SDLK_RSHIFT, 16},      {SDLK_LCTRL, 17},      {SDLK_RCTRL, 17},
      {SDLK_LALT, 18},       {SDLK_RETURN, 13},      {SDLK_KP_ENTER, 13},   {SDLK_ESCAPE, 27},
      {SDLK_F1, 112},        {SDLK_F11, 122},        {SDLK_F12, 123},       {SDLK_BACKSPACE, 8},
      {SDLK_TAB, 9},         {SDLK_SPACE, 32},       {SDLK_LEFT, QK_LEFT},  {SDLK_DOWN, QK_DOWN},
      {SDLK_DELETE, QK_DELETE}, {SDLK_HOME, QK_HOME}, {SDLK_MINUS, '-'},
  };
  for (const Row &r : rows) {
    PushKey(SDL_KEYDOWN, r.sym);
    PushKey(SDL_KEYUP, r.sym);
    std::vector<QEvent> ev = Drain();
    ASSERT_EQ(ev.size(), 2u) << r.sym;
    EXPECT_EQ(ev[0].type, QEVENT_KEYPRESS);
    EXPECT_EQ(ev[0].n, r.code) << r.sym;
    EXPECT_EQ(ev[1].type, QEVENT_KEYRELEASE);
    EXPECT_EQ(ev[1].n, r.code) << r.sym;
  }
}

TEST_F(SdlEvents, UnknownKeysAreDropped) {
  PushKey(SDL_KEYDOWN, SDLK_CAPSLOCK);
  EXPECT_TRUE(Drain().empty());
}

TEST_F(SdlEvents, TextInputBecomesLatin1Characters) {
  SDL_Event ev = {};
  ev.type = SDL_TEXTINPUT;
  strcpy(ev.text.text, "a\xC3\xA9\xE2\x82\xAC!");  // a, e-acute, euro sign (dropped), !
  SDL_PushEvent(&ev);
  std::vector<QEvent> got = Drain();
  ASSERT_EQ(got.size(), 3u);
  EXPECT_EQ(got[0].type, QEVENT_CHAR);
  EXPECT_EQ(got[0].n, 'a');
  EXPECT_EQ(got[1].n, 0xE9);
  EXPECT_EQ(got[2].n, '!');
}

TEST_F(SdlEvents, MouseButtonsMotionAndWheel) {
  SDL_Event ev = {};
  ev.type = SDL_MOUSEMOTION;
  ev.motion.x = 12;
  ev.motion.y = 34;
  SDL_PushEvent(&ev);
  ev = {};
  ev.type = SDL_MOUSEBUTTONDOWN;
  ev.button.button = SDL_BUTTON_RIGHT;
  ev.button.x = 13;
  ev.button.y = 35;
  SDL_PushEvent(&ev);
  ev = {};
  ev.type = SDL_MOUSEWHEEL;
  ev.wheel.y = -1;
  SDL_PushEvent(&ev);
  std::vector<QEvent> got = Drain();
  ASSERT_EQ(got.size(), 4u);
  EXPECT_EQ(got[0].type, QEVENT_MOTIONNOTIFY);
  EXPECT_EQ(got[0].x, 12);
  EXPECT_EQ(got[0].y, 34);
  EXPECT_EQ(got[1].type, QEVENT_BUTTONPRESS);
  EXPECT_EQ(got[1].n, QMB_RIGHT);
  EXPECT_EQ(got[1].x, 13);
  EXPECT_EQ(got[2].type, QEVENT_BUTTONPRESS);  // a wheel step is a press and a release
  EXPECT_EQ(got[2].n, QMB_WHEELDOWN);
  EXPECT_EQ(got[3].type, QEVENT_BUTTONRELEASE);
  EXPECT_EQ(got[3].n, QMB_WHEELDOWN);
}

TEST_F(SdlEvents, WindowEvents) {
  struct Row {
    Uint8 sdl;
    int type;
  };
  const Row rows[] = {{SDL_WINDOWEVENT_ENTER, QEVENT_ENTER},
                      {SDL_WINDOWEVENT_LEAVE, QEVENT_LEAVE},
                      {SDL_WINDOWEVENT_FOCUS_LOST, QEVENT_RESETMODIFIERS},
                      {SDL_WINDOWEVENT_CLOSE, QEVENT_CLOSE}};
  for (const Row &r : rows) {
    SDL_Event ev = {};
    ev.type = SDL_WINDOWEVENT;
    ev.window.event = r.sdl;
    SDL_PushEvent(&ev);
    std::vector<QEvent> got = Drain();
    ASSERT_EQ(got.size(), 1u) << int(r.sdl);
    EXPECT_EQ(got[0].type, r.type);
  }
  SDL_Event quit = {};
  quit.type = SDL_QUIT;
  SDL_PushEvent(&quit);
  std::vector<QEvent> got = Drain();
  ASSERT_EQ(got.size(), 1u);
  EXPECT_EQ(got[0].type, QEVENT_CLOSE);
  EXPECT_EQ(got[0].pwin, win);  // the main window asks to close
}

TEST_F(SdlEvents, WindowBasics) {
  int w = 0, h = 0;
  qpGetWindowSize(win, &w, &h);
  EXPECT_EQ(w, 100);
  EXPECT_EQ(h, 80);
  EXPECT_EQ(qpGetMainWindow(), win);
  EXPECT_TRUE(qpShowWindow(win, false));
  EXPECT_FALSE(qpIsWindowShown(win));
  EXPECT_NE(qpGetCurrentContext(), nullptr);
  uint64_t t0 = qpTimeMs();
  qpSleep(5);
  EXPECT_GE(qpTimeMs() - t0, 4u);
  EXPECT_GT(qpProcessId(), 0);
}

}  // namespace
