// The game configuration: its file, and the form that writes it.
#include "peer/configuration.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

#include "tests/support/line_server.h"
#include "tests/support/test_desktop.h"

namespace kelvaron::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

TEST(GameConfigFile, ElevenLinesThereAndBack) {
  const GameConfig full{"a", "b -3dfx", "c", "d", "e", "f", "g", "h\\i", "", "\xE9 j", "k"};
  EXPECT_EQ(formatGameConfig(full),
            "a\r\nb -3dfx\r\nc\r\nd\r\ne\r\nf\r\ng\r\nh\\i\r\n\r\n\xE9 j\r\nk\r\n");
  EXPECT_EQ(parseGameConfig(formatGameConfig(full)).config, full);
  EXPECT_EQ(parseGameConfig(formatGameConfig(full)).records, 11U);
  std::string empty;
  for (int i = 0; i < 11; ++i) empty += "\r\n";
  EXPECT_EQ(formatGameConfig({}), empty);
  EXPECT_EQ(parseGameConfig(empty).config, GameConfig{});
  EXPECT_EQ(parseGameConfig(empty).records, 11U);
}

TEST(GameConfigFile, CommasAndQuotesMoveRecords) {
  struct Case {
    std::string text;
    std::string first, second;
    std::size_t records;
  };
  const std::vector<Case> cases = {
      {"", "", "", 0},
      {"a", "a", "", 1},
      {"a,b\r\n", "a", "b", 2},
      {"  a\r\n b\r\n", "a", "b", 2},
      {"\"a,b\"\r\nc\r\n", "a,b", "c", 2},
      {"\"a\r\nb", "a\r\nb", "", 1},
      {"a\"b\r\nc\r\n", "a\"b", "c", 2},
      {"a\nb\n", "a", "b", 2},
  };
  for (const Case& each : cases) {
    const ParsedGameConfig parsed = parseGameConfig(each.text);
    EXPECT_EQ(parsed.config.zdoomPath, each.first) << each.text;
    EXPECT_EQ(parsed.config.glZdoomCommand, each.second) << each.text;
    EXPECT_EQ(parsed.records, each.records) << each.text;
  }
  GameConfig comma{.externalWadFolder = "x,y", .csServerPath = "s", .csClientPath = "c"};
  EXPECT_EQ(parseGameConfig(formatGameConfig(comma)).config.csClientPath, "s");
}

class Configuration : public ::testing::Test {
 protected:
  config& form() { return desktop.client->form<config>(); }
  void click(CommandButton& button) { desktop.raise(button.Click); }
  void press(CheckBox& box) {
    desktop.raise(box.MouseDown, MouseButton::left);
    desktop.edge.run([&] { box.Value = 1 - box.Value; });
    desktop.raise(box.Click);
    desktop.raise(box.MouseUp, MouseButton::left);
  }
  std::string file() {
    std::ostringstream text;
    text << std::ifstream(desktop.folder.path() / "kvconfig.cfg").rdbuf();
    return text.str();
  }

  PollLoop loop;
  LineServer server{loop};
  TestDesktop desktop{loop, server.port()};
};

TEST_F(Configuration, LocateTakesFilesOfTheExpectedName) {
  struct Case {
    CommandButton config::*button;
    TextBox config::*target;
    std::string filter;
    std::string good;
  };
  const std::vector<Case> cases = {
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
  for (const Case& each : cases) {
    desktop.chosenFiles = {each.good, "/w/other.wad"};
    TextBox& target = form().*each.target;
    click(form().*each.button);
    EXPECT_EQ(target.Text.get(), each.good);
    EXPECT_EQ(desktop.fileDialogs.back().filter, each.filter);
    click(form().*each.button);
    EXPECT_EQ(target.Text.get(), "") << each.filter;
  }
  EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(Configuration, DismissedDialogTestsTheFileChosenBefore) {
  desktop.chosenFiles = {"/w/doom.wad"};
  click(form().Command1);
  click(form().Command1);
  EXPECT_EQ(form().Text3.Text.get(), "/w/doom.wad");
  desktop.edge.run([&] { form().Text4.Text = "typed"; });
  click(form().Command2);
  EXPECT_EQ(form().Text4.Text.get(), "");
}

TEST_F(Configuration, VideoCardsRebuildTheCommandFromTheLocation) {
  config& shown = form();
  desktop.edge.run([&] { shown.Text2.Text = "typed"; });
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
  desktop.raise(desktop.room().mnuConfig.Click);
  EXPECT_TRUE(desktop.shows<config>());
  EXPECT_EQ(form().Text1.Text.get(), "z");
  desktop.edge.run([&] { form().Text8.Text = "x"; });
  click(form().Command10);
  EXPECT_FALSE(desktop.shows<config>());
  EXPECT_EQ(file(), formatGameConfig(before));
  // What was typed is still there; Save writes it, and the unseen record with it.
  desktop.raise(desktop.room().mnuConfig.Click);
  EXPECT_EQ(form().Text8.Text.get(), "x");
  click(form().Command9);
  EXPECT_FALSE(desktop.shows<config>());
  EXPECT_EQ(file(), "z\r\n\r\n\r\n\r\n\r\n\r\n\r\nx\r\nhidden\r\n\r\n\r\n");
  EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(Configuration, MissingFileIsMadeAndCommasAreTold) {
  desktop.edge.run([&] {
    form().Show();
    form().Text8.Text = "a,b";
  });
  for (const auto box : config::kBoxes) {
    EXPECT_EQ((form().*box).Text.get(), box == &config::Text8 ? "a,b" : "");
  }
  click(form().Command9);
  EXPECT_THAT(file(), HasSubstr("a,b\r\n"));
  ASSERT_EQ(desktop.boxes.size(), 1U);
  EXPECT_THAT(desktop.boxes[0].text, HasSubstr("holds a comma"));
}

TEST_F(Configuration, SaveThatFailsKeepsFormAndFile) {
  if (::geteuid() == 0) {
    // Nothing is read-only to root; a folder in the file's place is.
    std::filesystem::create_directories(desktop.folder.path() / "kvconfig.cfg" / "x");
  } else {
    ::chmod(desktop.folder.path().c_str(), S_IRUSR | S_IXUSR);
  }
  desktop.edge.run([&] { form().Show(); });
  click(form().Command9);
  EXPECT_TRUE(desktop.shows<config>());
  ASSERT_EQ(desktop.boxes.size(), 1U);
  EXPECT_THAT(desktop.boxes[0].text, HasSubstr("was not saved"));
  ::chmod(desktop.folder.path().c_str(), S_IRWXU);
}

}  // namespace
}  // namespace kelvaron::testing
