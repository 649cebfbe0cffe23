// Start of the program and the login window.
#include <gmock/gmock.h>

#include "tests/support/client_test.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Login : public FreshClientTest {
 protected:
  // Presses Login with a name; the window is the one that is open.
  void press(const std::string& name) {
    desktop.edge.run([&] { desktop.login().txtUserName.Text = name; });
    desktop.raise(desktop.login().cmdOK.Click);
  }
};

TEST_F(Login, SecondInstanceSaysSoAndEndsBeforeAnyWindow) {
  desktop.anotherInstance = true;
  start(*desktop.client);
  EXPECT_TRUE(desktop.ended());
  EXPECT_FALSE(desktop.shows<frmLogin>());
  EXPECT_EQ(desktop.boxes.at(0).title, "Doh!");
  EXPECT_THAT(boxTexts(),
              ElementsAre("Im sorry but there is another Kelvaron open. Please close it "
                          "before opening another"));
}

TEST_F(Login, SessionThatCannotBeToldFromOthersIsToldOnce) {
  desktop.instanceProblem = "The session folder belongs to another user";
  start(*desktop.client);
  desktop.edge.run([&] { desktop.client->slots.touch<frmLogin>(*desktop.client).Form_Load(); });
  EXPECT_THAT(boxTexts(), ElementsAre("Kelvaron can not make sure that it runs only once. The "
                                      "session folder belongs to another user."));
  EXPECT_TRUE(desktop.shows<frmLogin>());
}

TEST_F(Login, NamesThatAreRefused) {
  const std::string spaces = "You are not allowed to use Spaces in your name. Try again";
  const std::string marks = "You are not allowed to use \xA5 or [] in your name. Try again";
  const std::string tooLong =
      "Too many characters in your name. Please limit your user name to 12 characters";
  const std::string connection =
      "An error occured while connecting. Please try again. The server may be down.";
  const std::vector<std::pair<std::string, std::string>> cases = {{"a b", spaces},
                                                                  {"a [b", spaces},
                                                                  {" ", spaces},
                                                                  {"\245bob", marks},
                                                                  {"a[b", marks},
                                                                  {"a]b", marks},
                                                                  {"1234567890123456", tooLong},
                                                                  {"[234567890123456", marks},
                                                                  {"", connection}};
  start(*desktop.client);
  for (const auto& [name, text] : cases) {
    press(name);
    EXPECT_THAT(boxTexts(), ElementsAre(text)) << name;
    EXPECT_TRUE(desktop.login().cmdOK.Enabled);
    EXPECT_EQ(desktop.login().Caption.get(), "Kelvaron Login");
  }
  EXPECT_THAT(desktop.sockets.hosts, IsEmpty());
}

TEST_F(Login, FifteenCharactersLogIn) {
  EXPECT_TRUE(desktop.logIn("123456789012345"));
  EXPECT_THAT(received(2), ElementsAre("Name\t123456789012345\t127.0.0.1", "MOTD"));
  EXPECT_EQ(desktop.client->loadedForm<frmLogin>(), nullptr);
  EXPECT_EQ(room().Label1.Caption.get(), "123456789012345");
  EXPECT_EQ(room().Label7.Caption.get(), "Ready To Play");
  EXPECT_THAT(desktop.sounds, ElementsAre("boom"));
}

TEST_F(Login, ChoiceOfServer) {
  using Boxes = std::vector<CheckBox frmLogin::*>;
  const std::vector<std::tuple<Boxes, Boxes, std::string>> cases = {
      {{}, {}, "Oregon USA (Master Server)"},
      {{&frmLogin::Check2}, {}, "Washington USA"},
      {{&frmLogin::Check3, &frmLogin::Check1}, {}, "Oregon USA (Master Server)"},
      // The keyboard can leave several set: the last one counts.
      {{}, {&frmLogin::Check2}, "Washington USA"},
      {{}, {&frmLogin::Check3, &frmLogin::Check2}, "Tournament Server"}};
  for (const auto& [pressed, setByKeyboard, location] : cases) {
    TestDesktop other(loop, server.port());
    start(*other.client);
    for (const auto box : pressed) {
      other.raise((other.login().*box).MouseDown, MouseButton::left);
      other.raise((other.login().*box).MouseUp, MouseButton::left);
    }
    for (const auto box : setByKeyboard) (other.login().*box).Value = 1;
    other.edge.run([&] { other.login().txtUserName.Text = "bob"; });
    other.raise(other.login().cmdOK.Click);
    EXPECT_EQ(other.room().Label6.Caption.get(), location);
    EXPECT_TRUE(other.until([&] { return other.shows<frmMain>(); }));
  }
}

