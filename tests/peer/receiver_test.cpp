// The receiving side against whoever connects to it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#ifndef _WIN32
#include <signal.h>
#include <sys/resource.h>
#endif

#include "tests/peer/two_desks.h"
#include "tests/support/raw_peer.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class Receiver : public TwoDesks {
 protected:
  void SetUp() override {
    TwoDesks::SetUp();
    openReceiver();
  }
  /// Connects as somebody who may say anything, and says each piece in a turn of its own.
  void connect(const std::vector<std::string>& pieces = {}) {
    hostile = sockets.makeSocket();
    bool connected = false;
    hostile->onConnect = [&] { connected = true; };
    hostile->Connect("127.0.0.1", port());
    EXPECT_TRUE(until([&] { return connected; }));
    hostile->onConnect = nullptr;
    say(pieces);
  }
  void say(const std::vector<std::string>& pieces) {
    for (const std::string& piece : pieces) {
      if (hostile->State() == SocketState::connected) hostile->SendData(piece);
      loop.runUntil([] { return false; }, std::chrono::milliseconds(5));
    }
  }
  bool cutOff() {
    return until([&] { return hostile->State() != SocketState::connected; });
  }
  /// Whether another sender is heard.
  bool heard() {
    choose("heard", "yes");
    ann.raise(sender().Btn_Send.Click);
    const bool came = until([&] { return contentOf(arrived("heard")) == "yes"; });
    bob.raise(receiver().Timer1.Tick);
    return came;
  }
  /// Says the pieces and is cut off with a box that tells why.
  void fails(const std::vector<std::string>& pieces, const char* why) {
    connect(pieces);
    ASSERT_TRUE(until([&] { return !bob.boxes.empty(); }));
    EXPECT_EQ(bob.boxes[0].style, box_style::kCritical);
    EXPECT_THAT(bob.boxes[0].text, HasSubstr(why));
    EXPECT_TRUE(cutOff());
    EXPECT_NE(complete(), kWholeCaption);
  }
  std::set<std::string> files() { return namesIn(bob.folder.path() / "received"); }

  NativeSocketPort sockets{loop};
  std::unique_ptr<Socket> hostile;
};

TEST_F(Receiver, ContentIsWhatStandsBehindTheHeaderHoweverItComes) {
  const std::string marker = "FILEINFO|3|other|abc";
  const std::string bars("|\r\n|\0|", 6);
  const std::tuple<std::vector<std::string>, const char*, std::string> cases[] = {
      {{"FILEINFO|5|a.txt|", "hello"}, "a.txt", "hello"},
      {{"FILEINFO|5|b.txt|hello"}, "b.txt", "hello"},
      {{"F", "I", "L", "E", "I", "N", "F", "O", "|", "1", "|", "c", "|", "h"}, "c", "h"},
      {{"FILEINFO|", "5|d.t", "xt|he", "llo"}, "d.txt", "hello"},
      {{"FILEINFO|20|e|", marker}, "e", marker},
      {{"FILEINFO|6|f|" + bars}, "f", bars},
      {{"FILEINFO|3|g|abcdef", marker}, "g", "abc"},
      {{"FILEINFO|0003|h|abc"}, "h", "abc"},
      {{"FILEINFO|0|i|abc"}, "i", ""},
  };
  for (const auto& [pieces, name, content] : cases) {
    SCOPED_TRACE(name);
    connect(pieces);
    EXPECT_TRUE(completes());
    EXPECT_EQ(contentOf(arrived(name)), content);
    bob.raise(receiver().Timer1.Tick);
    EXPECT_TRUE(receiverListens());
    EXPECT_EQ(complete(), "Comlpete!");
  }
  EXPECT_THAT(files(), ElementsAre("a.txt", "b.txt", "c", "d.txt", "e", "f", "g", "h", "i"));
}

TEST_F(Receiver, WhatIsNoHeaderIsCutOffAndTheNextIsHeard) {
  std::vector<std::vector<std::string>> cases = {
      {"F", "x"},
      {"FILEINFO|3|" + std::string(5000, 'n') + "|abc"},
      {"FILEINFO|" + std::string(4000, '0'), std::string(4000, '0')}};
  for (const char* header :
       {"GET / HTTP/1.1\r\n\r\n", "fileinfo|3|a|abc", "FILEINFO:3|a|abc", "FILEINFO||a|",
        "FILEINFO|-1|a|", "FILEINFO|+1|a|", "FILEINFO| 1|a|", "FILEINFO|1e3|a|", "FILEINFO|0x10|a|",
        "FILEINFO|1.5|a|", "FILEINFO|2147483648|a|", "FILEINFO|99999999999999999999999|a|",
        "FILEINFO|3||abc", "FILEINFO|3|.|abc", "FILEINFO|3|..|abc", "FILEINFO|3|../..|abc",
        "FILEINFO|3|folder/|abc", "FILEINFO|3|C:|abc", "FILEINFO|3|C:\\|abc"}) {
    cases.push_back({header});
  }
  cases.resize(cases.size() + 100, {"nonsense"});
  for (const auto& pieces : cases) {
    connect(pieces);
    EXPECT_TRUE(cutOff()) << pieces[0].substr(0, 60);
    EXPECT_TRUE(receiverListens());
  }
  EXPECT_THAT(files(), IsEmpty());
  EXPECT_TRUE(heard());
  EXPECT_THAT(bob.boxes, IsEmpty());
}

