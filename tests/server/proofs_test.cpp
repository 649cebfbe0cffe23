// Which proofs are looked at, and in which order.
#include "server/proofs.h"

#include <gtest/gtest.h>

#include <asio/executor_work_guard.hpp>

#include "server/password.h"

namespace kelvaron::server {
namespace {

class ProofsTest : public ::testing::Test {
 protected:
  /// Asks from an address; the outcome goes to `told` with the address in front.
  bool ask(const std::string& from, const std::string& password, bool registered = true) {
    return proofs.ask({"ann", "a@example.org", password, from, sources.of(from)},
                      registered ? &ann : nullptr,
                      [this, from](Proofs::Outcome outcome, const std::string&) {
                        told.push_back(from + (outcome == Proofs::Outcome::right ? " right" : ""));
                      });
  }
  /// Until all that were asked are told.
  void run() {
    const auto until = Clock::now() + std::chrono::seconds(20);
    while (told.size() < expected && Clock::now() < until) io.run_one_until(until);
    ASSERT_EQ(told.size(), expected);
  }
  void wrongFrom(const std::string& from, int times) {
    for (int i = 0; i < times; ++i) {
      ++expected;
      ASSERT_TRUE(ask(from, "wrong"));
      run();
    }
  }

  Settings settings;
  asio::io_context io;
  asio::executor_work_guard<asio::io_context::executor_type> work{io.get_executor()};
  Sources sources{settings};
  Moderator ann{"ann", "a@example.org", hashPassword("right")};
  std::vector<std::string> told;
  std::size_t expected = 0;
  Proofs proofs{io, settings};
};

TEST_F(ProofsTest, AnAddressHasItsTries) {
  settings.proofsPerAddress = 2;
  wrongFrom("10.0.0.1", 2);
  EXPECT_FALSE(ask("10.0.0.1", "right"));
  ++expected;
  EXPECT_TRUE(ask("10.0.0.2", "right"));
  run();
  EXPECT_EQ(told.back(), "10.0.0.2 right");
}

TEST_F(ProofsTest, AGuessedAccountStillLooksAtNewAddresses) {
  settings.proofsPerAccount = 2;
  wrongFrom("10.0.0.1", 1);
  wrongFrom("10.0.0.2", 1);
  EXPECT_FALSE(ask("10.0.0.1", "wrong"));
  ++expected;
  EXPECT_TRUE(ask("10.0.0.3", "right"));
  run();
  EXPECT_EQ(told.back(), "10.0.0.3 right");
}

TEST_F(ProofsTest, WhoHasGuessedWaitsBehindWhoHasNot) {
  wrongFrom("10.0.0.1", 1);
  wrongFrom("10.0.0.2", 1);
  for (const char* from : {"10.0.0.1", "10.0.0.1", "10.0.0.2", "10.0.0.3"}) {
    EXPECT_TRUE(ask(from, from == std::string("10.0.0.3") ? "right" : "wrong"));
    ++expected;
  }
  ++expected;
  EXPECT_TRUE(ask("10.0.0.1", "wrong"));
  EXPECT_FALSE(ask("10.0.0.1", "wrong")) << "two wait already";
  run();
  EXPECT_EQ(told[2], "10.0.0.1") << "at work already";
  EXPECT_EQ(told[3], "10.0.0.3 right");
}

// Neither the nickname nor the e-mail address can be told by the time of the answer.
TEST_F(ProofsTest, NobodyTakesAsLongAsSomebody) {
  const auto timeOf = [&](bool registered) {
    const auto start = Clock::now();
    ++expected;
    EXPECT_TRUE(ask("127.0.0.1", "wrong", registered));
    run();
    return Clock::now() - start;
  };
  timeOf(true);
  EXPECT_GT(timeOf(false) * 3, timeOf(true));
}

}  // namespace
}  // namespace kelvaron::server
