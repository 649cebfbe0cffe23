#include "native/local_host.h"

#include <gtest/gtest.h>

#include <optional>

#include "native/endpoint.h"
#include "tests/support/poll_loop.h"

namespace kelvaron::testing {
namespace {

TEST(LocalHost, AnswersWithAnAddressOrNothing) {
  PollLoop loop;
  NativeLocalHost port(loop);
  std::optional<LocalHostAnswer> answer;
  std::unique_ptr<LocalHostLookUp> pending =
      port.localHostAddress([&](const LocalHostAnswer& told) {
        answer = told;
        pending.reset();
      });
  EXPECT_FALSE(answer);
  ASSERT_TRUE(loop.runUntil([&] { return answer.has_value(); }, std::chrono::seconds(30)));
  EXPECT_EQ(answer->nameError, 0);
  EXPECT_TRUE(answer->address.empty() || numericEndpoint(answer->address, 0)) << answer->address;
}

TEST(LocalHost, DestroyedIsToldNoMore) {
  PollLoop loop;
  NativeLocalHost port(loop);
  port.localHostAddress([](const LocalHostAnswer&) { FAIL(); }).reset();
  loop.runUntil([] { return false; }, std::chrono::milliseconds(100));
}

}  // namespace
}  // namespace kelvaron::testing
