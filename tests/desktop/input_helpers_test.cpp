// Completion and history of the room's line of input, and whom a line is for.
#include "desktop/controls/input_helpers.h"

#include <gtest/gtest.h>

#include "desktop/chat_view/chat_notes.h"

namespace kelvaron::testing {
namespace {

TEST(NickCompletion, Lines) {
  const QStringList nicks = {"ann", "Anna", "bob", "cy"};
  struct Case {
    const char* before;  // the caret stands at the bar
    std::vector<const char*> after;
  };
  for (const Case& each :
       {Case{"an|", {"ann: |", "Anna: |", "ann: |"}}, Case{"B|", {"bob: |"}},
        Case{"hi an| there", {"hi ann | there", "hi Anna | there"}}, Case{"hi |", {nullptr}},
        Case{"|an", {nullptr}}, Case{"zed|", {nullptr}}}) {
    NickCompletion completion;
    QString text = QString::fromLatin1(each.before);
    NickCompletion::Line line{text.remove('|'), QString::fromLatin1(each.before).indexOf('|')};
    for (const char* wanted : each.after) {
      const auto next = completion.next(line, nicks);
      ASSERT_EQ(next.has_value(), wanted != nullptr) << each.before;
      if (!next) break;
      line = *next;
      EXPECT_EQ(QString(line.text).insert(line.caret, '|'), QString::fromLatin1(wanted));
    }
  }
  // A name that was typed on from is a beginning again.
  NickCompletion completion;
  const auto first = completion.next({"an", 2}, nicks);
  EXPECT_EQ(completion.next({first->text + "cy", first->caret + 2}, nicks)->text, "ann: cy ");
}

TEST(LineHistory, UpAndDown) {
  LineHistory history;
  EXPECT_FALSE(history.older("begun"));
  for (const char* sent : {"one", "two", "two", "three"}) history.add(sent);
  EXPECT_EQ(history.older("begun"), "three");
  EXPECT_EQ(history.older("three"), "two");
  EXPECT_EQ(history.older("two"), "one");
  EXPECT_FALSE(history.older("one"));
  EXPECT_EQ(history.newer(), "two");
  EXPECT_EQ(history.newer(), "three");
  EXPECT_EQ(history.newer(), "begun");
  EXPECT_FALSE(history.newer());
  for (int i = 0; i < 200; ++i) history.add(QString::number(i));
  int kept = 0;
  while (history.older("")) ++kept;
  EXPECT_EQ(kept, LineHistory::kMost);
}

TEST(ChatNotes, FollowTheirLines) {
  StyledText text;
  ChatNotes notes(text);
  text.onChange = [&](const StyledText::Change& change) { notes.changed(change); };
  notes.makeTest = [] {
    return [](std::string_view line) { return line.find("bob") != std::string_view::npos; };
  };
  text.insert("hi\r\nbob?\r\nopen bob");
  EXPECT_TRUE(notes.settle(3605));
  EXPECT_TRUE(notes.isMarked(1));
  EXPECT_FALSE(notes.isMarked(2)) << "not whole yet";
  notes.stopReading();
  text.insert("\r\n");
  EXPECT_TRUE(notes.settle(3700));
  EXPECT_EQ(notes.cameAt(1), 3600);
  EXPECT_EQ(notes.cameAt(2), 3660);
  EXPECT_FALSE(notes.cameAt(3));
  // Where the user clicked, a line is inserted above.
  text.setCaret({0, 2});
  text.insert("\r\nmore");
  EXPECT_FALSE(notes.settle(9000));
  EXPECT_TRUE(notes.isMarked(2) && notes.isMarked(3) && !notes.isMarked(1));
  EXPECT_EQ(notes.readTo(), 3U);
  EXPECT_EQ(notes.cameAt(3), 3660);
  text.clear();
  EXPECT_FALSE(notes.isMarked(2));
  EXPECT_FALSE(notes.readTo());
}

}  // namespace
}  // namespace kelvaron::testing
