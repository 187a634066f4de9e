#include <gtest/gtest.h>
#include "ui/diag/qdebug.h"
TEST(Diag, Smoke) { EXPECT_EQ(qGetLogMask(), 0x0Eu); }
