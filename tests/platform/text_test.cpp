#include "platform/text.h"

#include <gtest/gtest.h>

namespace kelvaron::testing {
namespace {

TEST(Text, EveryByteThatUnicodeKnowsGoesThereAndBack) {
  for (int byte = 0; byte < 256; ++byte) {
    const std::string text(1, static_cast<char>(byte));
    EXPECT_EQ(fromUtf8(toUtf8(text)), text) << byte;
  }
  EXPECT_EQ(toUtf8("\xA5"
                   "bob \x80 \x93"
                   "hi\x94"),
            "\u00A5bob \u20AC \u201Chi\u201D");
}

TEST(Text, WhatTheCodePageLacksBecomesAQuestionMark) {
  struct Case {
    const char* utf8;
    const char* text;
  };
  for (const Case each :
       {Case{"a\u0142b", "a?b"}, Case{"\U0001F600", "?"}, Case{"\u4E2D\u6587", "??"},
        Case{"a\xFFz", "a?z"}, Case{"\xC3", "?"}, Case{"\xE2\x82", "??"}, Case{"\xC0\x8A", "??"},
        Case{"\xF8\x88\x80\x80\x80", "?????"}, Case{"\xE9t\xC3\xA9", "?t\xE9"}}) {
    EXPECT_EQ(fromUtf8(each.utf8), each.text);
  }
}

TEST(Text, CaseOfTheCodePage) {
  struct Case {
    const char* small;
    const char* capital;
  };
  for (const Case each : {Case{"bob", "BOB"}, Case{"\xE9\xFC\xF1", "\xC9\xDC\xD1"},
                          Case{"\x9A\x9C\x9E\xFF", "\x8A\x8C\x8E\x9F"}}) {
    EXPECT_EQ(upper(each.small), each.capital);
    EXPECT_EQ(lower(each.capital), each.small);
  }
  const std::string neither = "\xDF\xF7\xD7 1[]\x83\xAA\xBA\xB5";
  EXPECT_EQ(upper(neither), neither);
  EXPECT_EQ(lower(neither), neither);
}

TEST(Text, LineEndsBecomeOneBlankEach) {
  EXPECT_EQ(withoutLineEnds("a\r\nb\rc\nd\n\re\r\n"), "a b c d  e ");
}

}  // namespace
}  // namespace kelvaron::testing
