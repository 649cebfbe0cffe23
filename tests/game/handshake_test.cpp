// Offers and answers between host and guests, the last look, and the time in a game.
#include "session/sending.h"
#include "tests/game/player.h"

namespace kelvaron::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr const char* kDemoPrompt = "Enter Demo Name Here : NO Extension";

class Handshake : public Player {
 protected:
  void invite(const std::vector<std::string>& guests) {
    list(guests, static_cast<int>(guests.size()));
    click(room().Command1);
    tick(form<game1>().Check25);
    click(form<game1>().Command3);
    EXPECT_EQ(received().size(), 1U);
  }
  // Of each slot the red lamp and the green one.
  std::string lamps() {
    std::string seen;
    for (const Control* control : form<Form1>().Controls()) {
      if (control->kind != ControlKind::shape) continue;
      const Color fill = static_cast<const Shape*>(control)->FillColor;
      seen += fill == Color{255, 0, 0} ? 'r' : fill == Color{128, 255, 128} ? 'g' : '-';
    }
    return seen;
  }
  // The words of the seats that are taken.
  std::string answers() {
    std::string seen;
    for (const Label& answer : form<Form1>().Label2) {
      if (answer.container.asControl()->Enabled) seen += answer.Caption.get() + ' ';
    }
    return seen;
  }
};

TEST_F(Handshake, AnswersLightLampsOfExactNames) {
  ASSERT_NE(desktop.client->loadedForm<Form1>(), nullptr);
  EXPECT_FALSE(desktop.shows<Form1>());
  EXPECT_EQ(form<Form1>().Caption.get(), "Kelvaron");
  invite({"al", "bo", "cy[AW]", "di"});
  EXPECT_EQ(answers(), "asked asked asked asked ");
  say("XCEPT\tal\r\nDECLINE\tbo\r\nXCEPT\tcy\r\nXCEPT\tAL\r\nXCEPT\tnobody\r\n");
  EXPECT_EQ(lamps(), "-gr---------");
  say("DECLINE\tal\r\n");
  EXPECT_EQ(lamps(), "rgr---------");
  EXPECT_EQ(answers(), "declined declined asked asked ");
  // Entries with a tag match as they stand.
  say("XCEPT\tcy[AW]\r\n");
  EXPECT_EQ(lamps(), "rgr--g------");

  click(form<Form1>().Command1);
  EXPECT_THAT(received(), ElementsAre("START\tal", "START\tcy[AW]", "INGAME\tbob"));
  EXPECT_EQ(room().Label7.Caption.get(), "In a Game");
  EXPECT_THAT(started(), ElementsAre("/e/zdoom.exe -IWAD /w/doom.wad -host 5"));
  EXPECT_TRUE(desktop.shows<Form4>());
  EXPECT_EQ(desktop.client->loadedForm<Form1>(), nullptr);
  EXPECT_THAT(desktop.sounds, ::testing::Contains("/game"));

  // Answers that come too late.
  say("XCEPT\tbo\r\n");
  EXPECT_FALSE(desktop.shows<Form1>());
  EXPECT_EQ(form<Form1>().Caption.get(), "Awaiting Verification");
  say("DECLINE\tbo\r\n");
  EXPECT_TRUE(desktop.shows<Form1>());
  EXPECT_EQ(lamps(), "------------");
  EXPECT_EQ(form<Form1>().Label1[1].Caption.get(), "None");
}

TEST_F(Handshake, EmptySeatsAreNobodysAndAnInvitationBeginsDark) {
  say("XCEPT\tNone\r\n");
  EXPECT_EQ(lamps(), "------------") << "before anybody was invited";
  invite({"al", "bo"});
  say("XCEPT\tNone\r\nDECLINE\tNone\r\nXCEPT\tbo\r\nDECLINE\tal\r\n");
  EXPECT_EQ(lamps(), "r--g--------");
  invite({"cy"});
  EXPECT_EQ(lamps(), "------------");
  EXPECT_EQ(answers(), "asked ");
  say("XCEPT\tbo\r\n");
  EXPECT_EQ(lamps(), "------------") << "asked for the game before";
  click(form<Form1>().Command1);
  EXPECT_THAT(received(), ElementsAre("INGAME\tbob"));
}

