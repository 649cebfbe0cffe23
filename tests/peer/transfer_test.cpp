// Files from one client to another, over real connections.
#include "peer/transfer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/peer/two_desks.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class Transfer : public TwoDesks {
 protected:
  /// Sends what is chosen and waits until it is there.
  ::testing::AssertionResult send(const std::string& name, std::string_view content) {
    choose(name, content);
    ann.raise(sender().Btn_Send.Click);
    if (!until([&] { return receiverShows(kWholeCaption); })) {
      return ::testing::AssertionFailure() << receiver().Lbl_Complete.Caption.get();
    }
    if (contentOf(arrived(name)) != content) {
      return ::testing::AssertionFailure() << "not the same bytes";
    }
    return ::testing::AssertionSuccess();
  }
  /// Lets the second pass in which both sides see the end.
  void tick() {
    ann.raise(sender().Timer1.Tick);
    bob.raise(receiver().Timer1.Tick);
  }
};

TEST_F(Transfer, EveryLengthComesWholeOneBehindTheOther) {
  openReceiver();
  for (const std::size_t length :
       {std::size_t{0}, std::size_t{1}, std::size_t{2047}, std::size_t{2048}, std::size_t{2049},
        std::size_t{131'072}, std::size_t{5'242'880}}) {
    const std::string digits = std::to_string(length);
    ASSERT_TRUE(send("maps " + digits + ".wad", randomBytes(length))) << length;
    EXPECT_EQ(sender().Lbl_FileSize.Caption.get(), "Filesize: " + digits);
    EXPECT_EQ(sender().Lbl_FileName.Caption.get(), "maps " + digits + ".wad");
    EXPECT_EQ(receiver().Lbl_FileSize.Caption.get(), "File Size: " + digits);
    EXPECT_EQ(receiver().Txt_File.Text.get(),
              bob.folder.path().string() + "/received/maps " + digits + ".wad");
    ASSERT_TRUE(until([&] { return sender().Lbl_Complete.Caption.get() == kWholeCaption; }));
    EXPECT_EQ(sender().FileBar.Max.get(), static_cast<std::int64_t>(length));
    EXPECT_EQ(sender().FileBar.Value.get(), static_cast<std::int64_t>(length));
    EXPECT_EQ(receiver().FileBar.Value.get(), static_cast<std::int64_t>(length));
    tick();
    EXPECT_EQ(sender().Lbl_Complete.Caption.get(), "Comlpete!");
    EXPECT_EQ(receiver().Lbl_Complete.Caption.get(), "Comlpete!");
    EXPECT_EQ(sender().FileBar.Value.get(), 0);
    EXPECT_EQ(receiver().FileBar.Value.get(), 0);
    EXPECT_TRUE(receiverListens());
  }
  EXPECT_THAT(namesIn(bob.folder.path() / "received"),
              ElementsAre("maps 0.wad", "maps 1.wad", "maps 131072.wad", "maps 2047.wad",
                          "maps 2048.wad", "maps 2049.wad", "maps 5242880.wad"));
  EXPECT_THAT(ann.boxes, IsEmpty());
  EXPECT_THAT(bob.boxes, IsEmpty());
}

TEST_F(Transfer, SpeedIsThatOfTheLastSecond) {
  openReceiver();
  ASSERT_TRUE(send("a", randomBytes(123'450)));
  tick();
  EXPECT_EQ(sender().Lbl_Averages.Caption.get(), "Average: 123.5 / KBps");
  EXPECT_EQ(receiver().Lbl_Averages.Caption.get(), "Average: 123.5 / KBps");
  tick();
  EXPECT_EQ(sender().Lbl_Averages.Caption.get(), "Average: 0.0 / KBps");
}

TEST_F(Transfer, GoesOnDuringAFloodOfChatAndBothAreWhole) {
  openReceiver();
  constexpr int kLines = 20'000;
  std::string flood;
  for (int line = 0; line < kLines; ++line) flood += "Message\tcy: \tline of the flood\r\n";
  bobsServer.say(flood);
  annsServer.say(flood);
  ASSERT_TRUE(send("flood.wad", randomBytes(5'242'880)));
  for (TestDesktop* desk : {&ann, &bob}) {
    EXPECT_TRUE(until(
        [&] { return desk->room().txtOutput.Content.lineCount() == std::size_t{kLines} + 1; }));
  }
}

TEST_F(Transfer, TakesTheNameOfAnOlderFileOnceItIsWhole) {
  openReceiver();
  std::filesystem::create_directory(bob.folder.path() / "received");
  writeFile(arrived("Maps.WAD"), std::string(9000, 'o'));
  choose("maps.wad", "new");
  ann.raise(sender().Btn_Send.Click);
  ASSERT_TRUE(until([&] { return receiverShows(kWholeCaption); }));
  EXPECT_THAT(namesIn(bob.folder.path() / "received"), ElementsAre("Maps.WAD"));
  EXPECT_EQ(contentOf(arrived("Maps.WAD")), "new");
}

TEST_F(Transfer, IsArrangedThroughTheServer) {
  ann.room().List1.AddItem("bob[IG]");
  selectOnly(ann.room().List1, 0);
  ann.room().Label1.Caption =
      "\xA5"
      "ann";
  ann.raise(ann.room().mnuSendFile.Click);
  ASSERT_TRUE(until([&] { return !annsServer.lines.empty(); }));
  EXPECT_THAT(annsServer.lines, ElementsAre("GETIPFT\tbob[IG]\t\xA5"
                                            "ann"));
  bobsServer.say(
      "IPFILE\tx\r\nGETIPFT\t\xA5"
      "ann\r\n");
  ASSERT_TRUE(until([&] { return !bobsServer.lines.empty(); }));
  EXPECT_THAT(bobsServer.lines, ElementsAre("OKUSERFT\t\xA5"
                                            "ann\t127.0.0.1"));
  EXPECT_EQ(bob.client->loadedForm<Frm_Client>(), nullptr) << "only its user opens it";
  annsServer.say("RETURNFT\t127.0.0.9\r\n");
  ASSERT_TRUE(until([&] { return ann.shows<Frm_Server>(); }));
  EXPECT_EQ(sender().Txt_RemoteIP.Text.get(), "127.0.0.9");
  EXPECT_THAT(bob.boxes, IsEmpty());
}

TEST_F(Transfer, ReceiverOpensFromTheMenuBelowTheSender) {
  sender().Left = 300;
  sender().Top = 450;
  ann.client->form<Frm_Client>().Txt_Port.Text = "0";
  ann.raise(ann.room().fserv.Click);
  ASSERT_TRUE(ann.shows<Frm_Client>());
  EXPECT_FALSE(ann.shows<Frm_Server>());
  const auto& opened = ann.client->form<Frm_Client>();
  EXPECT_EQ(opened.Left.get(), 300);
  EXPECT_EQ(opened.Top.get(), 450 + sender().ScaleHeight.get());
  EXPECT_TRUE(until([&] { return opened.Txt_CurrentIP.Text.get() == "127.0.0.1"; }));
  EXPECT_EQ(opened.Txt_File.Text.get(), ann.folder.path().string() + "/received/");
}

TEST_F(Transfer, LookUpOfTheOwnAddressFails) {
  const std::pair<LocalHostAnswer, std::string> cases[] = {
      {{"", 10050}, "Windows Socket Error  10050"}, {{"", 0}, "Winsock.dll error."}};
  for (const auto& [answer, text] : cases) {
    bob.localHost = answer;
    openReceiver();
    ASSERT_TRUE(until([&] { return !bob.boxes.empty(); }));
    EXPECT_EQ(bob.boxes.back().text, text);
    EXPECT_EQ(receiver().Txt_CurrentIP.Text.get(), "");
    bob.raise(receiver().Command1.Click);
    bob.boxes.clear();
  }
}

TEST_F(Transfer, SendMeetsObstaclesBeforeItConnects) {
  openReceiver();
  const std::string folder = ann.folder.path().string();
  writeFile(ann.folder.path() / "there", "x");
  std::filesystem::create_directory(ann.folder.path() / "sub");
  std::filesystem::resize_file(ann.folder.path() / "there", 1);
  writeFile(ann.folder.path() / "long", "");
  std::filesystem::resize_file(ann.folder.path() / "long", 2'147'483'648U);
  const std::string there = folder + "/there";
  struct Case {
    std::string path;
    std::string port;
    std::string text;
    int style;
  };
  const Case cases[] = {
      {there, "0", "Select a Port first!", box_style::kPlain},
      {there, "http", "The port \"http\" is not a number", box_style::kCritical},
      {there, "", "The port \"\" is not a number", box_style::kCritical},
      {there, "65536", "The port 65536 is not between 0 and 65535", box_style::kCritical},
      {there, "-1", "The port -1 is not between 0 and 65535", box_style::kCritical},
      {"C:\\", "5050", "The file C:\\ was not found", box_style::kCritical},
      {folder + "/sub", "5050", "cannot be read: Is a directory", box_style::kCritical},
      {"/dev/null", "5050", "is not a file that can be read", box_style::kCritical},
      {folder + "/long", "5050", "too long to be sent: it has 2147483648 bytes",
       box_style::kCritical},
  };
  for (const Case& each : cases) {
    sender().Txt_File.Text = each.path;
    sender().Txt_Port.Text = each.port;
    ann.raise(sender().Btn_Send.Click);
    ASSERT_EQ(ann.boxes.size(), 1U) << each.text;
    EXPECT_THAT(ann.boxes[0].text, HasSubstr(each.text));
    EXPECT_EQ(ann.boxes[0].style, each.style) << each.text;
    EXPECT_EQ(sender().Lbl_Status.Caption.get(), "winsock State") << "nothing was connected";
    ann.boxes.clear();
  }
}

TEST_F(Transfer, BrowseDismissedChangesNothing) {
  ann.raise(sender().Btn_Browse.Click);
  EXPECT_EQ(sender().Txt_File.Text.get(), "C:\\");
  EXPECT_EQ(sender().Lbl_FileSize.Caption.get(), "Filesize: 0 kb");
  choose("a.wad", "12345");
  ann.raise(sender().Btn_Browse.Click);
  EXPECT_EQ(sender().Txt_File.Text.get(), (ann.folder.path() / "a.wad").string());
  EXPECT_EQ(sender().Lbl_FileSize.Caption.get(), "Filesize: 5");
  ann.chosenFiles.emplace_back("/nowhere/b.wad");
  ann.raise(sender().Btn_Browse.Click);
  EXPECT_EQ(sender().Lbl_FileName.Caption.get(), "a.wad");
  EXPECT_THAT(ann.boxes, IsEmpty());
}

}  // namespace
}  // namespace kelvaron::testing
