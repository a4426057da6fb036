// failStopTest.cpp - the fail-stop on impossible copies, and the guard that makes a test program
// notice it.
#include "base/failStop.h"

#include <unistd.h>

#include "exitGuard.h"
#include "libraryTest.h"

namespace {

using FailStopDeathTest = LibraryTest;

TEST_F(FailStopDeathTest, ImpossibleCopyIsLoggedAndEndsWithStatusZero) {
  EXPECT_EXIT(
      {
        exitAllowed = true;
        hostSetLogHandler(
            [](void*, const HostLogLine& line) {
              std::cerr << line.level << ' ' << line.moduleId << ' ' << line.sourceFile << ' '
                        << line.text;
            },
            nullptr);
        failStopCopy("source");
      },
      testing::ExitedWithCode(0),
      "^4 6052 source wyDplMemscpy - dst buffer size less than source size$");
}

TEST_F(FailStopDeathTest, GuardTurnsAnEndWithStatusZeroIntoAnAbort) {
  EXPECT_EXIT(_exit(0), testing::KilledBySignal(SIGABRT), "exit guard: .*_exit.0.");
}

}  // namespace