TEST_F(Receiver, NamesStayInTheFolder) {
  std::string euros;
  for (int count = 0; count < 80; ++count) euros += "\xE2\x82\xAC";
  const std::pair<std::string, std::string> cases[] = {
      {"../up.wad", "up.wad"},
      {"/etc/passwd", "passwd"},
      {"..\\..\\win.ini", "win.ini"},
      {"C:\\GAMES\\doom.wad", "doom.wad"},
      {"D:x.wad", "x.wad"},
      {"a/b\\cc:d", "cc:d"},
      {"C:D:deep", "deep"},
      {"line\r\nend\x1B[31m", "line__end_[31m"},
      {std::string("nul\0.exe", 8), "nul_.exe"},
      {"..hidden..", "..hidden.."},
      {"m\xE9lange.wad", "m\xC3\xA9lange.wad"},
      {std::string(300, 'n') + ".wad", std::string(236, 'n') + ".wad"},
      {std::string(300, '\x80'), euros},
  };
  for (const auto& [sent, kept] : cases) {
    connect({"FILEINFO|3|" + sent + "|abc"});
    EXPECT_TRUE(completes()) << kept;
    EXPECT_THAT(files(), ElementsAre(kept));
    EXPECT_EQ(contentOf(arrived(kept)), "abc");
    std::filesystem::remove(arrived(kept));
    bob.raise(receiver().Timer1.Tick);
  }
  EXPECT_THAT(namesIn(bob.folder.path()), ElementsAre("received", "sounds"));
}

TEST_F(Receiver, BrokenTransferLeavesTheOlderFileAndWhatCameBesideIt) {
  writeFile(arrived("maps.wad"), "the old one");
  for (const auto leave : {&RawPeer::close, &RawPeer::reset}) {
    RawPeer peer(port());
    peer.send("FILEINFO|1000|maps.wad|half");
    ASSERT_TRUE(until([&] { return files().contains("maps.wad.part"); }));
    (peer.*leave)();
    ASSERT_TRUE(until([&] { return receiver().Lbl_Status.Caption.get().starts_with("0 "); }));
    EXPECT_ANY_THROW(RawPeer{port()}) << "listening is for the user to begin again";
    bob.raise(receiver().Command1.Click);
    openReceiver();
    EXPECT_THAT(files(), ElementsAre("maps.wad", "maps.wad.part"));
    EXPECT_EQ(contentOf(arrived("maps.wad")), "the old one");
    EXPECT_EQ(contentOf(arrived("maps.wad.part")), "half");
    std::filesystem::remove(arrived("maps.wad.part"));
    EXPECT_THAT(bob.boxes, IsEmpty());
    EXPECT_TRUE(heard());
    std::filesystem::remove(arrived("heard"));
  }
}

TEST_F(Receiver, ProgressIsToldAsItComes) {
  connect({"FILEINFO|3|m|"});
  ASSERT_TRUE(until([&] { return receiver().FileBar.Max == 3; }));
  EXPECT_EQ(complete(), "Complete: 0%");
  say({"a"});
  EXPECT_EQ(complete(), "Complete: 33 %");
  say({"b"});
  EXPECT_EQ(complete(), "Complete: 66 %");
  EXPECT_EQ(receiver().FileBar.Value.get(), 2);
  bob.raise(receiver().Timer1.Tick);
  EXPECT_EQ(complete(), "Complete: 66 %");
  EXPECT_EQ(receiver().Lbl_Averages.Caption.get(), "Average: 0.0 / KBps");
}

TEST_F(Receiver, OneAtATime) {
  connect({"FILEINFO|6|first|abc"});
  ASSERT_TRUE(completes("Complete: 50 %"));
  // While one is heard the others find nobody, however many they are.
  std::vector<std::unique_ptr<Socket>> others;
  int refused = 0;
  for (int count = 0; count < 200; ++count) {
    others.push_back(sockets.makeSocket());
    others.back()->onError = [&](int, const std::string&) { ++refused; };
    others.back()->Connect("127.0.0.1", port());
  }
  EXPECT_TRUE(until([&] { return refused == 200; }));
  say({"def"});
  EXPECT_TRUE(completes());
  EXPECT_EQ(contentOf(arrived("first")), "abcdef");
}

