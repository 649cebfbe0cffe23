#include "platform/text.h"

#include <gtest/gtest.h>

namespace kelvaron::testing {
namespace {

TEST(Text, LineEndsBecomeOneBlankEach) {
  EXPECT_EQ(withoutLineEnds("a\r\nb\rc\nd\n\re\r\n"), "a b c d  e ");
}

}  // namespace
}  // namespace kelvaron::testing
