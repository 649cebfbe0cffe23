// The about box: its texts, its pointer, and the way to the system's information tool.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "chat/about_box.h"
#include "tests/support/client_test.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string kFirstKey = R"(SOFTWARE\Microsoft\Shared Tools\MSINFO)";
const std::string kSecondKey = R"(SOFTWARE\Microsoft\Shared Tools Location)";

class About : public ClientTest {
 protected:
  void SetUp() override {
    ClientTest::SetUp();
    desktop.raise(desktop.room().mnuAbout.Click);
    ASSERT_TRUE(desktop.shows<frmAbout>());
  }
  frmAbout& form() { return desktop.client->form<frmAbout>(); }
};

TEST_F(About, TextsAndPointer) {
  EXPECT_EQ(form().Caption.get(), "About Kelvaron");
  EXPECT_EQ(form().lblTitle.Caption.get(), "Kelvaron");
  EXPECT_EQ(form().lblVersion.Caption.get(), "Version 4.1");
  desktop.raise(form().Image1.MouseMove);
  EXPECT_EQ(form().MousePointer_.get(), MousePointer::noDrop);
  form().Form_MouseMove();
  EXPECT_EQ(form().MousePointer_.get(), MousePointer::standard);
  desktop.raise(form().cmdOK.Click);
  EXPECT_EQ(desktop.client->loadedForm<frmAbout>(), nullptr);
}

TEST_F(About, InformationTool) {
  struct Case {
    const char* what;
    std::optional<RegistryValue> first;
    std::optional<RegistryValue> second;
    std::string existing;
    std::string started;  // empty: the box
    std::size_t keysRead;
  };
  const std::string folderPath = R"(C:\Tools\MSINFO32.EXE)";
  for (const Case& each : {
           Case{"no key at all", {}, {}, folderPath, "", 2},
           Case{"first key", RegistryValue{1, R"(C:\info.exe)"}, RegistryValue{1, R"(C:\Tools)"},
                folderPath, R"(C:\info.exe)", 1},
           Case{"with its NUL", RegistryValue{1, std::string("info\0", 5)}, {}, "", "info", 1},
           Case{"second key", {}, RegistryValue{1, R"(C:\Tools)"}, folderPath, folderPath, 2},
           Case{"second key, no file", {}, RegistryValue{1, R"(C:\Tools)"}, R"(C:\Tools)", "", 2},
           Case{"neither a string nor a number", RegistryValue{3, "info"},
                RegistryValue{1, R"(C:\Tools)"}, folderPath, "", 1},
           Case{"empty", RegistryValue{1, ""}, {}, "", "", 1},
       }) {
    SCOPED_TRACE(each.what);
    desktop.registry.keys.clear();
    desktop.registry.asked.clear();
    if (each.first) desktop.registry.keys[kFirstKey]["PATH"] = *each.first;
    if (each.second) desktop.registry.keys[kSecondKey]["MSINFO"] = *each.second;
    desktop.registry.existing = {each.existing};
    desktop.boxes.clear();
    desktop.started.clear();
    desktop.raise(form().cmdSysInfo.Click);
    EXPECT_EQ(desktop.registry.asked.size(), each.keysRead);
    EXPECT_EQ(desktop.registry.open, 0);
    if (!each.started.empty()) {
      EXPECT_THAT(desktop.started,
                  ElementsAre(TestDesktop::Started{each.started, WindowStyle::maximizedFocus}));
      EXPECT_THAT(desktop.boxes, IsEmpty());
      // A tool that won't start ends in the same box.
      desktop.lastStartFailed();
      ASSERT_EQ(desktop.boxes.size(), 1U);
      EXPECT_EQ(desktop.boxes[0].text, "System Information Is Unavailable At This Time");
    } else {
      EXPECT_THAT(desktop.started, IsEmpty());
      ASSERT_EQ(desktop.boxes.size(), 1U);
      EXPECT_EQ(desktop.boxes[0].text, "System Information Is Unavailable At This Time");
      EXPECT_EQ(desktop.boxes[0].style, box_style::kPlain);
    }
  }
}

TEST_F(About, ValuesByTheirType) {
  struct Case {
    RegistryValue value;
    bool read;
    std::string text;
  };
  for (const Case& each : {
           Case{{1, std::string("two words\0", 10)}, true, "two words"},
           Case{{1, std::string("\0\0", 2)}, true, std::string(1, '\0')},
           Case{{4, "\x1F\xA0\x03\xC4"}, true, "&hC43A01F"},
           // The highest byte is zero and goes like a string's NUL; single digits have no zero.
           Case{{4, std::string("\x01\0\0\0", 4)}, true, "&h001"},
           Case{{7, "a list"}, true, "before"},
           Case{{1, std::string(1024, 'x')}, true, std::string(1024, 'x')},
           Case{{1, std::string(1025, 'x')}, false, ""},
       }) {
    desktop.registry.keys["Key"]["Value"] = each.value;
    std::string text = each.value.type == 7 ? "before" : "";
    EXPECT_EQ(form().GetKeyValue(registry_key::HKEY_LOCAL_MACHINE, "Key", "Value", text),
              each.read);
    EXPECT_EQ(text, each.text);
  }
  std::string text = "before";
  EXPECT_FALSE(form().GetKeyValue(registry_key::HKEY_LOCAL_MACHINE, "Key", "Other", text));
  EXPECT_EQ(text, "");
  EXPECT_EQ(desktop.registry.open, 0);
}

}  // namespace
}  // namespace kelvaron::testing
