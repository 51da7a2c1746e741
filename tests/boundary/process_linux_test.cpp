// The editor of tavlynctl's process, and the signals of the program around it.
#include <gtest/gtest.h>

#include <csignal>

#include "tools/tavlynctl/process.h"

namespace tavlyn::boundary {
namespace {

// A handler that runs only once raises its signal again: it must not come back as one that stays.
TEST(TavlynctlProcess, AnEditorLeavesHandlersAsTheyWere) {
  struct sigaction before {};
  struct sigaction once {};
  once.sa_handler = [](int) {};
  once.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER);
  for (const int signal : {SIGINT, SIGQUIT}) {
    sigaction(signal, &once, &before);
    EXPECT_TRUE(ctl::RunEditor("true", "file"));
    struct sigaction after {};
    sigaction(signal, &before, &after);
    EXPECT_EQ(after.sa_handler, once.sa_handler);
    EXPECT_EQ(after.sa_flags & once.sa_flags, once.sa_flags);
  }
}

TEST(TavlynctlProcess, AnEditorMayFail) {
  EXPECT_FALSE(ctl::RunEditor("false", "file"));
  EXPECT_FALSE(ctl::RunEditor("kill -TERM $$;", "file"));
}

}  // namespace
}  // namespace tavlyn::boundary
