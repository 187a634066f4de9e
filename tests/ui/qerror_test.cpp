// OpenGL error helpers on a real (offscreen) context.
#include <gtest/gtest.h>

#include "tests/ui/gltest.h"
#include "ui/qerror.h"

namespace {

TEST(QGLNames, CallbackNameTables) {
  struct Row {
    unsigned value;
    const char *source, *type, *severity;
  };
  const Row rows[] = {
      {0x8247, "Window System", "Other", "Notification"}, {0x8248, "Shader Compiler", "Other", "Notification"},
      {0x8249, "Third Party", "Other", "Notification"},   {0x824A, "Application", "Other", "Notification"},
      {0x824B, "Other", "Other", "Notification"},         {0x824C, "Unknown", "Error", "Notification"},
      {0x824D, "Unknown", "Deprecated Behavior", "Notification"},
      {0x824E, "Unknown", "Undefined Behavior", "Notification"},
      {0x824F, "Unknown", "Portability", "Notification"}, {0x8250, "Unknown", "Performance", "Notification"},
      {0x9146, "Unknown", "Other", "High"},               {0x9147, "Unknown", "Other", "Medium"},
      {0x826B, "Unknown", "Other", "Notification"},
  };
  for (const Row &r : rows) {
    EXPECT_STREQ(QGLSourceName(r.value), r.source) << std::hex << r.value;
    EXPECT_STREQ(QGLTypeName(r.value), r.type) << std::hex << r.value;
    EXPECT_STREQ(QGLSeverityName(r.value), r.severity) << std::hex << r.value;
  }
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
  QGLErrorCallback(0x824A, 0x824C, 131218, 0x9146, 0, "ignored", nullptr);
  QGLState::DbgPrint("test");  // the state dump leaves no error behind
  EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

}  // namespace
