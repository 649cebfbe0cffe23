// Files from one client to another, over real connections.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/peer/two_desks.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

class Transfer : public TwoDesks {
 protected:
  /// Sends it and waits until it is there.
  bool send(const std::string& name, std::string_view content) {
    choose(name, content);
    ann.raise(sender().Btn_Send.Click);
    return completes() && contentOf(arrived(name)) == content;
  }
  /// Lets the second pass in which both sides see the end.
  void tick() {
    ann.raise(sender().Timer1.Tick);
    bob.raise(receiver().Timer1.Tick);
  }
};

TEST_F(Transfer, EveryLengthComesWholeOneBehindTheOther) {
  openReceiver();
  for (const std::int64_t length : {0, 1, 2047, 2048, 2049, 131'072, 123'450, 5'242'880}) {
    const std::string digits = std::to_string(length);
    const std::string name = "maps " + digits + ".wad";
    SCOPED_TRACE(digits);
    ASSERT_TRUE(send(name, randomBytes(static_cast<std::size_t>(length)))) << complete();
    EXPECT_EQ(sender().Lbl_FileSize.Caption.get(), "Filesize: " + digits);
    EXPECT_EQ(sender().Lbl_FileName.Caption.get(), name);
    EXPECT_EQ(receiver().Lbl_FileSize.Caption.get(), "File Size: " + digits);
    EXPECT_EQ(receiver().Txt_File.Text.get(), bob.folder.path().string() + "/received/" + name);
    ASSERT_TRUE(until([&] { return sender().Lbl_Complete.Caption.get() == kWholeCaption; }));
    EXPECT_EQ(sender().FileBar.Max.get(), length);
    EXPECT_EQ(sender().FileBar.Value.get(), length);
    EXPECT_EQ(receiver().FileBar.Value.get(), length);
    tick();
    // The speed is that of the last second.
    const std::string speed = length == 123'450 ? "Average: 123.5 / KBps" : "Average: ";
    EXPECT_THAT(sender().Lbl_Averages.Caption.get(), StartsWith(speed));
    EXPECT_THAT(receiver().Lbl_Averages.Caption.get(), StartsWith(speed));
    EXPECT_EQ(sender().Lbl_Complete.Caption.get(), "Comlpete!");
    EXPECT_EQ(complete(), "Comlpete!");
    EXPECT_EQ(sender().FileBar.Value.get(), 0);
    EXPECT_EQ(receiver().FileBar.Value.get(), 0);
    EXPECT_TRUE(receiverListens());
  }
  tick();
  EXPECT_EQ(sender().Lbl_Averages.Caption.get(), "Average: 0.0 / KBps");
  EXPECT_EQ(namesIn(bob.folder.path() / "received").size(), 8U);
  EXPECT_THAT(ann.boxes, IsEmpty());
  EXPECT_THAT(bob.boxes, IsEmpty());
}

TEST_F(Transfer, GoesOnDuringAFloodOfChatAndBothAreWhole) {
  openReceiver();
  constexpr std::size_t kLines = 20'000;
  std::string flood;
  for (std::size_t line = 0; line < kLines; ++line) flood += "Message\tcy: \tline of the flood\r\n";
  bobsServer.say(flood);
  annsServer.say(flood);
  ASSERT_TRUE(send("flood.wad", randomBytes(5'242'880))) << complete();
  for (TestDesktop* desk : {&ann, &bob}) {
    EXPECT_TRUE(until([&] { return desk->room().txtOutput.Content.lineCount() == kLines + 1; }));
  }
}

TEST_F(Transfer, TakesTheNameOfAnOlderFileOnceItIsWhole) {
  openReceiver();
  writeFile(arrived("Maps.WAD"), std::string(9000, 'o'));
  send("maps.wad", "new");
  EXPECT_THAT(namesIn(bob.folder.path() / "received"), ElementsAre("Maps.WAD"));
  EXPECT_EQ(contentOf(arrived("Maps.WAD")), "new");
}

