// What the chat view knows of its text: wrapping, links, words, search.
#include <gtest/gtest.h>

#include <QFontDatabase>
#include <random>
#include <string>
#include <vector>

#include "desktop/chat_view/chat_find.h"
#include "desktop/chat_view/chat_layout.h"
#include "desktop/chat_view/chat_links.h"
#include "desktop/chat_view/chat_selection.h"
#include "desktop/text_conversion.h"

namespace kelvaron::testing {
namespace {

using Strings = std::vector<std::string>;

Strings rowsOf(const ChatLayout& layout, std::size_t line) {
  Strings rows;
  for (std::size_t i = 0; i < layout.rowCount(line); ++i) {
    const ChatLayout::Span span = layout.span({line, i});
    rows.emplace_back(layout.text().line(line).substr(span.begin, span.end - span.begin));
  }
  return rows;
}

TEST(ChatLayout, BreaksBehindBlanksAndCutsWhatFitsNoRow) {
  struct Case {
    std::string text;
    std::string widest;  // the text that a row has room for, and not a pixel more
    Strings rows;
  };
  const std::vector<Case> cases = {
      {"", "aaaa", {""}},
      {"aaaa", "aaaa", {"aaaa"}},
      {"aaaaa", "aaaa", {"aaaa", "a"}},
      {"aa aa aa", "aa aa", {"aa aa ", "aa"}},
      {"aa aa    aa", "aa aa", {"aa aa    ", "aa"}},
      {"aa\taa aa", "aa aa", {"aa\taa ", "aa"}},
      {"aa aaaaaaaaa aa", "aaaa", {"aa ", "aaaa", "aaaa", "a aa"}},
      {"aaa\xA0"
       "aaa aaa",
       "aaa aaa",
       {"aaa\xA0"
        "aaa ",
        "aaa"}},
      {"aaa   ", "aaa", {"aaa   "}},
      {"ab", "", {"a", "b"}},
  };
  for (const Case& c : cases) {
    StyledText text;
    text.insert(c.text);
    ChatLayout layout(text, QFontDatabase::systemFont(QFontDatabase::GeneralFont));
    layout.setWidth(layout.font().width(c.widest, false));
    EXPECT_EQ(rowsOf(layout, 0), c.rows) << c.text;
  }
}

TEST(ChatLayout, RowsCoverTheLineWithinTheWidthAndPlacesComeBack) {
  std::mt19937 random(7);
  StyledText text;
  for (int i = 0; i < 40; ++i) {
    for (std::size_t piece = random() % 6; piece > 0; --piece) {
      text.setBold(random() % 2 == 0);
      std::string words(random() % 60, '\0');
      for (char& c : words) {
        c = random() % 6 == 0 ? ' ' : static_cast<char>(random() % 256);
        c = c == '\r' || c == '\n' ? '\t' : c;
      }
      text.insert(words);
    }
    text.insert("\n");
  }
  ChatLayout layout(text, QFontDatabase::systemFont(QFontDatabase::GeneralFont));
  for (const qreal width : {30.0, 90.0, 333.0}) {
    layout.setWidth(width);
    for (std::size_t line = 0; line < text.lineCount(); ++line) {
      std::size_t column = 0;
      for (std::size_t i = 0; i < layout.rowCount(line); ++i) {
        const ChatRow row{line, i};
        const ChatLayout::Span span = layout.span(row);
        ASSERT_EQ(span.begin, column);
        std::size_t shown = span.end;
        while (shown > span.begin && isBlank(text.line(line)[shown - 1])) {
          --shown;
        }
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
  ChatLayout layout(text, QFontDatabase::systemFont(QFontDatabase::GeneralFont));
  layout.setWidth(layout.font().width("aaaa", false));
  text.onChange = [&](const StyledText::Change& change) { layout.changed(change); };
  text.insert("aaaa\naa");
  EXPECT_EQ(layout.lastRow(), (ChatRow{1, 0}));
  text.insert("aaaa");
  EXPECT_EQ(layout.lastRow(), (ChatRow{1, 1}));
  EXPECT_EQ(layout.rowCount(0), 1U);
  text.setCaret({0, 0});
  text.insert("aaaaa\n");
  EXPECT_EQ(layout.rowCount(0), 2U);
  EXPECT_EQ(layout.rowCount(1), 1U);
  EXPECT_EQ(layout.moved({0, 0}, 99), (ChatRow{2, 1}));
  EXPECT_EQ(layout.moved({2, 1}, -3), (ChatRow{0, 1}));
  text.clear();
  EXPECT_EQ(layout.lastRow(), (ChatRow{0, 0}));
}

TEST(ChatLinks, OnlyWebAddressesWithoutTheSentenceAroundThem) {
  struct Case {
    std::string line;
    Strings links;
  };
  const std::vector<Case> cases = {
      {"http://a.example/", {"http://a.example/"}},
      {"see HTTPS://A.example/x?y=1&z=%20#t now", {"HTTPS://A.example/x?y=1&z=%20#t"}},
      {"http://a.example/b, http://c.example.", {"http://a.example/b", "http://c.example"}},
      {"(http://a.example/b)", {"http://a.example/b"}},
      {"http://a.example/Doom_(game)", {"http://a.example/Doom_(game)"}},
      {"(see http://a.example/Doom_(game)).", {"http://a.example/Doom_(game)"}},
      {"[http://a.example/x]: {http://b.example/[y]}",
       {"http://a.example/x", "http://b.example/[y]"}},
      {"<http://a.example/x>\"http://b.example\"", {"http://a.example/x", "http://b.example"}},
      {"\x93http://a.example\x94 \x91http://b.example\x92",
       {"http://a.example", "http://b.example"}},
      {"http://a.example/\xE9t\xE9!?", {"http://a.example/\xE9t\xE9"}},
      {"'http://a.example/x'...", {"http://a.example/x"}},
      {"http://a.example/x,http://b.example", {"http://a.example/x,http://b.example"}},
      {"xhttp://a.example ahttps://b.example", {}},
      {"ftp://a.example file:///etc/passwd javascript://a.example/%0aalert(1)", {}},
      {"http:// https://... http://) http:///x http:/a.example", {}},
      {"http://[bad", {}},
      {"://x http://", {}},
  };
  for (const Case& c : cases) {
    Strings links;
    for (const LinkSpan& span : findLinks(c.line)) {
      links.push_back(c.line.substr(span.begin, span.end - span.begin));
      const auto url = urlOf(links.back());
      ASSERT_TRUE(url && (url->scheme() == "http" || url->scheme() == "https")) << c.line;
      for (const std::size_t inside : {span.begin, span.end - 1}) {
        EXPECT_EQ(linkAt(c.line, inside), span) << c.line;
      }
      EXPECT_NE(linkAt(c.line, span.end), span) << c.line;
    }
    EXPECT_EQ(links, c.links) << c.line;
  }
  EXPECT_EQ(linkAt("", 0), std::nullopt);
}

TEST(ChatSelection, WordsAndSteps) {
  StyledText text;
  text.insert("<Mod_1>  h\xE9llo, you\n\nend");
  struct Case {
    TextPosition place;
    TextRange word;
    TextPosition next;
    TextPosition previous;
  };
  const std::vector<Case> cases = {
      {{0, 0}, {{0, 0}, {0, 1}}, {0, 1}, {0, 0}},    {{0, 3}, {{0, 1}, {0, 6}}, {0, 6}, {0, 1}},
      {{0, 6}, {{0, 6}, {0, 7}}, {0, 9}, {0, 1}},    {{0, 8}, {{0, 7}, {0, 9}}, {0, 9}, {0, 6}},
      {{0, 11}, {{0, 9}, {0, 14}}, {0, 14}, {0, 9}}, {{0, 19}, {{0, 16}, {0, 19}}, {1, 0}, {0, 16}},
      {{1, 0}, {{1, 0}, {1, 0}}, {2, 0}, {0, 19}},   {{2, 3}, {{2, 0}, {2, 3}}, {2, 3}, {2, 0}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(wordAt(text, c.place), c.word) << c.place.line << ',' << c.place.column;
    EXPECT_EQ(nextWord(text, c.place), c.next) << c.place.line << ',' << c.place.column;
    EXPECT_EQ(previousWord(text, c.place), c.previous) << c.place.line << ',' << c.place.column;
  }
}

TEST(ChatFind, FindsInAnyCaseBothWaysAndGoesRound) {
  StyledText text;
  text.insert("Coop game\nno\n\xC9t\xE9 coop COOP\naaaa");
  using Place = std::optional<TextPosition>;
  struct Case {
    std::string wanted;
    TextPosition from;
    Place forward;
    Place backward;
  };
  const std::vector<Case> cases = {
      {"coop", {0, 0}, {{0, 0}}, {{2, 9}}},
      {"coop", {0, 1}, {{2, 4}}, {{0, 0}}},
      {"CoOp", {2, 5}, {{2, 9}}, {{2, 4}}},
      {"coop", {2, 10}, {{0, 0}}, {{2, 9}}},
      {"\xE9T\xC9", {0, 0}, {{2, 0}}, {{2, 0}}},
      {"aa", {3, 1}, {{3, 1}}, {{3, 0}}},
      {"a", {3, 4}, {{0, 6}}, {{3, 3}}},
      {"game", {0, 99}, {{0, 5}}, {{0, 5}}},
      {"gamen", {0, 0}, {}, {}},
      {"", {0, 0}, {}, {}},
      {"Coop game and more", {0, 0}, {}, {}},
  };
  for (const Case& c : cases) {
    const ChatNeedle needle(c.wanted);
    EXPECT_EQ(findForward(text, needle, c.from), c.forward) << c.wanted;
    EXPECT_EQ(findBackward(text, needle, c.from), c.backward) << c.wanted;
  }
}

TEST(ChatFind, AgreesWithThePlainSearch) {
  std::mt19937 random(3);
  const auto word = [&random](std::size_t length) {
    std::string result(length, 'a');
    for (char& c : result) {
      c = static_cast<char>('a' + random() % 3);
    }
    return result;
  };
  for (int i = 0; i < 3'000; ++i) {
    const std::string line = word(random() % 40);
    const std::string wanted = word(1 + random() % 5);
    const std::size_t from = random() % 41;
    ASSERT_EQ(ChatNeedle(wanted).findIn(line, from), line.find(wanted, from))
        << line << ' ' << wanted << ' ' << from;
  }
}

TEST(TextConversion, EveryByteIsOneCharacterAndComesBack) {
  std::string all(256, '\0');
  for (std::size_t i = 0; i < all.size(); ++i) {
    all[i] = static_cast<char>(i);
  }
  const QString shown = shownText(all);
  EXPECT_EQ(shown.size(), 256);
  EXPECT_EQ(shown[0x80], QChar(0x20AC));
  EXPECT_EQ(shown[0xA5], QChar(0xA5));
  EXPECT_EQ(storedText(shown), all);
  EXPECT_EQ(storedText(QString::fromUtf8("\xE2\x86\x92x")), "?x");
}

}  // namespace
}  // namespace kelvaron::testing
