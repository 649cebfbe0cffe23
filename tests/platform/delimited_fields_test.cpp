#include "platform/delimited_fields.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvaron::testing {
namespace {

TEST(DelimitedFields, Read) {
  const std::tuple<const char*, std::size_t, std::vector<std::string>> cases[] = {
      {"", 3, {}},
      {"a\r\nb\r\nc\r\n", 3, {"a", "b", "c"}},
      {"a\nb\rc\r\n", 3, {"a", "b", "c"}},
      {"a\r\nb\r\n", 1, {"a"}},
      {"\r\n\r\nx\r\n", 3, {"", "", "x"}},
      {"  a b \r\n   \r\nc\r\n", 3, {"a b ", "", "c"}},
      {"Oslo, Norway\r\nx\r\n", 3, {"Oslo", "Norway", "x"}},
      {",,a", 4, {"", "", "a"}},
      {"a,", 2, {"a"}},
      {"\"a, b\r\nc\" , d\r\n", 3, {"a, b\r\nc", "d"}},
      {"\"\",\"x\"\r\ny\r\n", 3, {"", "x", "y"}},
      {"\"open, end\r\n", 2, {"open, end\r\n"}},
      {"5\" nail\r\n\"a\"b\r\n", 3, {"5\" nail", "a", "b"}},
      {"a\r\n  ", 2, {"a"}},
  };
  for (const auto& [text, count, fields] : cases) EXPECT_EQ(readFields(text, count), fields);
}

}  // namespace
}  // namespace kelvaron::testing
