#pragma once

#include "tests/support/Sandbox.h"

#include <gtest/gtest.h>

namespace korvane::testing {

/// For tests that make single system calls of a program fail, or kill it at them. Skipped where
/// that cannot be done.
class FaultInjectionTest : public ::testing::Test {
  protected:
    void SetUp() override {
#ifdef KORVANE_SANITIZED
        GTEST_SKIP() << "the sanitizers' own system calls would be made to fail";
#endif
        if (runProgram({"strace", "-o", "/dev/null", "-e", "inject=getppid:error=EIO", "true"}) !=
            0) {
            GTEST_SKIP() << "strace is missing or may not trace";
        }
    }
};

} // namespace korvane::testing
