#include "game/in_game.h"

#include "chat/main_window.h"
#include "session/client.h"
#include "session/outbound.h"

namespace kelvaron {
namespace {

constexpr int kHeadingPoints = 16;

}  // namespace

Form4::Form4(Client& client)
    : Form({.name = "Form4",
            .caption = "Game Launch in Progress",
            .width = 360 * kTwipsPerPixel,
            .height = 136 * kTwipsPerPixel}),
      client_(client) {
  ControlBox = false;
  Label1.Font_ = Font{.points = kHeadingPoints, .bold = true};
  Label1.Alignment_ = Alignment::center;
  Command1.Main = true;
  Command1.Click = [this] { comeBack(); };
}

void Form4::Form_Load() {
  // A game goes on without a connection, and without a sound.
  const FaultRule rule = FaultRule::goOn();
  client_.ports.sound.playBeside("game");
  client_.ports.application.DoEvents();
  rule.step([&] { client_.ports.player.Stop(); });
  frmMain& room = client_.form<frmMain>();
  rule.step([&] { client_.send(outbound::inGame(room.Label1.Caption.get())); });
  room.Label7.Caption = kInGameStatus;
}

void Form4::comeBack() {
  // Without a connection nobody is told, and the user comes back all the same.
  const FaultRule rule = FaultRule::goOn();
  frmMain& room = client_.form<frmMain>();
  rule.step([&] { client_.send(outbound::returnFromGame(room.Label1.Caption.get())); });
  room.Label7.Caption = kBackStatus;
  client_.slots.unload(*this);
}

}  // namespace kelvaron
