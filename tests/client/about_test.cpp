// The about box: its texts, its pointer, and the way to the system's information tool.
#include <gmock/gmock.h>

#include "build_settings.h"
#include "chat/about_box.h"
#include "tests/support/client_test.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class About : public ClientTest {
 protected:
  void SetUp() override {
    ClientTest::SetUp();
    desktop.raise(desktop.room().mnuAbout.Click);
    ASSERT_TRUE(desktop.shows<frmAbout>());
  }
  frmAbout& about() { return form<frmAbout>(); }
};

TEST_F(About, TextsAndPointer) {
  EXPECT_EQ(about().Caption.get(), "About Kelvaron");
  EXPECT_EQ(about().lblTitle.Caption.get(), "Kelvaron");
  EXPECT_EQ(about().lblVersion.Caption.get(), "Version " + std::string(build::kVersion));
  desktop.raise(about().Image1.MouseMove);
  EXPECT_EQ(about().MousePointer_.get(), MousePointer::noDrop);
  about().Form_MouseMove();
  EXPECT_EQ(about().MousePointer_.get(), MousePointer::standard);
  desktop.raise(about().cmdOK.Click);
  EXPECT_EQ(desktop.client->loadedForm<frmAbout>(), nullptr);
}

TEST_F(About, InformationTool) {
  using Value = std::optional<RegistryValue>;
  const RegistryValue folder{1, R"(C:\Tools)"};
  desktop.registry.existing = {R"(C:\Tools\MSINFO32.EXE)"};
  // The two values, what is started if anything, and how many keys are read.
  const std::vector<std::tuple<std::string, Value, Value, std::string, std::size_t>> cases = {
      {"no key at all", {}, {}, "", 2},
      {"first key", RegistryValue{1, R"(C:\info.exe)"}, folder, R"(C:\info.exe)", 1},
      {"second key", {}, folder, R"(C:\Tools\MSINFO32.EXE)", 2},
      {"second key, no file", {}, RegistryValue{1, "C:"}, "", 2},
      {"neither a string nor a number", RegistryValue{3, "info"}, folder, "", 1},
      {"empty", RegistryValue{1, ""}, {}, "", 1}};
  for (const auto& [what, first, second, started, keysRead] : cases) {
    SCOPED_TRACE(what);
    auto& keys = desktop.registry.keys = {};
    desktop.registry.asked.clear();
    desktop.started.clear();
    if (first) keys[R"(SOFTWARE\Microsoft\Shared Tools\MSINFO)"]["PATH"] = *first;
    if (second) keys[R"(SOFTWARE\Microsoft\Shared Tools Location)"]["MSINFO"] = *second;
    click(about().cmdSysInfo);
    EXPECT_EQ(desktop.registry.asked.size(), keysRead);
    EXPECT_EQ(desktop.registry.open, 0);
    if (started.empty()) {
      EXPECT_THAT(desktop.started, IsEmpty());
    } else {
      EXPECT_THAT(desktop.started,
                  ElementsAre(TestDesktop::Started{started, WindowStyle::maximizedFocus}));
      EXPECT_THAT(desktop.boxes, IsEmpty());
      desktop.lastStartFailed();
    }
    EXPECT_THAT(boxTexts(), ElementsAre("System Information Is Unavailable At This Time"));
  }
}

TEST_F(About, ValuesByTheirType) {
  const std::vector<std::tuple<RegistryValue, bool, std::string>> cases = {
      {{1, std::string("two words\0", 10)}, true, "two words"},
      {{1, std::string("\0\0", 2)}, true, std::string(1, '\0')},
      {{4, "\x1F\xA0\x03\xC4"}, true, "&hC43A01F"},
      // The highest byte is zero and goes like a string's NUL; single digits have no zero.
      {{4, std::string("\x01\0\0\0", 4)}, true, "&h001"},
      {{7, "a list"}, true, "before"},
      {{1, std::string(1024, 'x')}, true, std::string(1024, 'x')},
      {{1, std::string(1025, 'x')}, false, ""}};
  const auto read = [&](const char* value, std::string& text) {
    return about().GetKeyValue(registry_key::HKEY_LOCAL_MACHINE, "Key", value, text);
  };
  for (const auto& [value, found, expected] : cases) {
    desktop.registry.keys["Key"]["Value"] = value;
    std::string text = value.type == 7 ? "before" : "";
    EXPECT_EQ(read("Value", text), found);
    EXPECT_EQ(text, expected);
  }
  std::string text = "before";
  EXPECT_FALSE(read("Other", text));
  EXPECT_EQ(text, "");
  EXPECT_EQ(desktop.registry.open, 0);
}

}  // namespace
}  // namespace kelvaron::testing
