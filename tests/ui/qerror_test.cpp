// OpenGL error helpers on a real (offscreen) context.
#include <gtest/gtest.h>

#include "tests/ui/gltest.h"
#include "ui/qerror.h"

namespace {

TEST(QGLNames, CallbackNameTables) {
  const char *sources[] = {"Window System", "Shader Compiler", "Third Party", "Application", "Other"};
  const char *types[] = {"Error", "Deprecated Behavior", "Undefined Behavior", "Portability", "Performance"};
  for (unsigned i = 0; i < 5; i++) {
    EXPECT_STREQ(QGLSourceName(0x8247 + i), sources[i]);
    EXPECT_STREQ(QGLTypeName(0x824C + i), types[i]);
  }
  EXPECT_STREQ(QGLSourceName(0x824C), "Unknown");
  EXPECT_STREQ(QGLTypeName(0x824B), "Other");
  EXPECT_STREQ(QGLSeverityName(0x9146), "High");
  EXPECT_STREQ(QGLSeverityName(0x9147), "Medium");
  EXPECT_STREQ(QGLSeverityName(0x826B), "Notification");
}

using QGLErrors = GLTest;

TEST_F(QGLErrors, ShowGLErrorsReportsAndClearsPendingErrorsAndTheCallbackCatchesThem) {
  while (glGetError() != GL_NO_ERROR) {
  }
  EXPECT_EQ(QShowGLErrors("clean"), 0);
  glEnable(0xFFFF);  // GL_INVALID_ENUM
  EXPECT_EQ(QShowGLErrors("bad enum"), 1);
  EXPECT_EQ(QShowGLErrors("again"), 0);
  EXPECT_TRUE(QCatchGLErrors());  // llvmpipe offers the debug output extension
  glEnable(0xFFFF);
  QShowGLErrors("after callback");
  QGLErrorCallback(0x824A, 0x824C, 131218, 0x9146, 0, "ignored", nullptr);  // reports, never crashes
  QGLState::DbgPrint("test");  // the state dump leaves no error behind
  EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

}  // namespace
