// The receiving side against whoever connects to it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>

#include "peer/transfer.h"
#include "tests/peer/two_desks.h"

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
  /// Connects as somebody who may say anything.
  Socket& connect() {
    hostile = sockets.makeSocket();
    bool connected = false;
    hostile->onConnect = [&] { connected = true; };
    hostile->Connect("127.0.0.1", port());
    EXPECT_TRUE(until([&] { return connected; }));
    hostile->onConnect = nullptr;
    return *hostile;
  }
  /// Says each piece in a turn of its own.
  void say(const std::vector<std::string>& pieces) {
    for (const std::string& piece : pieces) {
      if (hostile->State() == SocketState::connected) hostile->SendData(piece);
      loop.runUntil([] { return false; }, std::chrono::milliseconds(5));
    }
  }
  /// Whether another sender is heard.
  bool heard() {
    choose("heard", "yes");
    ann.raise(sender().Btn_Send.Click);
    const bool came = until([&] { return contentOf(arrived("heard")) == "yes"; });
    bob.raise(receiver().Timer1.Tick);
    return came;
  }
  std::vector<std::string> files() { return namesIn(bob.folder.path() / "received"); }

  NativeSocketPort sockets{loop};
  std::unique_ptr<Socket> hostile;
};

std::vector<std::string> byteByByte(const std::string& text) {
  std::vector<std::string> pieces;
  for (const char byte : text) pieces.emplace_back(1, byte);
  return pieces;
}

TEST_F(Receiver, ContentIsWhatStandsBehindTheHeaderHoweverItComes) {
  const std::string marker = "FILEINFO|3|other|abc";
  const std::string bars("|\r\n|\0|", 6);
  struct Case {
    const char* what;
    std::vector<std::string> pieces;
    std::string name;
    std::string content;
  };
  const Case cases[] = {
      {"header alone, then content", {"FILEINFO|5|a.txt|", "hello"}, "a.txt", "hello"},
      {"all at once", {"FILEINFO|5|b.txt|hello"}, "b.txt", "hello"},
      {"byte by byte", byteByByte("FILEINFO|5|c.txt|hello"), "c.txt", "hello"},
      {"header cut, content behind it", {"FILEINFO|", "5|d.t", "xt|he", "llo"}, "d.txt", "hello"},
      {"content that begins with the marker", {"FILEINFO|20|e|", marker}, "e", marker},
      {"content with bars and line ends", {"FILEINFO|6|f|" + bars}, "f", bars},
      {"more than announced", {"FILEINFO|3|g|abcdef", marker}, "g", "abc"},
      {"leading zeros", {"FILEINFO|0003|h|abc"}, "h", "abc"},
      {"nothing, and more", {"FILEINFO|0|i|abc"}, "i", ""},
  };
  for (const Case& each : cases) {
    connect();
    say(each.pieces);
    EXPECT_TRUE(until([&] { return receiverShows(kWholeCaption); })) << each.what;
    EXPECT_EQ(contentOf(arrived(each.name)), each.content) << each.what;
    bob.raise(receiver().Timer1.Tick);
    EXPECT_TRUE(receiverListens()) << each.what;
    EXPECT_TRUE(receiverShows("Comlpete!")) << each.what;
  }
  EXPECT_THAT(files(), ElementsAre("a.txt", "b.txt", "c.txt", "d.txt", "e", "f", "g", "h", "i"));
}

TEST_F(Receiver, WhatIsNoHeaderIsCutOffAndTheNextIsHeard) {
  const std::vector<std::string> cases[] = {
      {"GET / HTTP/1.1\r\n\r\n"},
      {"fileinfo|3|a|abc"},
      {"F", "x"},
      {"FILEINFO:3|a|abc"},
      {"FILEINFO||a|"},
      {"FILEINFO|-1|a|"},
      {"FILEINFO|+1|a|"},
      {"FILEINFO| 1|a|"},
      {"FILEINFO|1e3|a|"},
      {"FILEINFO|0x10|a|"},
      {"FILEINFO|1.5|a|"},
      {"FILEINFO|2147483648|a|"},
      {"FILEINFO|99999999999999999999999|a|"},
      {"FILEINFO|3||abc"},
      {"FILEINFO|3|.|abc"},
      {"FILEINFO|3|..|abc"},
      {"FILEINFO|3|../..|abc"},
      {"FILEINFO|3|folder/|abc"},
      {"FILEINFO|3|C:|abc"},
      {"FILEINFO|3|C:\\|abc"},
      {"FILEINFO|3|" + std::string(5000, 'n') + "|abc"},
      {"FILEINFO|" + std::string(4000, '0'), std::string(4000, '0')},
  };
  for (const auto& pieces : cases) {
    bool closed = false;
    connect();
    hostile->onClose = [&] { closed = true; };
    hostile->onError = [&](int, const std::string&) { closed = true; };
    say(pieces);
    EXPECT_TRUE(until([&] { return closed; })) << pieces[0].substr(0, 60);
    EXPECT_TRUE(receiverListens());
  }
  EXPECT_THAT(files(), IsEmpty());
  EXPECT_TRUE(heard());
  EXPECT_THAT(bob.boxes, IsEmpty());
}