TEST_F(Handshake, OfferShowsWhatItHoldsAndBuildsTheCommand) {
  say("GAME\tzdoom2\tmaps.wad\tNONE\t -fast\t10.0.0.7\tann\r\n");
  EXPECT_TRUE(desktop.shows<request>());
  const auto shown = [&] {
    const request& offer = form<request>();
    std::string texts;
    for (const TextBox* box :
         {&offer.Text1, &offer.Text2, &offer.Text3, &offer.Text4, &offer.Text5, &offer.Text6}) {
      texts += box->Text.get() + (box->Locked ? "|" : " can be changed|");
    }
    return texts;
  };
  EXPECT_EQ(shown(), "ann|ZDOOM / DOOM2|maps.wad|NONE| -fast|10.0.0.7|");
  EXPECT_EQ(room().Text1.Text.get(),
            "/e/zdoom.exe -iwad /w/doom2.wad -join 10.0.0.7 -file /w/extra\\maps.wad  -fast\r\n");
  // A second offer takes the place of the first.
  say("GAME\tgldoom\tNONE\tNONE\t\t10.0.0.8\tcy\r\n");
  EXPECT_EQ(shown(), "cy|GLDOOM / DOOM|NONE|NONE||10.0.0.8|");
  EXPECT_EQ(room().Text1.Text.get(), "/e/zdoomgl.exe -3dfx -iwad /w/doom.wad -join 10.0.0.8  \r\n");
  wait(1s);
  click(form<request>().Command1);
  EXPECT_THAT(received(), ElementsAre("XCEPT\tcy\tbob"));
  EXPECT_EQ(desktop.client->loadedForm<request>(), nullptr);
  EXPECT_THAT(room().txtOutput.Hint_.get().text, HasSubstr("cy's game. It begins when the host"));

  say("GAME\tquake\tNONE\tNONE\t\t10.0.0.8\tcy\r\n");
  EXPECT_EQ(form<request>().Text2.Text.get(), "");
  room().Label1.Caption = "\245bob";  // a moderator's
  click(form<request>().Command2);
  EXPECT_THAT(received(), ElementsAre("DECLINE\tcy\t\245bob"));
  EXPECT_EQ(desktop.client->loadedForm<request>(), nullptr);
}

TEST_F(Handshake, ShortOffersAndMissingConfigurations) {
  // A field short: nothing is shown, and the rest of the read is lost.
  server.say("GAME\tzdoom\tNONE\tNONE\t\t10.0.0.7\r\nUsers\tlost\r\n");
  say("");
  EXPECT_FALSE(desktop.shows<request>());
  EXPECT_THAT(room().List1.entries(), IsEmpty());
  // Behind a room line faults are passed over step by step.
  say("Message\tann: \thi\r\nGAME\tzdoom\tNONE\r\n");
  EXPECT_TRUE(desktop.shows<request>());
  EXPECT_EQ(form<request>().Text2.Text.get(), "ZDOOM / DOOM");
  EXPECT_EQ(room().Text1.Text.get(), "/e/zdoom.exe -iwad /w/doom.wad -join  -file \\ \r\n");
  desktop.edge.run([&] { desktop.client->slots.unload(form<request>()); });

  std::filesystem::remove(desktop.folder.path() / kGameConfigFile);
  // Each missing file is told of for itself.
  for (const std::string& line : {"GETPROFILE\tcy\r\n" + kOffer, kOffer}) {
    server.say(line);
    say("");
    EXPECT_THAT(boxTexts(), ElementsAre(HasSubstr("Someone is trying to view your profile")));
  }
  EXPECT_FALSE(desktop.shows<request>());
}

TEST_F(Handshake, WithoutAConnectionNothingIsLost) {
  invite({"al"});
  say("XCEPT\tal\r\n" + kOffer);
  hangUp();
  click(form<Form1>().Command1);
  EXPECT_TRUE(desktop.shows<Form1>());
  EXPECT_EQ(lamps(), "-g----------");
  click(form<request>().Command1);
  EXPECT_TRUE(desktop.shows<request>());
  click(form<request>().Command2);
  EXPECT_FALSE(desktop.shows<request>());
  EXPECT_THAT(boxTexts(), ElementsAre(kNothingSent, kNothingSent, kNothingSent));
  EXPECT_THAT(started(), IsEmpty());
}

