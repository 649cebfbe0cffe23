// The connection's life: lost, failed, left and taken up again.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/client_test.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Connection : public ClientTest {
 protected:
};

TEST_F(Connection, LostIsToldInBoldRedAndNothingElseChanges) {
  server.say("Users\tann\r\nAnnounce\tbefore\r\n");
  ASSERT_TRUE(desktop.until([&] { return desktop.chat() == "before\n"; }));
  server.hangUp();
  ASSERT_TRUE(desktop.until([&] { return offline(); }));
  StyledText& view = desktop.room().txtOutput.Content;
  EXPECT_EQ(view.line(1), "* Connection to the server has been lost!");
  EXPECT_EQ(view.run(1, 0).style, (TextStyle{Color{255, 0, 0}, true}));
  EXPECT_FALSE(view.style().bold);
  EXPECT_THAT(desktop.room().List1.entries(), ElementsAre("ann"));
  EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(Connection, ReconnectGoesToTheServerOfTheLogin) {
  server.hangUp();
  ASSERT_TRUE(desktop.until([&] { return offline(); }));
  desktop.client->serverAddress = "127.0.0.7";  // as chosen at login
  desktop.client->UserName = "bob";
  desktop.raise(desktop.room().mnuConnect.Click);
  ASSERT_TRUE(desktop.until([&] { return server.lines.size() == 2; }));
  EXPECT_THAT(server.lines, ElementsAre("Name\tbob\t127.0.0.1", "MOTD"));
  EXPECT_EQ(desktop.sockets.hosts.back(), "127.0.0.7");
  EXPECT_EQ(server.connections, 2);
}

TEST_F(Connection, ReconnectAfterAGrantNamesThePlainNickname) {
  server.say("STATUSTEXT\t1\tModerator Privlidges Granted - You are now a moderator.\r\n");
  ASSERT_TRUE(desktop.until([&] {
    return desktop.room().Label1.Caption.get() ==
           "\xA5"
           "bob";
  }));
  desktop.raise(desktop.room().mnuConnect.Click);
  ASSERT_TRUE(desktop.until([&] { return server.lines.size() == 2; }));
  EXPECT_EQ(server.lines[0], "Name\tbob\t127.0.0.1");
}

TEST_F(Connection, DisconnectSendsNothingAndEmptiesTheRoom) {
  for (MenuItem* entry : {&desktop.room().mnuDisconnect, &desktop.room().dconnect}) {
    server.say("Users\tann\r\nAnnounce\thi\r\n");
    ASSERT_TRUE(desktop.until([&] { return !desktop.chat().empty(); }));
    desktop.raise(entry->Click);
    EXPECT_EQ(desktop.chat(), "");
    EXPECT_THAT(desktop.room().List1.entries(), IsEmpty());
    EXPECT_TRUE(offline());
    desktop.raise(desktop.room().mnuConnect.Click);
    ASSERT_TRUE(desktop.until([&] { return server.lines.size() == 2; }));
    server.lines.clear();
  }
  EXPECT_EQ(desktop.chat(), "") << "closing from this side is no loss";
}

TEST_F(Connection, QuitSaysNoFarewellAndClosingTheWindowDoes) {
  TestDesktop other(loop, server.port());
  desktop.raise(desktop.room().mnuQuit.Click);
  EXPECT_TRUE(desktop.ended());
  EXPECT_THAT(server.lines, IsEmpty());

  ASSERT_TRUE(other.logIn("ann"));
  ASSERT_TRUE(other.until([&] { return server.lines.size() == 2; }));
  other.edge.run([&] { other.client->slots.unload(other.room()); });
  EXPECT_TRUE(other.ended());
  ASSERT_TRUE(loop.runUntil([&] { return server.lines.size() == 3; }, std::chrono::seconds(2)));
  EXPECT_EQ(server.lines[2], "ACTION\tann has become bored with life and left Kelvaron!");
}

TEST_F(Connection, ClosingTheWindowOfflineEndsAllTheSame) {
  server.hangUp();
  ASSERT_TRUE(desktop.until([&] { return offline(); }));
  desktop.edge.run([&] { desktop.client->slots.unload(desktop.room()); });
  EXPECT_TRUE(desktop.ended());
  EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(Connection, FailureIsToldAndEndsTheProgram) {
  server.refuse();
  desktop.raise(desktop.room().mnuConnect.Click);
  ASSERT_TRUE(desktop.until([&] { return desktop.ended(); }));
  ASSERT_EQ(desktop.boxes.size(), 1U);
  EXPECT_THAT(desktop.boxes[0].text, ::testing::StartsWith("Error: 10061 - "));
  EXPECT_EQ(desktop.boxes[0].style, 0);
  EXPECT_EQ(desktop.boxes[0].title, "Kelvaron");
}

TEST_F(Connection, FailureAtTheFirstLoginEndsTheProgramToo) {
  server.refuse();
  TestDesktop other(loop, server.port());
  start(*other.client);
  other.edge.run([&] { other.login().txtUserName.Text = "ann"; });
  other.raise(other.login().cmdOK.Click);
  EXPECT_TRUE(other.until([&] { return other.ended(); }));
  EXPECT_EQ(other.boxes.size(), 1U);
}

TEST_F(Connection, SilentServerLeavesAnEmptyRoom) {
  EXPECT_TRUE(desktop.shows<frmMain>());
  EXPECT_EQ(desktop.chat(), "");
  EXPECT_THAT(desktop.room().List1.entries(), IsEmpty());
}

}  // namespace
}  // namespace kelvaron::testing
