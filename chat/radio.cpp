#include "chat/radio.h"

#include <string>

#include "build_settings.h"
#include "chat/colors.h"
#include "chat/main_window.h"
#include "chat/volume.h"
#include "session/client.h"

namespace kelvaron {

constexpr Station kStationKkrz = {.host = build::kRadioHostKkrz,
                                  .path = "/startstream.asx?stationid=KKRZ-FM",
                                  .notice = "Buffering Station....KKRZ Z100 Portland Oregon.....",
                                  .frameCaption = "Buffering KKRZ"};
constexpr Station kStationKshe = {.host = build::kRadioHostKshe,
                                  .path = "/template/smirror/ivtemplates/onradio/kshe.asx",
                                  .notice = "Buffering Station....KSHE95 St. Louis Rock.....",
                                  .frameCaption = "Buffering KSHE"};
constexpr Station kStationKwjj = {
    .host = build::kRadioHostKwjj,
    .path = "/netshow/v2/onair/onradio/kwjjlive_20k.asx",
    .notice = "Buffering Station....KWJJ Portlands Favorite Country.....",
    .frameCaption = "Buffering KWJJ"};

namespace {

void open(const Client& client, frmMain& room, const Station& station, std::string_view notice) {
  client.ports.player.Open("http://" + std::string(station.host) + std::string(station.path));
  // At the caret, wherever the user has put it.
  room.txtOutput.setSelColor(colors::kNotice);
  room.txtOutput.insert(std::string(notice) + "\r\n");
  room.txtinput.SelColor = colors::kSpeech;
}

void playWatched(const Client& client, frmMain& room, const Station& station) {
  open(client, room, station, station.notice);
  room.Frame1.Caption = std::string(station.frameCaption);
  room.Timer1.Enabled = true;
}

void stopplay_Click(const Client& client, frmMain& room) {
  client.ports.player.Stop();
  room.Timer1.Enabled = false;
  room.Frame1.Visible = false;
}

// Goes on at 100 percent: the frame comes back when the player buffers again.
void Timer1_Timer(const Client& client, frmMain& room) {
  room.Label9.Caption = std::to_string(client.ports.player.BufferingProgress()) + "%";
  room.Frame1.Visible = room.Label9.Caption.get() != "100%";
}

}  // namespace

void wireRadio(Client& client, frmMain& room) {
  room.kkrzplay.Click = [&] { playWatched(client, room, kStationKkrz); };
  room.KSHE95.Click = [&] { playWatched(client, room, kStationKshe); };
  room.kwjjplay.Click = [&] { playWatched(client, room, kStationKwjj); };
  room.stopplay.Click = [&] { stopplay_Click(client, room); };
  room.Timer1.Tick = [&] { Timer1_Timer(client, room); };
  room.volume2.Click = [&] { client.form<Volume>().Visible = true; };
}

void playUnwatched(Client& client, frmMain& room, const Station& station) {
  open(client, room, station, "Buffering Station.........");
}

}  // namespace kelvaron
