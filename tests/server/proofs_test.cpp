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
    const bool taken =
        proofs.ask({"ann", "a@example.org", password, from}, registered ? &ann : nullptr,
                   [this, from](Proofs::Outcome outcome, const std::string&) {
                     told.push_back(from + (outcome == Proofs::Outcome::right     ? " right"
                                            : outcome == Proofs::Outcome::tooMany ? " not looked at"
                                                                                  : ""));
                   });
    expected += taken ? 1 : 0;
    return taken;
  }
  /// Until all that were asked are told.
  void run() {
    const auto until = Clock::now() + std::chrono::seconds(20);
    while (told.size() < expected && Clock::now() < until) io.run_one_until(until);
    ASSERT_EQ(told.size(), expected);
  }
  void wrongFrom(const std::string& from) {
    ASSERT_TRUE(ask(from, "wrong"));
    run();
  }
  void rightFrom(const std::string& from) {
    EXPECT_TRUE(ask(from, "right"));
    run();
    EXPECT_EQ(told.back(), from + " right");
  }

  Settings settings;
  asio::io_context io;
  asio::executor_work_guard<asio::io_context::executor_type> work{io.get_executor()};
  Moderator ann{"ann", "a@example.org", hashPassword("right")};
  std::vector<std::string> told;
  std::size_t expected = 0;
  Proofs proofs{io, settings};
};

TEST_F(ProofsTest, AnAddressHasItsTries) {
  settings.proofsPerAddress = 2;
  wrongFrom("10.0.0.1");
  wrongFrom("10.0.0.1");
  EXPECT_FALSE(ask("10.0.0.1", "right"));
  rightFrom("10.0.0.2");
  proofs.sweep(Clock::now() + std::chrono::minutes(9));
  EXPECT_FALSE(ask("10.0.0.1", "right"));
  proofs.sweep(Clock::now() + std::chrono::minutes(10));
  rightFrom("10.0.0.1");
}

// Guessing on doesn't make what came before count for longer.
TEST(WrongProofs, EachIsForgottenTenMinutesAfterItCame) {
  WrongProofs wrong;
  const Clock::time_point start = Clock::now();
  wrong.add("10.0.0.1", "ANN", start);
  wrong.add("10.0.0.1", "", start + std::chrono::minutes(9));
  EXPECT_EQ(wrong.from("10.0.0.1"), 2);
  wrong.forget(start + std::chrono::minutes(10));
  EXPECT_EQ(wrong.from("10.0.0.1"), 1);
  EXPECT_EQ(wrong.of("ANN"), 0);
  EXPECT_FALSE(wrong.has("10.0.0.1", "ANN"));
}

TEST_F(ProofsTest, AGuessedAccountStillLooksAtNewAddresses) {
  settings.proofsPerAccount = 2;
  wrongFrom("10.0.0.1");
  wrongFrom("10.0.0.2");
  EXPECT_FALSE(ask("10.0.0.1", "wrong"));
  rightFrom("10.0.0.3");
  EXPECT_TRUE(ask("10.0.0.4", "wrong"));
  EXPECT_TRUE(ask("10.0.0.4", "right"));
  run();
  EXPECT_EQ(told.back(), "10.0.0.4 not looked at") << "one try, though two came at once";
  proofs.sweep(Clock::now() + std::chrono::minutes(9));
  EXPECT_FALSE(ask("10.0.0.1", "right"));
  proofs.sweep(Clock::now() + std::chrono::minutes(10));
  rightFrom("10.0.0.1");
}

TEST_F(ProofsTest, WhoHasGuessedWaitsBehindWhoHasNot) {
  wrongFrom("10.0.0.1");
  wrongFrom("10.0.0.2");
  for (const char* from : {"10.0.0.1", "10.0.0.1"}) EXPECT_TRUE(ask(from, "wrong"));
  EXPECT_TRUE(ask("10.0.0.3", "right"));
  for (const char* from : {"10.0.0.2", "10.0.0.1"}) EXPECT_TRUE(ask(from, "wrong"));
  EXPECT_FALSE(ask("10.0.0.1", "wrong")) << "two wait already";
  run();
  EXPECT_EQ(told[2], "10.0.0.1") << "at work already";
  EXPECT_EQ(told[3], "10.0.0.3 right");
}

// Neither the nickname nor the e-mail address can be told by the time of the answer.
TEST_F(ProofsTest, NobodyTakesAsLongAsSomebody) {
  const auto timeOf = [&](bool registered) {
    const auto start = Clock::now();
    EXPECT_TRUE(ask("127.0.0.1", "wrong", registered));
    run();
    return Clock::now() - start;
  };
  timeOf(true);
  EXPECT_GT(timeOf(false) * 3, timeOf(true));
}

}  // namespace
}  // namespace kelvaron::server
