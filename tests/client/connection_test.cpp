// The connection's life: lost, failed, left and taken up again.
#include <gmock/gmock.h>

#include "tests/support/client_test.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Connection : public ClientTest {
 protected:
  void reconnect() {
    desktop.raise(room().mnuConnect.Click);
    EXPECT_THAT(received(2), ElementsAre("Name\tbob\t127.0.0.1", "MOTD"));
  }
};

TEST_F(Connection, LostIsToldInBoldRedAndNothingElseChanges) {
  say("Users\tann\r\nAnnounce\tbefore\r\n");
  hangUp();
  const StyledText& view = room().txtOutput.Content;
  EXPECT_EQ(view.line(1), "* Connection to the server has been lost!");
  EXPECT_EQ(view.run(1, 0).style, (TextStyle{Color{255, 0, 0}, true}));
  EXPECT_FALSE(view.style().bold);
  EXPECT_THAT(room().List1.entries(), ElementsAre("ann"));
  EXPECT_FALSE(desktop.ended());
  // Without a connection the window closes all the same.
  desktop.edge.run([&] { desktop.client->slots.unload(room()); });
  EXPECT_TRUE(desktop.ended());
  EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(Connection, ReconnectGoesToTheServerOfTheLoginUnderThePlainNickname) {
  hangUp();
  desktop.client->serverAddress = "127.0.0.7";  // as chosen at login
  room().Label1.Caption = "\245bob";            // a moderator's
  reconnect();
  EXPECT_EQ(desktop.sockets.hosts.back(), "127.0.0.7");
  reconnect();
  EXPECT_EQ(server.connections, 3);
}

TEST_F(Connection, DisconnectSendsNothingAndEmptiesTheRoom) {
  for (MenuItem* entry : {&room().mnuDisconnect, &room().dconnect}) {
    say("Users\tann\r\nAnnounce\thi\r\n");
    desktop.raise(entry->Click);
    EXPECT_EQ(desktop.chat(), "");
    EXPECT_THAT(room().List1.entries(), IsEmpty());
    EXPECT_TRUE(offline());
    reconnect();
  }
  EXPECT_EQ(desktop.chat(), "") << "closing from this side is no loss";
}

TEST_F(Connection, QuitSaysNoFarewellAndClosingTheWindowDoes) {
  TestDesktop other(loop, server.port());
  desktop.raise(room().mnuQuit.Click);
  EXPECT_TRUE(desktop.ended());
  EXPECT_THAT(take(), IsEmpty());

  ASSERT_TRUE(other.logIn("ann"));
  ASSERT_TRUE(other.until([&] { return server.lines.size() == 2; }));
  other.edge.run([&] { other.client->slots.unload(other.room()); });
  EXPECT_TRUE(other.ended());
  ASSERT_TRUE(other.until([&] { return server.lines.size() == 3; }));
  EXPECT_EQ(server.lines[2], "ACTION\tann has become bored with life and left Kelvaron!");
}

TEST_F(Connection, FailureIsToldAndEndsTheProgram) {
  server.refuse();
  TestDesktop other(loop, server.port());
  start(*other.client);
  other.edge.run([&] { other.login().txtUserName.Text = "ann"; });
  other.raise(other.login().cmdOK.Click);
  desktop.raise(room().mnuConnect.Click);
  for (TestDesktop* each : {&desktop, &other}) {
    ASSERT_TRUE(desktop.until([&] { return each->ended(); }));
    EXPECT_EQ(each->boxes.size(), 1U);
    EXPECT_THAT(each->boxes.at(0).text, ::testing::StartsWith("Error: 10061 - "));
    EXPECT_EQ(each->boxes.at(0).title, "Kelvaron");
  }
}

}  // namespace
}  // namespace kelvaron::testing
