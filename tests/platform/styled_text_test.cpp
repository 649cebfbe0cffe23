// Lines, runs, caret and style of the chat view's text, also against a naive model.
#include "platform/styled_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <tuple>
#include <vector>

namespace kelvaron::testing {
namespace {

constexpr std::array<Color, 3> kColors = {{{255, 0, 0}, {0, 255, 0}, {0, 0, 255}}};

TEST(StyledText, EachLineEndCutsALine) {
  const std::pair<std::vector<std::string>, std::string> cases[] = {
      {{""}, ""},
      {{"a\r\n"}, "a\r\n"},
      {{"a\rb\nc\r\nd"}, "a\r\nb\r\nc\r\nd"},
      {{"\r\r\n\n"}, "\r\n\r\n\r\n"},
      {{"a\n\rb"}, "a\r\n\r\nb"},
      {{"a\r", "\nb"}, "a\r\n\r\nb"},
      {{"a", "b\r\nc", "d"}, "ab\r\ncd"},
      {{std::string("a\0\tb\x7f\xA5", 6)}, std::string("a\0\tb\x7f\xA5", 6)},
  };
  for (const auto& [pieces, expected] : cases) {
    StyledText text;
    for (const std::string& piece : pieces) text.insert(piece);
    EXPECT_EQ(text.text(), expected);
  }
}

TEST(StyledText, ACutOfTheTextIsClampedAndTakesTheLineEndAskedFor) {
  StyledText text;
  text.insert("abcd\r\n\r\nef");
  const std::tuple<TextPosition, TextPosition, const char*> cases[] = {
      {{0, 0}, {9, 9}, "abcd||ef"}, {{0, 1}, {0, 3}, "bc"}, {{0, 4}, {1, 0}, "|"},
      {{0, 3}, {2, 1}, "d||e"},     {{2, 1}, {0, 0}, ""},   {{1, 0}, {1, 5}, ""},
      {{0, 77}, {2, 0}, "||"}};
  for (const auto& [from, to, expected] : cases) EXPECT_EQ(text.text(from, to, "|"), expected);
}

TEST(StyledText, PlacesStayWithTheirTextThroughAChange) {
  using Places = std::vector<TextPosition>;
  StyledText text;
  Places places;
  const Places before = {{0, 0}, {0, 2}, {0, 3}, {0, 4}, {1, 0}, {2, 2}};
  text.onChange = [&](const StyledText::Change& change) {
    places.clear();
    for (const TextPosition place : before) places.push_back(change.follow(place));
  };
  const std::tuple<TextPosition, const char*, Places> cases[] = {
      {{2, 2}, "xy\r\nz", {{0, 0}, {0, 2}, {0, 3}, {0, 4}, {1, 0}, {2, 2}}},
      {{0, 2}, "xy", {{0, 0}, {0, 2}, {0, 5}, {0, 6}, {1, 0}, {2, 2}}},
      {{0, 2}, "xy\r\nz", {{0, 0}, {0, 2}, {1, 2}, {1, 3}, {2, 0}, {3, 2}}},
      {{1, 0}, "\r\n\r\n", {{0, 0}, {0, 2}, {0, 3}, {0, 4}, {1, 0}, {4, 2}}},
  };
  for (const auto& [caret, inserted, after] : cases) {
    text.clear();
    text.insert("abcd\r\n\r\nef");
    text.setCaret(caret);
    text.insert(inserted);
    EXPECT_EQ(places, after) << inserted;
  }
  text.clear();
  EXPECT_EQ(places, Places(before.size(), TextPosition{}));
}

TEST(StyledText, ALineGrowsInPiecesUpToALimit) {
  StyledText text;
  std::string expected = "first\r\n";
  text.insert(expected);
  const std::string piece(70'001, 'a');
  const std::string wide(5'000'000, 'w');
  for (int i = 0; i < 60; ++i) text.insert(piece);  // 4 MB without a line end
  text.insert("\r\nlast\r\n" + wide);
  const auto split = [&](std::string line) {
    for (; line.size() > StyledText::kSplitLine; line.erase(0, StyledText::kSplitLine)) {
      expected.append(line, 0, StyledText::kSplitLine).append("\r\n");
    }
    expected += line;
  };
  split(std::string(60 * piece.size(), 'a'));
  expected += "\r\nlast\r\n";
  split(wide);
  EXPECT_TRUE(text.text() == expected);
  EXPECT_EQ(text.runCount(1), 1U);
  EXPECT_LT(text.memoryUsed(), expected.size() * 7 / 4) << "outgrown chunks are given back";
}

TEST(StyledText, InsertionsInTheMiddleDoNotPileUpMemory) {
  StyledText text;
  const std::string half(50'000, 'a');
  text.insert(half + half + "\r\nend");
  text.setCaret({0, half.size()});
  for (int i = 0; i < 500; ++i) text.insert("b");  // each writes the line anew: 50 MB in all
  EXPECT_EQ(text.text(), half + std::string(500, 'b') + half + "\r\nend");
  EXPECT_LT(text.memoryUsed(), std::size_t{5} << 20U);
}

TEST(StyledText, AMillionLinesCostAtMost110BytesEach) {
  constexpr std::size_t kLines = 1'000'000;
  StyledText text;
  for (std::size_t i = 0; i < kLines; ++i) {
    text.setColor(kColors[0]);
    text.insert("<somebody> ");
    text.setColor(kColors[1]);
    text.insert(std::string(51, 'w') + "\r\n");
  }
  EXPECT_LT(text.memoryUsed(), kLines * 110);
  EXPECT_EQ(text.offsetOf({765'432, 11}), 765'432U * 64 + 11);
  EXPECT_EQ(text.positionOf(765'432U * 64 + 11), (TextPosition{765'432, 11}));
}

/// The same text as one flat row of styled characters, where a line end is one character.
struct Model {
  struct Character {
    char byte;
    TextStyle style;
  };
  std::vector<Character> characters;
  std::size_t caret = 0;
  TextStyle style, styleAtEnd;

  void setCaret(std::size_t place) {
    caret = place;
    if (caret == characters.size()) {
      style = styleAtEnd;
      return;
    }
    const auto inLine = [](const Character& c) { return c.byte != '\n'; };
    const auto at = characters.begin() + static_cast<std::ptrdiff_t>(caret);
    if ((caret > 0 && inLine(*(at - 1))) || !inLine(*at)) {
      const auto before = std::find_if(std::reverse_iterator(at), characters.rend(), inLine);
      style = before == characters.rend() ? styleAtEnd : before->style;
    } else {
      style = at->style;
    }
  }
  void setStyle(TextStyle wanted) {
    style = wanted;
    if (caret == characters.size()) styleAtEnd = wanted;
  }
  void insert(const std::string& text) {
    for (const char byte : text) {
      const auto at = characters.begin() + static_cast<std::ptrdiff_t>(caret++);
      characters.insert(at, Character{byte, style});
    }
  }
  TextPosition position(std::size_t place) const {
    TextPosition result;
    for (std::size_t i = 0; i < place; ++i) {
      result = characters[i].byte == '\n' ? TextPosition{result.line + 1, 0}
                                          : TextPosition{result.line, result.column + 1};
    }
    return result;
  }
};

void expectSame(const StyledText& text, const Model& model) {
  std::string bytes;
  TextPosition at;
  for (const Model::Character& c : model.characters) {
    ASSERT_EQ(text.offsetOf(at), bytes.size());
    ASSERT_EQ(text.positionOf(bytes.size()), at);
    if (c.byte == '\n') {
      bytes += "\r\n";
      ASSERT_EQ(text.positionOf(bytes.size() - 1), at);
      at = {at.line + 1, 0};
      continue;
    }
    ASSERT_LT(at.column, text.line(at.line).size());
    const std::size_t index = text.runAt(at.line, at.column);
    const StyledText::Run run = text.run(at.line, index);
    ASSERT_TRUE(run.begin <= at.column && at.column < run.end);
    ASSERT_EQ(run.style, c.style);
    ASSERT_TRUE(index == 0 || text.run(at.line, index - 1).style != run.style) << "not merged";
    bytes += c.byte;
    ++at.column;
  }
  ASSERT_TRUE(text.text() == bytes);
  ASSERT_EQ(text.length(), bytes.size());
  ASSERT_EQ(text.end(), at);
  ASSERT_EQ(text.caret(), model.position(model.caret));
  ASSERT_EQ(text.style(), model.style);
}

TEST(StyledText, AgreesWithANaiveModelOverRandomEdits) {
  for (unsigned seed = 0; seed < 16; ++seed) {
    std::mt19937 random(seed);
    const auto below = [&random](std::size_t n) { return random() % n; };
    // Some rounds fill more than the 512 lines between two noted offsets, some more than a chunk.
    const std::size_t lineEnds = seed % 3 == 0 ? 400 : 2;
    const std::size_t longest = seed % 5 == 0 ? 3'000 : 12;
    StyledText text;
    Model model;
    for (int step = 0; step < 120; ++step) {
      const std::size_t kind = below(8);
      if (kind == 0) {
        model.setCaret(below(model.characters.size() + 1));
        text.setCaret(model.position(model.caret));
      } else if (kind == 1) {
        model.setCaret(model.characters.size());
        text.caretToEnd();
      } else if (kind < 4) {
        const TextStyle style{kColors[below(3)], below(2) == 0};
        model.setStyle(style);
        text.setColor(style.color);
        text.setBold(style.bold);
      } else if (kind > 4) {
        std::string inserted(below(longest), static_cast<char>('a' + below(26)));
        for (std::size_t i = below(lineEnds); i > 0; --i) {
          inserted.insert(below(inserted.size() + 1), 1, '\n');
        }
        model.insert(inserted);
        text.insert(inserted);
      } else if (below(30) == 0) {
        model.characters.clear();
        model.setCaret(0);
        text.clear();
      }
    }
    ASSERT_NO_FATAL_FAILURE(expectSame(text, model)) << "seed " << seed;
  }
}

}  // namespace
}  // namespace kelvaron::testing
