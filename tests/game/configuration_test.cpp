// The game configuration: its file, and the form that writes it.
#include "game/configuration.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/client_test.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

TEST(GameConfigFile, ElevenLinesThereAndBack) {
  const GameConfig full{"a", "b -3dfx", "c", "d", "e", "f", "g", "h\\i", "", "\xE9 j", "k"};
  EXPECT_EQ(formatGameConfig(full),
            "a\r\nb -3dfx\r\nc\r\nd\r\ne\r\nf\r\ng\r\nh\\i\r\n\r\n\xE9 j\r\nk\r\n");
  for (const GameConfig& config : {full, GameConfig{}}) {
    EXPECT_EQ(parseGameConfig(formatGameConfig(config)).config, config);
    EXPECT_EQ(parseGameConfig(formatGameConfig(config)).records, 11U);
  }
  EXPECT_EQ(parseGameConfig("a,b").records, 2U) << "a comma moves records";
}

class Configuration : public FreshClientTest {
 protected:
  config& form() { return FreshClientTest::form<config>(); }
  void press(CheckBox& box) {
    desktop.raise(box.MouseDown, MouseButton::left);
    desktop.edge.run([&] { box.Value = 1 - box.Value; });
    desktop.raise(box.Click);
    desktop.raise(box.MouseUp, MouseButton::left);
  }
  std::string file() { return desktop.files.read("kvconfig.cfg"); }
};

TEST_F(Configuration, LocateTakesFilesOfTheExpectedName) {
  const std::tuple<CommandButton config::*, TextBox config::*, const char*, const char*> cases[] = {
      {&config::Command7, &config::Text1, "ZDOOM", "/e/ZDoom.exe"},
      {&config::Command8, &config::Text2, "GLDOOM", "/e/zdoomGL.exe"},
      {&config::Command1, &config::Text3, "doom.wad", "/w/mydoom.WAD"},
      {&config::Command2, &config::Text4, "doom2.wad", "/w/doom2.wad"},
      {&config::Command3, &config::Text5, "Final Doom", "/w/doom2f.wad"},
      {&config::Command4, &config::Text6, "Plutonia", "/w/plutonia.wad"},
      {&config::Command5, &config::Text7, "Evilution", "/w/tnt.wad"},
      {&config::Command6, &config::Text10, "CSDoomsv", "/e/doomsv.exe"},
      {&config::Command11, &config::Text11, "CSDoomcl", "/e/doomcl.exe"},
  };
  for (const auto& [button, target, filter, good] : cases) {
    desktop.chosenFiles = {good, "/w/other.wad"};
    click(form().*button);
    EXPECT_EQ((form().*target).Text.get(), good);
    EXPECT_EQ(desktop.fileDialogs.back().filter, filter);
    click(form().*button);
    EXPECT_EQ((form().*target).Text.get(), "") << filter;
    EXPECT_THAT(form().Label12.Caption.get(), HasSubstr("\"other.wad\" doesn't"));
  }
  // A dismissed dialog tests the file that was chosen before.
  desktop.chosenFiles = {"/w/doom.wad"};
  click(form().Command1);
  form().Text3.Text = "typed";
  form().Text4.Text = "typed";
  click(form().Command1);
  click(form().Command2);
  EXPECT_EQ(form().Text3.Text.get(), "/w/doom.wad");
  EXPECT_EQ(form().Text4.Text.get(), "");
  EXPECT_EQ(form().Label12.Caption.get(),
            "Doom2 takes a file whose name ends in DOOM2.WAD, and \"doom.wad\" doesn't.");
  click(form().Command1);
  EXPECT_EQ(form().Label12.Caption.get(), "");
  EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(Configuration, VideoCardsRebuildTheCommandFromTheLocation) {
  config& shown = form();
  shown.Text2.Text = "typed";
  press(shown.Check2);
  EXPECT_EQ(shown.Text2.Text.get(), "typed") << "nothing was located";
  EXPECT_EQ(shown.Check2.Value.get(), 1);
  desktop.chosenFiles = {"/e/zdoomgl.exe"};
  click(shown.Command8);
  press(shown.Check2);
  EXPECT_EQ(shown.Text2.Text.get(), "/e/zdoomgl.exe -paltex -3dfx");
  press(shown.Check3);
  EXPECT_EQ(shown.Text2.Text.get(), "/e/zdoomgl.exe -width 640 -height 480");
  EXPECT_EQ(shown.Check2.Value.get(), 0);
  press(shown.Check1);
  press(shown.Check1);
  EXPECT_EQ(shown.Text2.Text.get(), "/e/zdoomgl.exe -paltex -3dfx -sprmaxsurf 4096");
  EXPECT_EQ(shown.Check1.Value.get(), 1);
  desktop.chosenFiles = {"/e/other.exe"};
  click(shown.Command8);
  EXPECT_EQ(shown.Text2.Text.get(), "");
  EXPECT_EQ(shown.Text12.Text.get(), "/e/zdoomgl.exe");
}

TEST_F(Configuration, SaveAndCancel) {
  const GameConfig before{.zdoomPath = "z", .externalWadFolder2 = "hidden"};
  saveGameConfig(desktop.files, before);
  ASSERT_TRUE(desktop.logIn("bob"));
  desktop.raise(room().mnuConfig.Click);
  EXPECT_TRUE(desktop.shows<config>());
  EXPECT_EQ(form().Text1.Text.get(), "z");
  form().Text8.Text = "x";
  click(form().Command10);
  EXPECT_FALSE(desktop.shows<config>());
  EXPECT_EQ(file(), formatGameConfig(before));
  // What was typed is still there; Save writes it, and the unseen record with it.
  desktop.raise(room().mnuConfig.Click);
  EXPECT_EQ(form().Text8.Text.get(), "x");
  click(form().Command9);
  EXPECT_FALSE(desktop.shows<config>());
  EXPECT_EQ(file(), "z\r\n\r\n\r\n\r\n\r\n\r\n\r\nx\r\nhidden\r\n\r\n\r\n");
  EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(Configuration, MissingFileIsMadeAndCommasAreTold) {
  for (const auto box : config::kBoxes) EXPECT_EQ((form().*box).Text.get(), "");
  form().Text8.Text = "a,b";
  click(form().Command9);
  EXPECT_THAT(file(), HasSubstr("a,b\r\n"));
  EXPECT_THAT(boxTexts(), ElementsAre(HasSubstr("holds a comma")));
}

TEST_F(Configuration, SaveThatFailsKeepsFormAndFile) {
  // Nothing is read-only to root; a folder in the file's place is.
  std::filesystem::create_directories(desktop.folder.path() / "kvconfig.cfg" / "x");
  form().Show();
  click(form().Command9);
  EXPECT_TRUE(desktop.shows<config>());
  EXPECT_THAT(boxTexts(), ElementsAre(HasSubstr("was not saved")));
}

}  // namespace
}  // namespace kelvaron::testing
