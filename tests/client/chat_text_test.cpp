// What the room reads in texts of the code page: words to find, mentions, beginnings to complete.
#include <gtest/gtest.h>

#include <random>
#include <tuple>

#include "chat/completion.h"
#include "chat/find.h"
#include "chat/mentions.h"

namespace kelvaron::testing {
namespace {

TEST(Find, FindsInAnyCaseBothWaysAndGoesRound) {
  StyledText text;
  text.insert("Coop game\nno\n\xC9t\xE9 coop COOP\naaaa");
  using Place = std::optional<TextPosition>;
  using Case = std::tuple<std::string, TextPosition, Place, Place>;
  for (const auto& [wanted, from, forward, backward] :
       {Case{"coop", {0, 0}, {{0, 0}}, {{2, 9}}}, Case{"coop", {0, 1}, {{2, 4}}, {{0, 0}}},
        Case{"CoOp", {2, 5}, {{2, 9}}, {{2, 4}}}, Case{"coop", {2, 10}, {{0, 0}}, {{2, 9}}},
        Case{"\xE9T\xC9", {0, 0}, {{2, 0}}, {{2, 0}}}, Case{"aa", {3, 1}, {{3, 1}}, {{3, 0}}},
        Case{"a", {3, 4}, {{0, 6}}, {{3, 3}}}, Case{"game", {0, 99}, {{0, 5}}, {{0, 5}}},
        Case{"gamen", {0, 0}, {}, {}}, Case{"", {0, 0}, {}, {}},
        Case{"Coop game and more", {0, 0}, {}, {}}}) {
    EXPECT_EQ(findForward(text, wanted, from), forward) << wanted;
    EXPECT_EQ(findBackward(text, wanted, from), backward) << wanted;
  }
}

TEST(Find, AgreesWithThePlainSearch) {
  std::mt19937 random(3);
  const auto word = [&random](std::size_t length) {
    std::string result;
    while (result.size() < length) result += "abc"[random() % 3];
    return result;
  };
  for (int i = 0; i < 3'000; ++i) {
    const std::string line = word(random() % 40);
    const std::string wanted = word(1 + random() % 5);
    const std::size_t from = random() % 41;
    ASSERT_EQ(findCaseless(line, wanted, from), line.find(wanted, from))
        << line << ' ' << wanted << ' ' << from;
  }
}

TEST(Mentions, LinesForTheUser) {
  using Case = std::tuple<const char*, const char*, bool>;
  for (const auto& [line, nick, forUser] :
       {Case{"ann: hi BOB, ready?", "bob", true}, Case{"ann: bob", "bob", true},
        Case{"ann: bobby, kabob and bob_, bob", "bob", true}, Case{"ann: hi", "", false},
        Case{"Private Message From ann: psst", "bob", true}, Case{"Private Message", "bob", false},
        Case{"bob: hi, bob here", "bob", false}, Case{"ann: bobby and kabob", "bob", false},
        Case{"[Server] bob has entered Kelvaron", "bob", false},
        Case{"ann: \xC9T\xC9!", "\xE9t\xE9", true},
        Case{"ann: \xE9t\xE9\xE9", "\xE9t\xE9", false}}) {
    EXPECT_EQ(isForUser(line, nick), forUser) << line;
  }
  const std::string far(5000, ' ');
  EXPECT_FALSE(isForUser("ann:" + far + "bob", "bob"));
}

TEST(Completion, Lines) {
  const std::vector<std::string_view> nicks = {"ann", "Anna", "bob", "\xC9va"};
  const std::vector<std::string_view> commands = {"/KISSME", "/KISS", "/PING"};
  // The caret stands at the bar.
  using Case = std::pair<std::string, std::vector<const char*>>;
  for (const auto& [before, after] :
       {Case{"an|", {"ann: |", "Anna: |", "ann: |"}}, Case{"B|", {"bob: |"}},
        Case{"hi an| there", {"hi ann | there", "hi Anna | there"}}, Case{"hi |", {nullptr}},
        Case{"/ki|", {"/KISSME |", "/KISS |", "/KISSME |"}}, Case{"hi /ki|", {nullptr}},
        Case{"/ping an|", {"/ping ann|", "/ping Anna|"}}, Case{"\xE9|", {"\xC9va: |"}},
        Case{"|an", {nullptr}}, Case{"zed|", {nullptr}}}) {
    Completion completion;
    const std::size_t bar = before.find('|');
    Completion::Line line{std::string(before).erase(bar, 1), bar};
    for (const char* wanted : after) {
      const auto next = completion.next(line, nicks, commands);
      ASSERT_EQ(next.has_value(), wanted != nullptr) << before;
      if (!next) break;
      line = *next;
      EXPECT_EQ(std::string(line.text).insert(line.caret, 1, '|'), wanted);
    }
  }
  // A name that was typed on from is a beginning again.
  Completion completion;
  const auto first = completion.next({"an", 2}, nicks, commands);
  EXPECT_EQ(completion.next({first->text + "b", first->caret + 1}, nicks, commands)->text,
            "ann: bob ");
}

}  // namespace
}  // namespace kelvaron::testing
