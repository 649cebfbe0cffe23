// The radio's menu entries, commands, progress display and volume, and what they ask of the player.
#include <gmock/gmock.h>

#include "build_settings.h"
#include "chat/volume.h"
#include "tests/support/client_test.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string kOpen = "open http://";
const std::string kKkrz =
    kOpen + std::string(build::kRadioHostKkrz) + "/startstream.asx?stationid=KKRZ-FM";
const std::string kKshe =
    kOpen + std::string(build::kRadioHostKshe) + "/template/smirror/ivtemplates/onradio/kshe.asx";
const std::string kKwjj =
    kOpen + std::string(build::kRadioHostKwjj) + "/netshow/v2/onair/onradio/kwjjlive_20k.asx";

class RadioMenu : public ClientTest {
 protected:
  std::vector<std::string> calls() { return std::exchange(desktop.player.calls, {}); }
  // What the display shows: whether the timer runs, and the frame's texts while it is seen.
  std::string display() {
    std::string text = room().Timer1.Enabled ? "on " : "off ";
    if (!room().Frame1.Visible) return text + "hidden";
    return text + room().Frame1.Caption.get() + " " + room().Label9.Caption.get();
  }
  void tick(int progress) {
    desktop.player.progress = progress;
    desktop.raise(room().Timer1.Tick);
  }
};

TEST_F(RadioMenu, StationsByMenu) {
  const std::vector<std::tuple<const MenuItem&, std::string, std::string, std::string>> cases = {
      {room().kkrzplay, kKkrz, "KKRZ Z100 Portland Oregon", "on Buffering KKRZ "},
      {room().KSHE95, kKshe, "KSHE95 St. Louis Rock", "on Buffering KSHE "},
      {room().kwjjplay, kKwjj, "KWJJ Portlands Favorite Country", "on Buffering KWJJ "}};
  EXPECT_EQ(room().Timer1.Interval.get(), 500);
  for (const auto& [entry, call, notice, frame] : cases) {
    room().txtOutput.Content.clear();
    room().txtinput.SelColor = Color{};
    desktop.raise(entry.Click);
    EXPECT_THAT(calls(), ElementsAre(call));
    EXPECT_EQ(desktop.chat(), "Buffering Station...." + notice + ".....\n");
    EXPECT_EQ(room().txtOutput.Content.run(0, 0).style.color, (Color{0, 255, 18}));
    EXPECT_EQ(room().txtinput.SelColor.get(), (Color{96, 246, 241}));
    EXPECT_EQ(display(), "on hidden") << "until the first tick";
    for (const int progress : {0, 99, 100, 37}) {
      tick(progress);
      EXPECT_EQ(display(), progress == 100 ? "on hidden" : frame + std::to_string(progress) + "%");
    }
    // Another station while one plays.
    desktop.raise(room().kkrzplay.Click);
    EXPECT_EQ(display(), "on Buffering KKRZ 37%");
    desktop.raise(room().stopplay.Click);
    EXPECT_THAT(calls(), ElementsAre(kKkrz, "stop"));
    EXPECT_EQ(display(), "off hidden");
  }
}

TEST_F(RadioMenu, TypedCommandsLeaveTheDisplay) {
  desktop.enter("/play kkrz and more");
  EXPECT_THAT(calls(), ElementsAre(kKkrz));
  EXPECT_EQ(desktop.chat(), "Buffering Station.........\n");
  EXPECT_EQ(display(), "off hidden");
  EXPECT_EQ(room().txtinput.Text.get(), "");
  desktop.enter("/PLAY KSHE");
  EXPECT_THAT(calls(), IsEmpty());

  desktop.raise(room().KSHE95.Click);
  tick(50);
  desktop.enter("/PLAY KWJJ");
  EXPECT_THAT(calls(), ElementsAre(kKshe, kKwjj));
  EXPECT_EQ(display(), "on Buffering KSHE 50%");
  desktop.enter("/stop");
  EXPECT_THAT(calls(), ElementsAre("stop"));
  EXPECT_EQ(display(), "on Buffering KSHE 50%");
  tick(0);
  EXPECT_EQ(display(), "on Buffering KSHE 0%");
}

TEST_F(RadioMenu, AFailureOfThePlayerKeepsTheCommand) {
  desktop.player.fails = true;
  for (const char* command : {"/PLAY KKRZ", "/STOP"}) {
    desktop.enter(command);
    EXPECT_EQ(room().txtinput.Text.get(), command);
  }
  EXPECT_EQ(desktop.chat(), "");
  EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(RadioMenu, WorksWithoutAConnectionAndTellsTrouble) {
  desktop.raise(room().mnuDisconnect.Click);
  room().AppendChat("first");
  room().txtOutput.Content.setCaret({0, 2});  // where the notice will stand
  desktop.raise(room().kkrzplay.Click);
  EXPECT_THAT(calls(), ElementsAre(kKkrz));
  EXPECT_EQ(desktop.chat(), "fiBuffering Station....KKRZ Z100 Portland Oregon.....\nrst\n");
  desktop.player.onTrouble("There is no sound device.");
  EXPECT_EQ(desktop.boxes.at(0).style, box_style::kExclamation);
  EXPECT_THAT(boxTexts(), ElementsAre("There is no sound device."));
}

TEST_F(RadioMenu, VolumeMovesWithTheSliderAlone) {
  for (int opened = 0; opened < 2; ++opened) {
    desktop.raise(room().volume2.Click);
    ASSERT_TRUE(desktop.shows<Volume>());
    Volume& volume = form<Volume>();
    EXPECT_EQ(volume.Slider1.Value.get(), 1450);
    EXPECT_EQ(volume.Label1.Caption.get(), "Volume");
    EXPECT_THAT(calls(), IsEmpty());
    for (const int value : {0, 2900, 1}) {
      volume.Slider1.Value = value;
      EXPECT_THAT(calls(), ElementsAre("volume " + std::to_string(-value)));
      EXPECT_EQ(volume.Label1.Caption.get(), "Volume: " + std::to_string(value));
    }
    desktop.client->slots.unload(volume);
  }
}

TEST_F(RadioMenu, TheDisplayGoesWhenTheRadioFails) {
  desktop.raise(room().kkrzplay.Click);
  tick(37);
  desktop.player.onTrouble("no library");
  EXPECT_EQ(display(), "off hidden");
  EXPECT_EQ(boxTexts(), std::vector<std::string>{"no library"});
}

}  // namespace
}  // namespace kelvaron::testing
