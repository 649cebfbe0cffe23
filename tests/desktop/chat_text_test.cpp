// What the chat view knows of its text: wrapping, links, words, search, times.
#include <gtest/gtest.h>

#include <QGuiApplication>
#include <random>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "desktop/chat_view/chat_layout.h"
#include "desktop/chat_view/chat_links.h"
#include "desktop/chat_view/chat_notes.h"
#include "desktop/chat_view/chat_selection.h"

namespace kelvaron::testing {
namespace {

TEST(ChatLayout, BreaksBehindBlanksAndCutsWhatFitsNoRow) {
  // A text with "|" where rows end, and what a row has room for, not a pixel more.
  using Case = std::pair<std::string, const char*>;
  for (const auto& [wanted, widest] :
       {Case{"", "aaaa"}, Case{"aaaa", "aaaa"}, Case{"aaaa|a", "aaaa"},
        Case{"aa aa    |aa", "aa aa"}, Case{"aa\taa |aa", "aa aa"},
        Case{"aa |aaaa|aaaa|a aa", "aaaa"}, Case{"aaa\240aaa |aaa", "aaa aaa"},
        Case{"aaa   ", "aaa"}, Case{"a|b", ""}}) {
    StyledText text;
    std::string rows = wanted;
    std::erase(rows, '|');
    text.insert(rows);
    ChatLayout layout(text, QGuiApplication::font());
    layout.setWidth(layout.font().width(widest, false));
    for (std::size_t i = layout.rowCount(0) - 1; i > 0; --i) {
      rows.insert(layout.span({0, i}).begin, "|");
    }
    EXPECT_EQ(rows, wanted);
  }
}

TEST(ChatLayout, WrappedRowsHangAndTheEmptyLineAtTheEndIsNoRow) {
  StyledText text;
  text.insert(std::string(60, 'n') + "\r\n");
  ChatLayout layout(text, QGuiApplication::font());
  const qreal letter = layout.font().advance('n', false);
  layout.setWidth(30 * letter);
  EXPECT_EQ(layout.rowCount(0), 3U) << "30, and twice at most 28";
  EXPECT_EQ(layout.xOf({0, 0}, 0), 0);
  EXPECT_EQ(layout.xOf({0, 1}, 30), 2 * letter);
  EXPECT_EQ(layout.placeAt({0, 1}, 3.2 * letter), (TextPosition{0, 31}));
  EXPECT_EQ(layout.lastRow(), (ChatRow{0, 2}));
  text.insert("n");
  EXPECT_EQ(layout.lastRow(), (ChatRow{1, 0}));
}

TEST(ChatLayout, RowsCoverTheLineWithinTheWidthAndPlacesComeBack) {
  std::mt19937 random(7);
  StyledText text;
  for (int i = 0; i < 4'000; ++i) {
    if (random() % 16 == 0) text.setBold(random() % 2 == 0);
    const char byte = random() % 6 == 0 ? ' ' : static_cast<char>(random() % 256);
    text.insert(std::string(1, random() % 200 == 0 ? '\n' : byte));
  }
  ChatLayout layout(text, QGuiApplication::font());
  for (const qreal width : {30.0, 90.0, 333.0}) {
    layout.setWidth(width);
    for (std::size_t line = 0; line < text.lineCount(); ++line) {
      std::size_t column = 0;
      for (std::size_t i = 0; i < layout.rowCount(line); ++i) {
        const ChatRow row{line, i};
        const ChatLayout::Span span = layout.span(row);
        ASSERT_EQ(span.begin, column);
        std::size_t shown = span.end;
        while (shown > span.begin && isBlank(text.line(line)[shown - 1])) --shown;
        ASSERT_LE(layout.xOf(row, shown), width);
        for (; column < span.end; ++column) {
          ASSERT_EQ(layout.rowOf({line, column}), row);
          ASSERT_EQ(layout.characterAt(row, layout.xOf(row, column) + 0.1), column);
          ASSERT_EQ(layout.placeAt(row, layout.xOf(row, column)), (TextPosition{line, column}));
        }
      }
      ASSERT_EQ(column, text.line(line).size());
    }
  }
}

TEST(ChatLayout, FollowsChangesOfItsText) {
  StyledText text;
  ChatLayout layout(text, QGuiApplication::font());
  layout.setWidth(layout.font().width("aaaa", false));
  text.onChange = [&](const StyledText::Change& change) { layout.changed(change); };
  text.insert("aaaa\naa");
  text.insert("aaaa");
  EXPECT_EQ(layout.lastRow(), (ChatRow{1, 1}));
  text.setCaret({0, 0});
  text.insert("aaaaa\n");
  EXPECT_EQ(layout.rowCount(0), 2U);
  EXPECT_EQ(layout.rowCount(1), 1U);
  EXPECT_EQ(layout.lastRow(), (ChatRow{2, 1}));
}

TEST(ChatLinks, OnlyWebAddressesWithoutTheSentenceAroundThem) {
  // A line with "|" around each of its links.
  for (const std::string wanted :
       {"see |HTTPS://A.example/x?y=1&z=%20#t| now", "|http://a.example/b|, |http://c.example|.",
        "|http://a.example/Doom_(game)|", "(see |http://a.example/Doom_(game)|).",
        "(|http://a.example/b|)", "[|http://a.example/x|]: {|http://b.example/[y]|}",
        "<|http://a.example/x|>\"|http://b.example|\"",
        "\x93|http://a.example|\x94 \x91|http://b.example|\x92", "|http://a.example/\xE9t\xE9|!?",
        "'|http://a.example/x|'...", "|http://a.example/x,http://b.example|",
        "xhttp://a.example ahttps://b.example http://[bad ://x",
        "ftp://a.example file:///etc/passwd javascript://a.example/%0aalert(1)",
        "http:// https://... http://) http:///x http:/a.example http://"}) {
    SCOPED_TRACE(wanted);
    std::string line = wanted;
    std::erase(line, '|');
    std::string found = line;
    const std::vector<LinkSpan> spans = findLinks(line);
    for (auto span = spans.rbegin(); span != spans.rend(); ++span) {
      const auto url = urlOf(line.substr(span->begin, span->end - span->begin));
      ASSERT_TRUE(url && (url->scheme() == "http" || url->scheme() == "https"));
      EXPECT_EQ(linkAt(line, span->begin), *span);
      EXPECT_EQ(linkAt(line, span->end - 1), *span);
      EXPECT_NE(linkAt(line, span->end), *span);
      found.insert(span->end, "|").insert(span->begin, "|");
    }
    EXPECT_EQ(found, wanted);
  }
  EXPECT_EQ(linkAt("", 0), std::nullopt);
}

TEST(ChatSelection, WordsAndSteps) {
  StyledText text;
  text.insert("<Mod_1>  h\xE9llo, you\n\nend");
  using Case = std::tuple<TextPosition, TextRange, TextPosition, TextPosition>;
  const Case cases[] = {
      {{0, 0}, {{0, 0}, {0, 1}}, {0, 1}, {0, 0}},    {{0, 3}, {{0, 1}, {0, 6}}, {0, 6}, {0, 1}},
      {{0, 6}, {{0, 6}, {0, 7}}, {0, 9}, {0, 1}},    {{0, 8}, {{0, 7}, {0, 9}}, {0, 9}, {0, 6}},
      {{0, 11}, {{0, 9}, {0, 14}}, {0, 14}, {0, 9}}, {{0, 19}, {{0, 16}, {0, 19}}, {1, 0}, {0, 16}},
      {{1, 0}, {{1, 0}, {1, 0}}, {2, 0}, {0, 19}},   {{2, 3}, {{2, 0}, {2, 3}}, {2, 3}, {2, 0}}};
  for (const auto& [place, word, next, previous] : cases) {
    SCOPED_TRACE(place.column);
    EXPECT_EQ(wordAt(text, place), word);
    EXPECT_EQ(nextWord(text, place), next);
    EXPECT_EQ(previousWord(text, place), previous);
  }
}

TEST(ChatNotes, FollowTheirLines) {
  StyledText text;
  ChatNotes notes(text);
  text.onChange = [&](const StyledText::Change& change) { notes.changed(change); };
  const auto isForBob = [](std::string_view line) { return line.find("bob") != line.npos; };
  notes.isForUser = isForBob;
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