TEST_F(Receiver, NamesStayInTheFolder) {
  const std::string longName = std::string(300, 'n') + ".wad";
  struct Case {
    std::string sent;
    std::string kept;
  };
  const Case cases[] = {
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
      {longName, std::string(236, 'n') + ".wad"},
      {std::string(300, '\x80'),
       [] {
         std::string euros;
         for (int count = 0; count < 80; ++count) euros += "\xE2\x82\xAC";
         return euros;
       }()},
  };
  for (const Case& each : cases) {
    connect();
    say({"FILEINFO|3|" + each.sent + "|abc"});
    EXPECT_TRUE(until([&] { return receiverShows(kWholeCaption); })) << each.kept;
    EXPECT_THAT(files(), ElementsAre(each.kept));
    EXPECT_EQ(contentOf(arrived(each.kept)), "abc");
    std::filesystem::remove(arrived(each.kept));
    bob.raise(receiver().Timer1.Tick);
  }
  EXPECT_THAT(namesIn(bob.folder.path()), ElementsAre("received", "sounds"));
}

TEST_F(Receiver, BrokenTransferLeavesTheOlderFileAndWhatCameBesideIt) {
  std::filesystem::create_directory(bob.folder.path() / "received");
  writeFile(arrived("maps.wad"), "the old one");
  for (int broken = 0; broken < 2; ++broken) {
    connect();
    say({"FILEINFO|1000|maps.wad|", "half"});
    ASSERT_TRUE(until([&] { return receiverShows("Complete: 0 %"); }));
    hostile->Close();
    ASSERT_TRUE(until([&] { return receiver().Lbl_Status.Caption.get().starts_with("0 "); }));
    // Listening is for the user to begin again.
    bool refused = false;
    hostile->onError = [&](int, const std::string&) { refused = true; };
    hostile->Connect("127.0.0.1", port());
    EXPECT_TRUE(until([&] { return refused; }));
    bob.raise(receiver().Command1.Click);
    openReceiver();
  }
  EXPECT_THAT(files(), ElementsAre("maps.wad", "maps.wad.2.part", "maps.wad.part"));
  EXPECT_EQ(contentOf(arrived("maps.wad")), "the old one");
  EXPECT_EQ(contentOf(arrived("maps.wad.part")), "half");
  EXPECT_THAT(bob.boxes, IsEmpty());
  EXPECT_TRUE(heard());
}

TEST_F(Receiver, ProgressIsToldAsItComes) {
  connect();
  say({"FILEINFO|3|m|"});
  ASSERT_TRUE(until([&] { return receiver().FileBar.Max == 3; }));
  EXPECT_TRUE(receiverShows("Complete: 0%"));
  say({"a"});
  EXPECT_TRUE(receiverShows("Complete: 33 %"));
  say({"b"});
  EXPECT_TRUE(receiverShows("Complete: 66 %"));
  EXPECT_EQ(receiver().FileBar.Value.get(), 2);
  bob.raise(receiver().Timer1.Tick);
  EXPECT_TRUE(receiverShows("Complete: 66 %"));
  EXPECT_EQ(receiver().Lbl_Averages.Caption.get(), "Average: 0.0 / KBps");
}

TEST_F(Receiver, OneAtATime) {
  connect();
  say({"FILEINFO|6|first|abc"});
  ASSERT_TRUE(until([&] { return receiverShows("Complete: 50 %"); }));
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
  EXPECT_TRUE(until([&] { return receiverShows(kWholeCaption); }));
  EXPECT_EQ(contentOf(arrived("first")), "abcdef");
}

