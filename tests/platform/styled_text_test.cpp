// Lines, runs, caret and style of the chat view's text, also against a naive model.
#include "platform/styled_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace kelvaron::testing {
namespace {

constexpr Color kRed{255, 0, 0};
constexpr Color kGreen{0, 255, 0};
constexpr Color kBlue{0, 0, 255};

/// A line as "text of a run[colour letter, * for bold]" in order.
std::string described(const StyledText& text, std::size_t line) {
  std::string result;
  for (std::size_t i = 0; i < text.runCount(line); ++i) {
    const StyledText::Run run = text.run(line, i);
    const Color color = run.style.color;
    result += text.line(line).substr(run.begin, run.end - run.begin);
    result += color == kRed ? "[r" : color == kGreen ? "[g" : color == kBlue ? "[b" : "[-";
    result += run.style.bold ? "*]" : "]";
  }
  return result;
}

std::vector<std::string> described(const StyledText& text) {
  std::vector<std::string> lines;
  for (std::size_t i = 0; i < text.lineCount(); ++i) {
    lines.push_back(described(text, i));
  }
  return lines;
}

using Lines = std::vector<std::string>;

TEST(StyledText, EachLineEndCutsALine) {
  struct Case {
    std::vector<std::string> inserted;
    Lines lines;
  };
  const std::vector<Case> cases = {
      {{}, {""}},
      {{""}, {""}},
      {{"a"}, {"a[-]"}},
      {{"a\r\n"}, {"a[-]", ""}},
      {{"a\rb\nc\r\nd"}, {"a[-]", "b[-]", "c[-]", "d[-]"}},
      {{"\r\r\n\n"}, {"", "", "", ""}},
      {{"a\n\rb"}, {"a[-]", "", "b[-]"}},
      {{"a\r", "\nb"}, {"a[-]", "", "b[-]"}},
      {{"a", "b\r\nc", "d"}, {"ab[-]", "cd[-]"}},
      {{std::string("a\0\tb\x7f\xA5", 6)}, {std::string("a\0\tb\x7f\xA5[-]", 9)}},
  };
  for (const Case& c : cases) {
    StyledText text;
    for (const std::string& piece : c.inserted) {
      text.insert(piece);
    }
    EXPECT_EQ(described(text), c.lines) << ::testing::PrintToString(c.inserted);
    EXPECT_EQ(text.caret(), text.end());
    EXPECT_EQ(text.text().size(), text.length());
  }
}

/// "ab" in red, "cd" in green bold, an empty line, "ef" in blue; at the end red is in force.
void fill(StyledText& text) {
  text.setColor(kRed);
  text.insert("ab");
  text.setColor(kGreen);
  text.setBold(true);
  text.insert("cd\r\n\r\n");
  text.setColor(kBlue);
  text.setBold(false);
  text.insert("ef");
  text.setColor(kRed);
}

TEST(StyledText, ACutOfTheTextIsClampedAndTakesTheLineEndAskedFor) {
  StyledText text;
  fill(text);
  struct Case {
    TextPosition from;
    TextPosition to;
    const char* expected;
  };
  const std::vector<Case> cases = {
      {{0, 0}, {9, 9}, "abcd||ef"}, {{0, 1}, {0, 3}, "bc"}, {{0, 4}, {1, 0}, "|"},
      {{0, 3}, {2, 1}, "d||e"},     {{2, 1}, {0, 0}, ""},   {{1, 0}, {1, 5}, ""},
      {{0, 77}, {2, 0}, "||"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(text.text(c.from, c.to, "|"), c.expected);
  }
  EXPECT_EQ(text.text(), "abcd\r\n\r\nef");
}

TEST(StyledText, PlacesStayWithTheirTextThroughAChange) {
  StyledText text;
  std::vector<TextPosition> places;
  const std::vector<TextPosition> before = {{0, 0}, {0, 2}, {0, 3}, {0, 4}, {1, 0}, {2, 2}};
  text.onChange = [&](const StyledText::Change& change) {
    places.clear();
    for (const TextPosition place : before) {
      places.push_back(change.follow(place));
    }
  };
  using Places = std::vector<TextPosition>;
  struct Case {
    TextPosition caret;
    std::string inserted;
    Places after;
  };
  const std::vector<Case> cases = {
      {{2, 2}, "xy\r\nz", {{0, 0}, {0, 2}, {0, 3}, {0, 4}, {1, 0}, {2, 2}}},
      {{0, 2}, "xy", {{0, 0}, {0, 2}, {0, 5}, {0, 6}, {1, 0}, {2, 2}}},
      {{0, 2}, "xy\r\nz", {{0, 0}, {0, 2}, {1, 2}, {1, 3}, {2, 0}, {3, 2}}},
      {{1, 0}, "\r\n\r\n", {{0, 0}, {0, 2}, {0, 3}, {0, 4}, {1, 0}, {4, 2}}},
  };
  for (const Case& c : cases) {
    text.clear();
    text.caretToEnd();
    fill(text);
    text.setCaret(c.caret);
    text.insert(c.inserted);
    EXPECT_EQ(places, c.after) << c.caret.line << ',' << c.caret.column;
  }
  text.clear();
  EXPECT_EQ(places, Places(before.size(), TextPosition{}));
}

TEST(StyledText, ALineGrowsInPiecesUpToALimit) {
  StyledText text;
  std::string expected = "first\r\n";
  text.insert(expected);
  const std::size_t limit = StyledText::kSplitLine;
  const std::string piece(70'001, 'a');
  for (int i = 0; i < 60; ++i) text.insert(piece);  // 4 MB without a line end
  std::string long1(60 * piece.size(), 'a');
  const std::string long2(5'000'000, 'w');
  text.insert("\r\nlast\r\n" + long2);
  const auto split = [&](std::string_view line) {
    for (; line.size() > limit; line.remove_prefix(limit)) {
      expected.append(line.substr(0, limit)).append("\r\n");
    }
    expected += line;
  };
  split(long1);
  expected += "\r\nlast\r\n";
  split(long2);
  EXPECT_TRUE(text.text() == expected);
  EXPECT_EQ(text.runCount(1), 1U);
  EXPECT_LT(text.memoryUsed(), expected.size() * 7 / 4) << "outgrown chunks are given back";
}

TEST(StyledText, InsertionsInTheMiddleDoNotPileUpMemory) {
  StyledText text;
  text.insert(std::string(100'000, 'a') + "\r\nend");
  text.setCaret({0, 50'000});
  for (int i = 0; i < 500; ++i) {  // each writes the line anew: 50 MB in all
    text.insert("b");
  }
  EXPECT_EQ(text.line(0),
            std::string(50'000, 'a') + std::string(500, 'b') + std::string(50'000, 'a'));
  EXPECT_EQ(text.line(1), "end");
  EXPECT_LT(text.memoryUsed(), std::size_t{5} << 20U);
}

TEST(StyledText, AMillionLinesCostAtMost110BytesEach) {
  constexpr std::size_t kLines = 1'000'000;
  StyledText text;
  const std::string name = "<somebody> ";
  const std::string words(51, 'w');
  for (std::size_t i = 0; i < kLines; ++i) {
    text.setColor(kRed);
    text.insert(name);
    text.setColor(kGreen);
    text.insert(words + "\r\n");
  }
  EXPECT_EQ(text.lineCount(), kLines + 1);
  EXPECT_EQ(text.length(), kLines * 64);
  EXPECT_LT(text.memoryUsed(), kLines * 110);
  EXPECT_EQ(text.offsetOf({765'432, 11}), 765'432U * 64 + 11);
  EXPECT_EQ(text.positionOf(765'432U * 64 + 11), (TextPosition{765'432, 11}));
  EXPECT_EQ(described(text, 765'432), name + "[r]" + words + "[g]");
}

/// The same text as one flat row of styled characters, where a line end is one character.
class Model {
 public:
  struct Character {
    char byte;
    TextStyle style;
  };

  void setCaret(std::size_t place) {
    caret_ = std::min(place, characters_.size());
    if (caret_ == characters_.size()) {
      style_ = styleAtEnd_;
      return;
    }
    const auto inLine = [](const Character& c) { return c.byte != '\n'; };
    if (caret_ > 0 && inLine(characters_[caret_ - 1])) {
      style_ = characters_[caret_ - 1].style;
    } else if (inLine(characters_[caret_])) {
      style_ = characters_[caret_].style;
    } else {
      const auto before = std::find_if(characters_.rend() - static_cast<std::ptrdiff_t>(caret_),
                                       characters_.rend(), inLine);
      style_ = before == characters_.rend() ? styleAtEnd_ : before->style;
    }
  }
  void setStyle(TextStyle style) {
    style_ = style;
    if (caret_ == characters_.size()) {
      styleAtEnd_ = style;
    }
  }
  void insert(const std::string& text) {
    for (const char byte : text) {
      characters_.insert(characters_.begin() + static_cast<std::ptrdiff_t>(caret_),
                         Character{byte, style_});
      ++caret_;
    }
  }
  void clear() {
    characters_.clear();
    setCaret(0);
  }
  TextPosition position(std::size_t place) const {
    TextPosition result;
    for (std::size_t i = 0; i < place; ++i) {
      result = characters_[i].byte == '\n' ? TextPosition{result.line + 1, 0}
                                           : TextPosition{result.line, result.column + 1};
    }
    return result;
  }
  std::size_t size() const { return characters_.size(); }
  std::size_t caret() const { return caret_; }
  TextStyle style() const { return style_; }
  const std::vector<Character>& characters() const { return characters_; }

 private:
  std::vector<Character> characters_;
  std::size_t caret_ = 0;
  TextStyle style_;
  TextStyle styleAtEnd_;
};

void expectSame(const StyledText& text, const Model& model) {
  std::size_t line = 0;
  std::size_t column = 0;
  std::size_t offset = 0;
  for (const Model::Character& c : model.characters()) {
    ASSERT_EQ(text.offsetOf({line, column}), offset);
    ASSERT_EQ(text.positionOf(offset), (TextPosition{line, column}));
    if (c.byte == '\n') {
      ASSERT_EQ(text.line(line).size(), column);
      ASSERT_EQ(text.positionOf(offset + 1), (TextPosition{line, column}));
      ++line;
      column = 0;
      offset += 2;
      continue;
    }
    ASSERT_LT(column, text.line(line).size());
    ASSERT_EQ(text.line(line)[column], c.byte);
    const std::size_t index = text.runAt(line, column);
    const StyledText::Run run = text.run(line, index);
    ASSERT_TRUE(run.begin <= column && column < run.end);
    ASSERT_EQ(run.style, c.style);
    ASSERT_TRUE(index == 0 || text.run(line, index - 1).style != run.style) << "runs not merged";
    ++column;
    ++offset;
  }
  ASSERT_EQ(text.end(), (TextPosition{line, column}));
  ASSERT_EQ(text.length(), offset);
  ASSERT_EQ(text.caret(), model.position(model.caret()));
  ASSERT_EQ(text.style(), model.style());
}

TEST(StyledText, AgreesWithANaiveModelOverRandomEdits) {
  constexpr std::array<Color, 3> kColors = {kRed, kGreen, kBlue};
  for (unsigned seed = 0; seed < 16; ++seed) {
    std::mt19937 random(seed);
    const auto below = [&random](std::size_t n) { return random() % n; };
    // Some rounds fill more than the 512 lines between two noted offsets, some more than a chunk.
    const std::size_t lineEnds = seed % 3 == 0 ? 400 : 2;
    const std::size_t longest = seed % 5 == 0 ? 3'000 : 12;
    StyledText text;
    Model model;
    for (int step = 0; step < 120; ++step) {
      switch (below(8)) {
        case 0: {
          const std::size_t place = below(model.size() + 1);
          model.setCaret(place);
          text.setCaret(model.position(place));
          break;
        }
        case 1:
          model.setCaret(model.size());
          text.caretToEnd();
          break;
        case 2:
        case 3: {
          const TextStyle style{kColors[below(3)], below(2) == 0};
          model.setStyle(style);
          text.setColor(style.color);
          text.setBold(style.bold);
          break;
        }
        case 4:
          if (below(30) == 0) {
            model.clear();
            text.clear();
          }
          break;
        default: {
          std::string inserted(below(longest), static_cast<char>('a' + below(26)));
          for (std::size_t i = below(lineEnds); i > 0; --i) {
            inserted.insert(below(inserted.size() + 1), 1, '\n');
          }
          model.insert(inserted);
          text.insert(inserted);
        }
      }
    }
    ASSERT_NO_FATAL_FAILURE(expectSame(text, model)) << "seed " << seed;
  }
}

}  // namespace
}  // namespace kelvaron::testing