TEST_F(Receiver, WhoeverSaysNothingGivesWay) {
  auto time = std::chrono::steady_clock::now();
  bob.client->now = [&] { return time; };
  const auto pass = [&](int seconds) {
    time += std::chrono::seconds(seconds);
    bob.raise(receiver().Timer1.Tick);
  };
  // A look at the port ends nothing.
  connect();
  ASSERT_TRUE(until([&] { return receiver().Lbl_Status.Caption.get().starts_with("7 "); }));
  hostile->Close();
  EXPECT_TRUE(until([&] { return receiverListens(); }));
  connect({"FILE"});
  pass(29);
  EXPECT_TRUE(receiver().Lbl_Status.Caption.get().starts_with("7 "));
  pass(1);
  EXPECT_TRUE(receiverListens());
  EXPECT_TRUE(cutOff());
  connect({"FILEINFO|2147483647|m|a"});  // the longest
  ASSERT_TRUE(completes("Complete: 0 %"));
  pass(29);
  say({"b"});
  pass(29);
  EXPECT_TRUE(receiver().Lbl_Status.Caption.get().starts_with("7 ")) << "something has come";
  pass(1);
  EXPECT_TRUE(receiverListens());
  EXPECT_TRUE(cutOff());
  EXPECT_TRUE(heard());
}

TEST_F(Receiver, AnHonestSenderIsHeardBehindManyWhoSayNothing) {
  std::vector<RawPeer> silent;
  for (int count = 0; count < 400; ++count) {
    silent.emplace_back(port());
    loop.runOnce(std::chrono::milliseconds(0));
  }
  EXPECT_TRUE(heard());
}

TEST_F(Receiver, EndlessSenderIsCutOffOnceTheFileIsWhole) {
  connect();
  hostile->onSendComplete = [&] {
    if (hostile->State() == SocketState::connected) hostile->SendData(std::string(100'000, 'x'));
  };
  hostile->SendData("FILEINFO|10|m|" + std::string(50'000, 'y'));
  ASSERT_TRUE(completes());
  bob.raise(receiver().Timer1.Tick);
  EXPECT_TRUE(cutOff());
  EXPECT_EQ(contentOf(arrived("m")), std::string(10, 'y'));
}

TEST_F(Receiver, FileThatCannotBeMadeIsTold) {
  std::filesystem::remove(bob.folder.path() / "received");
  writeFile(bob.folder.path() / "received", "a file");
  fails({"FILEINFO|3|m|abc"}, "The file m cannot be written");
}

#ifndef _WIN32  // where nothing limits the length of a file
TEST_F(Receiver, DiskThatTakesNoMoreIsToldAndWhatCameStays) {
  rlimit before{};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
  const auto ignored = ::signal(SIGXFSZ, SIG_IGN);
  const rlimit tight{10, before.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &tight), 0);
  fails({"FILEINFO|20|m|", "0123456789", "0123456789"},
        "The file m cannot be written: File too large");
  ::setrlimit(RLIMIT_FSIZE, &before);
  ::signal(SIGXFSZ, ignored);
  EXPECT_EQ(contentOf(arrived("m.part")), "0123456789");
}
#endif

TEST_F(Receiver, NameThatAFolderHasIsToldAndTheContentKept) {
  std::filesystem::create_directories(arrived("m") / "full");
  fails({"FILEINFO|3|m|abc"}, "It is in m.part.");
  EXPECT_EQ(contentOf(arrived("m.part")), "abc");
}

TEST_F(Receiver, PortInUseIsToldAndTheFormStays) {
  auto& second = ann.client->form<Frm_Client>();
  ann.boxes.clear();
  const std::string status = second.Lbl_Status.Caption;
  for (const std::string& wanted : {receiver().Txt_Port.Text.get(), std::string("fifty")}) {
    second.Txt_Port.Text = wanted;
    ann.raise(second.Btn_Listen.Click);
  }
  ASSERT_EQ(ann.boxes.size(), 2U);
  EXPECT_EQ(ann.boxes[0].text, "The port is already in use");
  EXPECT_EQ(ann.boxes[1].text, "The port \"fifty\" is not a number");
  EXPECT_EQ(ann.boxes[0].style, box_style::kCritical);
  EXPECT_EQ(second.Lbl_Status.Caption.get(), status);
}

TEST_F(Receiver, ClosedInTheMiddleClosesFileAndConnection) {
  connect({"FILEINFO|6|m|abc"});
  ASSERT_TRUE(completes("Complete: 50 %"));
  bob.raise(receiver().Command1.Click);
  EXPECT_EQ(bob.client->loadedForm<Frm_Client>(), nullptr);
  EXPECT_TRUE(cutOff());
  EXPECT_EQ(contentOf(arrived("m.part")), "abc");
}

TEST(TransferTexts, GetField) {
  const std::string_view expected[] = {"", "FILEINFO", "2048", "maps.wad", "", ""};
  for (int position = 0; position < 6; ++position) {
    EXPECT_EQ(GetField("FILEINFO|2048|maps.wad|rest", position), expected[position]) << position;
  }
  EXPECT_EQ(GetField("", 1), "");
}

}  // namespace
}  // namespace kelvaron::testing