TEST_F(Receiver, WhoeverSaysNothingGivesWay) {
  connect();
  ASSERT_TRUE(until([&] { return receiver().headerLimit.Enabled.get(); }));
  EXPECT_TRUE(receiver().Lbl_Status.Caption.get().starts_with("7 "));
  EXPECT_EQ(receiver().headerLimit.Interval.get(), 30'000);
  bob.raise(receiver().headerLimit.Tick);
  EXPECT_TRUE(receiverListens());
  connect();
  say({"FILEINFO|3|m|a"});
  ASSERT_TRUE(until([&] { return receiverShows("Complete: 33 %"); }));
  EXPECT_FALSE(receiver().headerLimit.Enabled) << "content may take its time";
}

TEST_F(Receiver, FloodOfConnectionsThatSayNonsense) {
  for (int count = 0; count < 100; ++count) {
    connect();
    say({"nonsense"});
    ASSERT_TRUE(until([&] { return hostile->State() != SocketState::connected; })) << count;
  }
  EXPECT_THAT(files(), IsEmpty());
  EXPECT_TRUE(heard());
  EXPECT_THAT(bob.boxes, IsEmpty());
}

TEST_F(Receiver, EndlessSenderIsCutOffOnceTheFileIsWhole) {
  connect();
  bool cut = false;
  hostile->onClose = [&] { cut = true; };
  hostile->onError = [&](int, const std::string&) { cut = true; };
  hostile->onSendComplete = [&] {
    if (hostile->State() != SocketState::connected) return;
    hostile->SendData(std::string(100'000, 'x'));
  };
  hostile->SendData("FILEINFO|10|m|" + std::string(50'000, 'y'));
  ASSERT_TRUE(until([&] { return receiverShows(kWholeCaption); }));
  bob.raise(receiver().Timer1.Tick);
  EXPECT_TRUE(until([&] { return cut; }));
  EXPECT_EQ(contentOf(arrived("m")), std::string(10, 'y'));
}

TEST_F(Receiver, MissingFolderIsMadeAgain) {
  std::filesystem::remove_all(bob.folder.path() / "received");
  EXPECT_TRUE(heard());
}

TEST_F(Receiver, FileThatCannotBeMadeIsToldAndTheConnectionClosed) {
  std::filesystem::remove_all(bob.folder.path() / "received");
  writeFile(bob.folder.path() / "received", "a file");
  connect();
  say({"FILEINFO|3|m|abc"});
  ASSERT_TRUE(until([&] { return !bob.boxes.empty(); }));
  EXPECT_EQ(bob.boxes[0].style, box_style::kCritical);
  EXPECT_THAT(bob.boxes[0].text, HasSubstr("The file m cannot be written"));
  EXPECT_TRUE(until([&] { return hostile->State() != SocketState::connected; }));
}

TEST_F(Receiver, DiskThatTakesNoMoreIsToldAndWhatCameStays) {
  rlimit before{};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
  const auto ignored = ::signal(SIGXFSZ, SIG_IGN);
  rlimit tight = before;
  tight.rlim_cur = 10;
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &tight), 0);
  connect();
  say({"FILEINFO|20|m|", "0123456789", "0123456789"});
  EXPECT_TRUE(until([&] { return !bob.boxes.empty(); }));
  ::setrlimit(RLIMIT_FSIZE, &before);
  ::signal(SIGXFSZ, ignored);
  EXPECT_THAT(bob.boxes[0].text, HasSubstr("The file m cannot be written: File too large"));
  EXPECT_TRUE(until([&] { return hostile->State() != SocketState::connected; }));
  EXPECT_EQ(contentOf(arrived("m.part")), "0123456789");
  EXPECT_FALSE(receiverShows(kWholeCaption));
}

TEST_F(Receiver, NameThatAFolderHasIsToldAndTheContentKept) {
  std::filesystem::create_directories(arrived("m") / "full");
  connect();
  say({"FILEINFO|3|m|abc"});
  ASSERT_TRUE(until([&] { return !bob.boxes.empty(); }));
  EXPECT_THAT(bob.boxes[0].text, HasSubstr("It is in m.part."));
  EXPECT_EQ(contentOf(arrived("m.part")), "abc");
  EXPECT_FALSE(receiverShows(kWholeCaption));
}

TEST_F(Receiver, PortInUseIsToldAndTheFormStays) {
  const std::string before = receiver().Lbl_Status.Caption;
  auto& second = ann.client->form<Frm_Client>();
  ann.boxes.clear();
  second.Txt_Port.Text = receiver().Txt_Port.Text.get();
  const std::string status = second.Lbl_Status.Caption;
  ann.raise(second.Btn_Listen.Click);
  second.Txt_Port.Text = "fifty";
  ann.raise(second.Btn_Listen.Click);
  ASSERT_EQ(ann.boxes.size(), 2U);
  EXPECT_EQ(ann.boxes[0].text, "The port is already in use");
  EXPECT_EQ(ann.boxes[1].text, "The port \"fifty\" is not a number");
  for (const Box& box : ann.boxes) EXPECT_EQ(box.style, box_style::kCritical);
  EXPECT_EQ(second.Lbl_Status.Caption.get(), status);
}

TEST_F(Receiver, ClosedInTheMiddleClosesFileAndConnection) {
  connect();
  say({"FILEINFO|6|m|abc"});
  ASSERT_TRUE(until([&] { return receiverShows("Complete: 50 %"); }));
  bob.raise(receiver().Command1.Click);
  EXPECT_EQ(bob.client->loadedForm<Frm_Client>(), nullptr);
  EXPECT_TRUE(until([&] { return hostile->State() != SocketState::connected; }));
  EXPECT_EQ(contentOf(arrived("m.part")), "abc");
}

TEST(TransferTexts, GetField) {
  const std::string_view header = "FILEINFO|2048|maps.wad|rest";
  const std::string_view expected[] = {"", "FILEINFO", "2048", "maps.wad", "", ""};
  for (int position = 0; position < 6; ++position) {
    EXPECT_EQ(GetField(header, position), expected[position]) << position;
  }
  EXPECT_EQ(GetField("", 1), "");
  EXPECT_EQ(GetField("||", 2), "");
}

}  // namespace
}  // namespace kelvaron::testing