TEST_F(Handshake, AnswersGoToTheOfferThatWasRead) {
  const std::string second = "GAME\tzdoom\tNONE\tNONE\t\t10.0.0.8\tcy\r\n";
  for (const bool accepts : {true, false}) {
    const std::string word = accepts ? "XCEPT\t" : "DECLINE\t";
    say(kOffer);
    request& form = Player::form<request>();
    CommandButton& button = accepts ? form.Command1 : form.Command2;
    say(second);
    click(button);
    EXPECT_THAT(received(), ElementsAre(word + "ann\tbob")) << "too quick to be for the second";
    EXPECT_EQ(form.Text1.Text.get(), "cy") << "which nobody has answered";
    click(button);
    EXPECT_THAT(sent(), IsEmpty()) << "a double click";
    // The button goes down on one offer and comes up on another.
    wait(1s);
    desktop.raise(button.Pressed);
    say(kOffer);
    wait(1s);
    click(button);
    EXPECT_THAT(received(), ElementsAre(word + "cy\tbob"));
    wait(1s);
    click(button);
    EXPECT_THAT(received(), ElementsAre(word + "ann\tbob"));
    EXPECT_EQ(desktop.client->loadedForm<request>(), nullptr);
  }
}

TEST_F(Handshake, WhatWasNotAcceptedIsAskedAbout) {
  // The latest offer, and the name that each question has; the second one comes behind the
  // acceptance of ann's.
  const std::pair<std::string, std::vector<std::string>> cases[] = {
      {"GAME\tzdoom\tNONE\tNONE\t\t10.0.0.8\tcy\r\n", {"\"cy\"", "that of \"ann\""}},
      {"GAME\tzdoom\tNONE\tNONE\t\t10.0.0.7\tcy\r\n", {"\"cy\""}},
      {"GAME\tzdoom\tNONE\tNONE\t -fast\t10.0.0.7\tann\r\n", {"\"ann\""}},
  };
  for (const auto& [offer, named] : cases) {
    say(kOffer);
    click(form<request>().Command1);
    say(offer + "START\r\n");
    const std::string latest = form<Form3>().Text1.Text;
    EXPECT_EQ(latest, room().Text1.Text.get());
    desktop.answers = {false};
    click(form<Form3>().Command1);
    const std::vector<std::string> asked = boxTexts();
    ASSERT_EQ(asked.size(), 1U);
    for (const std::string& name : named) EXPECT_THAT(asked[0], HasSubstr(name));
    EXPECT_THAT(started(), IsEmpty());
    // No leads back to what was accepted.
    click(form<Form3>().Command1);
    EXPECT_THAT(boxTexts(), IsEmpty());
    EXPECT_THAT(started(), ElementsAre(HasSubstr("-join 10.0.0.7  \r")));
    click(form<Form4>().Command1);
    desktop.edge.run([&] { desktop.client->slots.unload(form<request>()); });
  }
  // Started once: another START is nobody's.
  say("START\r\n");
  desktop.answers = {false};
  click(form<Form3>().Command1);
  EXPECT_THAT(boxTexts(), ElementsAre(HasSubstr("You have not accepted this game")));
}

// What the user has seen is what starts, whatever a host sends behind the open form.
TEST_F(Handshake, CommandThatChangesBehindTheLastLook) {
  agreeAndStart();
  say("GAME\tzdoom\tNONE\tNONE\t +exec x\t10.0.0.8\tann\r\n");
  EXPECT_EQ(form<Form3>().Text1.Text.get(), room().Text1.Text.get()) << "shown at once";
  click(form<Form3>().Command1);
  EXPECT_THAT(boxTexts(), ElementsAre(HasSubstr("Another offer has changed the command")));
  // Again while the question about the second one is open: Yes was given to another text.
  desktop.answers = {true, true};
  desktop.whileBoxIsOpen = [&](const Box& box) {
    if (box.question) say("GAME\tzdoom2\tNONE\tNONE\t +exec y\t10.0.0.9\tann\r\n");
    desktop.whileBoxIsOpen = nullptr;
  };
  click(form<Form3>().Command1);
  EXPECT_THAT(boxTexts(), ElementsAre(HasSubstr("+exec x"), HasSubstr("nothing was started")));
  EXPECT_THAT(started(), IsEmpty());
  EXPECT_FALSE(desktop.shows<Form4>());
  click(form<Form3>().Command1);
  EXPECT_THAT(boxTexts(), ElementsAre(HasSubstr("+exec y")));
  EXPECT_THAT(started(), ElementsAre(HasSubstr("-join 10.0.0.9")));
}

