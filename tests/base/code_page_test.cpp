#include "base/code_page.h"

#include <gtest/gtest.h>

namespace kelvaron::testing {
namespace {

TEST(CodePage, EveryByteThatUnicodeKnowsGoesThereAndBack) {
  for (int byte = 0; byte < 256; ++byte) {
    const std::string text(1, static_cast<char>(byte));
    EXPECT_EQ(fromUtf8(toUtf8(text)), text) << byte;
  }
  EXPECT_EQ(toUtf8("\xA5"
                   "bob \x80 \x93"
                   "hi\x94"),
            "\u00A5bob \u20AC \u201Chi\u201D");
}

TEST(CodePage, WhatTheCodePageLacksBecomesAQuestionMark) {
  const std::pair<const char*, const char*> cases[] = {{"a\u0142b", "a?b"},
                                                       {"\U0001F600", "?"},
                                                       {"\u0905\u4E2D\u6587", "???"},
                                                       {"a\xFFz", "a?z"},
                                                       {"\xC3", "?"},
                                                       {"\xE2\x82", "??"},
                                                       {"\xC0\x8A", "??"},
                                                       {"\xE9t\xC3\xA9", "?t\xE9"},
                                                       {"\xF8\x88\x80\x80\x80", "?????"}};
  for (const auto& [utf8, text] : cases) EXPECT_EQ(fromUtf8(utf8), text);
}

TEST(CodePage, CaseOfTheCodePage) {
  const std::pair<const char*, const char*> cases[] = {
      {"bob", "BOB"}, {"\xE9\xFC\xF1", "\xC9\xDC\xD1"}, {"\x9A\x9C\x9E\xFF", "\x8A\x8C\x8E\x9F"}};
  for (const auto& [small, capital] : cases) {
    EXPECT_EQ(upper(small), capital);
    EXPECT_EQ(lower(capital), small);
  }
  const std::string neither = "\xDF\xF7\xD7 1[]\x83\xAA\xBA\xB5";
  EXPECT_EQ(upper(neither), neither);
  EXPECT_EQ(lower(neither), neither);
}

}  // namespace
}  // namespace kelvaron::testing
