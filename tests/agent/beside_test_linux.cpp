#include <gtest/gtest.h>
#include <poll.h>

#include <future>
#include <memory>
#include <optional>
#include <string>

#include "tools/tavlynd/beside.h"

namespace tavlyn::agent {
namespace {

constexpr int kForEver = -1;

bool HasEnded(const Beside& beside, int milliseconds) {
  pollfd polled{beside.Number(), POLLIN, 0};
  return poll(&polled, 1, milliseconds) == 1;
}

TEST(AgentBeside, ItsOwnerIsToldWhenItHasEnded) {
  std::promise<void> answer;
  Beside beside([waits = answer.get_future().share()] {
    waits.wait();
    return std::string("no such name");
  });
  EXPECT_FALSE(HasEnded(beside, 0));
  EXPECT_EQ(beside.Outcome(), std::nullopt);
  answer.set_value();
  EXPECT_TRUE(HasEnded(beside, kForEver));
  EXPECT_EQ(beside.Outcome(), "no such name");
}

// An agent that ends does not wait for a name server.
TEST(AgentBeside, ItMayOutliveItsOwner) {
  std::promise<void> answer;
  const auto used = std::make_shared<std::string>("what the call uses");
  std::promise<std::string> seen;
  auto whatItSaw = seen.get_future();
  {
    const Beside beside([waits = answer.get_future().share(), used,
                         seen = std::make_shared<std::promise<std::string>>(std::move(seen))] {
      waits.wait();
      seen->set_value(*used);
      return std::string();
    });
  }
  answer.set_value();
  EXPECT_EQ(whatItSaw.get(), "what the call uses");
}

}  // namespace
}  // namespace tavlyn::agent