TEST_F(Handshake, SecondPressDuringAStartDoesNothing) {
  // A press that waits among the pending events runs inside the first one.
  const auto pressTwice = [&](CommandButton& button) {
    const auto second = loop.after(std::chrono::milliseconds(0), [&] { click(button); });
    click(button);
  };
  invite({"al"});
  say("XCEPT\tal\r\n");
  pressTwice(form<Form1>().Command1);
  EXPECT_THAT(received(), ElementsAre("START\tal", "INGAME\tbob"));
  EXPECT_EQ(started().size(), 1U);
  click(form<Form4>().Command1);
  EXPECT_THAT(received(), ElementsAre("RETURN\tbob"));

  agreeAndStart();
  pressTwice(form<Form3>().Command1);
  EXPECT_EQ(started().size(), 1U);
  EXPECT_THAT(received(), ElementsAre("INGAME\tbob"));
  click(form<Form4>().Command1);
  EXPECT_THAT(received(), ElementsAre("RETURN\tbob"));

  tick(form<game1>().Check25);
  tick(form<game1>().Check37);
  pressTwice(form<game1>().Command3);
  EXPECT_EQ(started().size(), 1U);
}

TEST_F(Handshake, FinalChanceStartsTheGuest) {
  const std::string command = "/e/zdoom.exe -iwad /w/doom.wad -join 10.0.0.7  \r\n";
  const std::string demo = command + " -record " + desktop.files.folder() + "\\";
  const std::vector<std::tuple<bool, std::string, std::string>> cases = {
      {false, "", command}, {true, "", demo + kDemoPrompt}, {true, "mine", demo + "mine"}};
  for (const auto& [hasDemo, name, expected] : cases) {
    agreeAndStart();
    Form3& chance = form<Form3>();
    EXPECT_TRUE(desktop.shows<Form3>());
    EXPECT_EQ(chance.Text1.Text.get(), command);
    if (hasDemo) chance.Check1.Value = 1;
    if (!name.empty()) chance.Text2.Text = name;
    click(chance.Command1);
    EXPECT_THAT(received(), ElementsAre("INGAME\tbob"));
    EXPECT_THAT(started(), ElementsAre(expected));
    EXPECT_EQ(desktop.client->loadedForm<Form3>(), nullptr);
    EXPECT_EQ(room().Label7.Caption.get(), "In a Game");
    desktop.edge.run([&] { form<Form4>().Form_Click(); });
    EXPECT_THAT(received(), ElementsAre("RETURN\tbob"));
    EXPECT_EQ(room().Label7.Caption.get(), "Ready to Play");
    EXPECT_EQ(desktop.client->loadedForm<Form4>(), nullptr);
  }
  EXPECT_THAT(boxTexts(), IsEmpty());
}

TEST_F(Handshake, UnusualOffersAreAskedAboutOnce) {
  agreeAndStart("GAME\tzdoom\t../x\tNONE\t +exec e.cfg\t10.0.0.7\tann\r\n");
  desktop.answers = {false, true};
  click(form<Form3>().Command1);
  EXPECT_THAT(boxTexts(),
              ElementsAre(::testing::AllOf(HasSubstr("+exec e.cfg"), HasSubstr("\"../x\""))));
  EXPECT_TRUE(desktop.shows<Form3>());
  EXPECT_THAT(started(), IsEmpty());
  EXPECT_THAT(take(), IsEmpty());
  click(form<Form3>().Command1);
  EXPECT_EQ(started().size(), 1U);
  boxTexts();
  // The next offer is a usual one.
  agreeAndStart();
  click(form<Form3>().Command1);
  EXPECT_THAT(boxTexts(), IsEmpty());
  EXPECT_EQ(started().size(), 1U);
}

TEST_F(Handshake, BackingOutAndTheDemoField) {
  say("START\r\n");
  Form3& chance = form<Form3>();
  const auto press = [&](int value) {
    chance.Check1.Value = value;
    desktop.raise(chance.Check1.MouseUp, MouseButton::left);
  };
  EXPECT_FALSE(chance.Text2.Visible);
  press(1);
  EXPECT_TRUE(chance.Text2.Visible);
  chance.Text2.Text = "mine";
  press(0);
  EXPECT_FALSE(chance.Text2.Visible);
  EXPECT_EQ(chance.Text2.Text.get(), kDemoPrompt);
  click(chance.Command2);
  EXPECT_EQ(desktop.client->loadedForm<Form3>(), nullptr);
  EXPECT_THAT(take(), IsEmpty());
  EXPECT_EQ(room().Label7.Caption.get(), "Ready To Play");
}

TEST_F(Handshake, OneGameAtATimeIsAnnouncedOnce) {
  desktop.edge.run([&] { form<Form4>().Show(); });
  EXPECT_THAT(received(), ElementsAre("INGAME\tbob"));
  agreeAndStart();
  click(form<Form3>().Command1);
  EXPECT_THAT(sent(), IsEmpty());
  EXPECT_EQ(std::ranges::count(desktop.sounds, "/game"), 1);
  EXPECT_EQ(started().size(), 1U);
}

}  // namespace
}  // namespace kelvaron::testing