TEST_F(Login, WithNoServerChosenTheConnectionErrorComesAndTheWindowIsReadyAgain) {
  start(*desktop.client);
  press("");  // makes the room, with no name
  desktop.login().Check1.Value = 0;
  bool atServers = false;
  desktop.login().Check1.onSetFocus = [&] { atServers = true; };
  press("bo");
  EXPECT_TRUE(std::exchange(desktop.login().Check1.onSetFocus, nullptr) && atServers);
  EXPECT_EQ(desktop.boxes.at(1).title, "Connection Error");
  EXPECT_EQ(desktop.boxes.at(1).style, 48);
  EXPECT_TRUE(desktop.login().cmdOK.Enabled);
  EXPECT_EQ(desktop.login().MousePointer_.get(), MousePointer::standard);
  desktop.login().Check1.Value = 1;
  press("bob");
  EXPECT_EQ(desktop.login().Caption.get(), "Kelvaron Login - Connecting...");
  EXPECT_EQ(desktop.login().txtServerIP.Text.get(), desktop.client->serverAddress);
  EXPECT_FALSE(desktop.login().cmdOK.Enabled);
  EXPECT_FALSE(desktop.login().cmdCancel.Enabled);
  EXPECT_FALSE(desktop.login().txtUserName.Enabled);
  EXPECT_EQ(desktop.login().MousePointer_.get(), MousePointer::hourglass);
  EXPECT_FALSE(desktop.shows<frmMain>());
  EXPECT_TRUE(desktop.until([&] { return desktop.shows<frmMain>(); }));
  EXPECT_EQ(room().Label1.Caption.get(), "");
  EXPECT_EQ(desktop.client->UserName, "bob");
}

TEST_F(Login, DoubleLeadsToASecondLoginUnderAnotherName) {
  ASSERT_TRUE(desktop.logIn("bob"));
  received(2);
  server.say("DOUBLE\r\n");
  ASSERT_TRUE(desktop.until([&] { return desktop.shows<frmLogin>(); }));
  EXPECT_TRUE(desktop.shows<frmMain>());
  EXPECT_EQ(desktop.login().txtUserName.Text.get(), "");
  EXPECT_EQ(desktop.login().Check1.Value.get(), 1);
  press("bobby");
  EXPECT_THAT(received(2), ElementsAre("Name\tbobby\t127.0.0.1", "MOTD"));
  EXPECT_FALSE(desktop.shows<frmLogin>());
  EXPECT_EQ(room().Label1.Caption.get(), "bob");
}

TEST_F(Login, CancelAndClosingTheWindowEndTheProgram) {
  start(*desktop.client);
  desktop.edge.run([&] { desktop.client->slots.unload(desktop.login()); });
  EXPECT_TRUE(desktop.ended());

  TestDesktop other(loop, server.port());
  start(*other.client);
  other.raise(other.login().cmdCancel.Click);
  EXPECT_TRUE(other.ended());

  // With the room open, closing the second login window leaves the room.
  TestDesktop third(loop, server.port());
  ASSERT_TRUE(third.logIn("bob"));
  third.edge.run([&] { third.client->form<frmLogin>().Show(); });
  third.edge.run([&] { third.client->slots.unload(third.login()); });
  EXPECT_FALSE(third.ended());
}

}  // namespace
}  // namespace kelvaron::testing