TEST_F(Transfer, IsArrangedThroughTheServer) {
  ann.room().List1.AddItem("bob[IG]");
  selectOnly(ann.room().List1, 0);
  const std::string marked = std::string("\xA5") + "ann";
  ann.room().Label1.Caption = marked;
  ann.raise(ann.room().mnuSendFile.Click);
  ASSERT_TRUE(until([&] { return !annsServer.lines.empty(); }));
  EXPECT_THAT(annsServer.lines, ElementsAre("GETIPFT\tbob[IG]\t" + marked));
  bobsServer.say("IPFILE\tx\r\nGETIPFT\t" + marked + "\r\n");
  ASSERT_TRUE(until([&] { return !bobsServer.lines.empty(); }));
  EXPECT_THAT(bobsServer.lines, ElementsAre("OKUSERFT\t" + marked + "\t127.0.0.1"));
  EXPECT_EQ(bob.client->loadedForm<Frm_Client>(), nullptr) << "only its user opens it";
  annsServer.say("RETURNFT\t127.0.0.9\r\n");
  ASSERT_TRUE(until([&] { return ann.shows<Frm_Server>(); }));
  EXPECT_EQ(sender().Txt_RemoteIP.Text.get(), "127.0.0.9");
  // It counts once: a second one doesn't change where the file goes.
  annsServer.say("RETURNFT\t127.0.0.8\r\nAnnounce\tbehind\r\n");
  ASSERT_TRUE(until([&] { return ann.chat().ends_with("behind\n"); }));
  EXPECT_EQ(sender().Txt_RemoteIP.Text.get(), "127.0.0.9");
  EXPECT_THAT(ann.boxes, IsEmpty());
  EXPECT_THAT(bob.boxes, IsEmpty());
}

TEST_F(Transfer, AFileThatIsDroppedOnAUserIsTheOneToSend) {
  const std::string path = (ann.folder.path() / "a.wad").string();
  writeFile(path, "12345");
  ann.room().List1.AddItem("bob");
  selectOnly(ann.room().List1, 0);
  ann.raise(ann.room().List1.FileDropped, path);
  ASSERT_TRUE(until([&] { return !annsServer.lines.empty(); }));
  EXPECT_THAT(annsServer.lines, ElementsAre("GETIPFT\tbob\tann"));
  annsServer.say("RETURNFT\t127.0.0.9\r\n");
  ASSERT_TRUE(until([&] { return ann.shows<Frm_Server>(); }));
  EXPECT_EQ(sender().Txt_File.Text.get(), path);
  EXPECT_EQ(sender().Lbl_FileSize.Caption.get(), "Filesize: 5");
  // It is for that one alone.
  sender().Txt_File.Text = "other";
  ann.raise(ann.room().List1.FileDropped, path);
  ann.raise(ann.room().mnuSendFile.Click);
  ann.answers = {true, true};
  annsServer.say("RETURNFT\t127.0.0.7\r\n");
  ASSERT_TRUE(until([&] { return sender().Txt_RemoteIP.Text.get() == "127.0.0.7"; }));
  EXPECT_EQ(sender().Txt_File.Text.get(), "other");
}

TEST_F(Transfer, ReceiverOpensFromTheMenuBelowTheSender) {
  auto& opened = ann.client->form<Frm_Client>();
  ann.raise(ann.room().fserv.Click);
  EXPECT_EQ(opened.Top.get(), 0) << "nobody has placed the sender yet";
  sender().Left = 300;
  sender().Top = 450;
  ann.raise(ann.room().fserv.Click);
  EXPECT_TRUE(ann.shows<Frm_Client>());
  EXPECT_FALSE(ann.shows<Frm_Server>());
  EXPECT_EQ(opened.Left.get(), 300);
  EXPECT_EQ(opened.Top.get(), 450 + sender().ScaleHeight.get());
  EXPECT_TRUE(until([&] { return opened.Txt_CurrentIP.Text.get() == "127.0.0.1"; }));
  EXPECT_EQ(opened.Txt_File.Text.get(), ann.folder.path().string() + "/received/");
  ann.raise(opened.Btn_Folder.Click);
  EXPECT_THAT(ann.pages, ElementsAre(opened.Txt_File.Text.get()));
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
  const std::string there = folder + "/there";
  writeFile(there, "x");
  writeFile(folder + "/long", "");
  std::filesystem::resize_file(folder + "/long", 2'147'483'648U);
  const std::tuple<std::string, const char*, const char*> cases[] = {
      {there, "0", "Select a Port first!"},
      {there, "http", "The port \"http\" is not a number"},
      {there, "", "The port \"\" is not a number"},
      {there, "65536", "The port 65536 is not between 0 and 65535"},
      {there, "-1", "The port -1 is not between 0 and 65535"},
      {"C:\\", "5050", "The file C:\\ was not found"},
      {folder, "5050", "cannot be read: Is a directory"},
      {"/dev/null", "5050", "is not a file that can be read"},
      {folder + "/long", "5050", "too long to be sent: it has 2147483648 bytes"},
  };
  for (const auto& [path, port, why] : cases) {
    SCOPED_TRACE(why);
    sender().Txt_File.Text = path;
    sender().Txt_Port.Text = port;
    ann.raise(sender().Btn_Send.Click);
    ASSERT_EQ(ann.boxes.size(), 1U);
    EXPECT_THAT(ann.boxes[0].text, HasSubstr(why));
    EXPECT_EQ(ann.boxes[0].style == box_style::kPlain, port == std::string("0"));
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
