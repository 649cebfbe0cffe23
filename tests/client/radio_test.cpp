// The radio's menu entries, commands, progress display and volume, and what they ask of the player.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "build_settings.h"
#include "chat/volume.h"
#include "tests/support/client_test.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::string opened(std::string_view host, const std::string& path) {
  return "open http://" + std::string(host) + path;
}
const std::string kKkrz = opened(build::kRadioHostKkrz, "/startstream.asx?stationid=KKRZ-FM");
const std::string kKshe =
    opened(build::kRadioHostKshe, "/template/smirror/ivtemplates/onradio/kshe.asx");
const std::string kKwjj =
    opened(build::kRadioHostKwjj, "/netshow/v2/onair/onradio/kwjjlive_20k.asx");

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
  struct Case {
    const MenuItem& entry;
    std::string call;
    const char* notice;
    const char* frame;
  };
  EXPECT_EQ(room().Timer1.Interval.get(), 500);
  for (const Case& each :
       {Case{room().kkrzplay, kKkrz, "Buffering Station....KKRZ Z100 Portland Oregon.....",
             "Buffering KKRZ"},
        Case{room().KSHE95, kKshe, "Buffering Station....KSHE95 St. Louis Rock.....",
             "Buffering KSHE"},
        Case{room().kwjjplay, kKwjj, "Buffering Station....KWJJ Portlands Favorite Country.....",
             "Buffering KWJJ"}}) {
    desktop.raise(room().stopplay.Click);
    calls();
    desktop.edge.run([&] { room().txtOutput.Content.clear(); });
    room().txtinput.SelColor = Color{};
    desktop.raise(each.entry.Click);
    EXPECT_THAT(calls(), ElementsAre(each.call));
    EXPECT_EQ(desktop.chat(), std::string(each.notice) + "\n");
    EXPECT_EQ(room().txtOutput.Content.run(0, 0).style.color, (Color{0, 255, 18}));
    EXPECT_EQ(room().txtinput.SelColor.get(), (Color{96, 246, 241}));
    EXPECT_EQ(display(), "on hidden") << "until the first tick";
    tick(0);
    EXPECT_EQ(display(), std::string("on ") + each.frame + " 0%");
    tick(99);
    EXPECT_EQ(display(), std::string("on ") + each.frame + " 99%");
    tick(100);
    EXPECT_EQ(display(), "on hidden");
    tick(37);
    EXPECT_EQ(display(), std::string("on ") + each.frame + " 37%") << "it buffers again";
  }
  // Another station while one plays.
  desktop.raise(room().kkrzplay.Click);
  EXPECT_EQ(display(), "on Buffering KKRZ 37%");
  desktop.raise(room().stopplay.Click);
  EXPECT_THAT(calls(), ElementsAre(kKkrz, "stop"));
  EXPECT_EQ(display(), "off hidden");
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

TEST_F(RadioMenu, NoticesStandAtTheCaret) {
  room().AppendChat("first");
  room().txtOutput.Content.setCaret({0, 2});
  desktop.raise(room().kkrzplay.Click);
  EXPECT_EQ(desktop.chat(), "fiBuffering Station....KKRZ Z100 Portland Oregon.....\nrst\n");
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
  desktop.raise(room().kkrzplay.Click);
  EXPECT_THAT(calls(), ElementsAre(kKkrz));
  EXPECT_EQ(desktop.chat(), "Buffering Station....KKRZ Z100 Portland Oregon.....\n");
  desktop.player.onTrouble("There is no sound device.");
  ASSERT_EQ(desktop.boxes.size(), 1U);
  EXPECT_EQ(desktop.boxes[0].text, "There is no sound device.");
  EXPECT_EQ(desktop.boxes[0].style, box_style::kExclamation);
}

TEST_F(RadioMenu, VolumeMovesWithTheSliderAlone) {
  desktop.raise(room().volume2.Click);
  ASSERT_TRUE(desktop.shows<Volume>());
  auto& form = desktop.client->form<Volume>();
  EXPECT_EQ(form.Slider1.Value.get(), 1450);
  EXPECT_EQ(form.Label1.Caption.get(), "Volume");
  EXPECT_THAT(calls(), IsEmpty());
  for (const int value : {0, 2900, 1}) {
    form.Slider1.Value = value;
    EXPECT_THAT(calls(), ElementsAre("volume " + std::to_string(-value)));
    EXPECT_EQ(form.Label1.Caption.get(), "Volume: " + std::to_string(value));
  }
  desktop.client->slots.unload(form);
  desktop.raise(room().volume2.Click);
  EXPECT_EQ(desktop.client->form<Volume>().Slider1.Value.get(), 1450);
  EXPECT_EQ(desktop.client->form<Volume>().Label1.Caption.get(), "Volume");
  EXPECT_THAT(calls(), IsEmpty());
}

}  // namespace
}  // namespace kelvaron::testing
