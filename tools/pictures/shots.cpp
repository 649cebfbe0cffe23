// Renders every form in its states to pictures, to be looked at:
//
//   kelvaron_shots FOLDER [POINTS]   with text of so many points, the desktop's own unless told
//   kelvaron_shots --check           no pictures: whether every caption fits its control, and the
//                                    main button and the lowest ones are on the screen, at 9, 11,
//                                    14 and 18 points
//
// QT_SCALE_FACTOR and the like of the toolkit tell the scaling.
#include <QApplication>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string_view>
#include <vector>

#include "chat/about_box.h"
#include "chat/mute_list.h"
#include "chat/private_message.h"
#include "chat/volume.h"
#include "desktop/form_scale.h"
#include "desktop/shell/theme.h"
#include "game/awaiting_verification.h"
#include "game/configuration.h"
#include "game/final_chance.h"
#include "game/game_request.h"
#include "game/game_selection.h"
#include "game/in_game.h"
#include "game/pending_offer.h"
#include "moderation/kick_form.h"
#include "moderation/status_request.h"
#include "peer/file_receiver.h"
#include "peer/file_sender.h"
#include "peer/ping.h"
#include "peer/profile.h"
#include "session/login_window.h"
#include "session/message_of_the_day.h"
#include "tools/pictures/fit.h"
#include "tools/pictures/room_desk.h"

namespace kelvaron::testing {
namespace {

const GameConfig kConfig{
    .zdoomPath = "/home/ann/Games/Doom Engines/zdoom.exe",
    .glZdoomCommand = "/home/ann/Games/Doom Engines/zdoomgl.exe -width 640 -height 480",
    .doomWad = "/home/ann/wads/DOOM.WAD",
    .doom2Wad = "/home/ann/wads/DOOM2.WAD",
    .finalDoomWad = "",
    .plutoniaWad = "/home/ann/wads/PLUTONIA.WAD",
    .evilutionWad = "/home/ann/wads/TNT.WAD",
    .externalWadFolder = "/home/ann/wads/extra",
    .csServerPath = "/home/ann/Games/doomsv.exe",
    .csClientPath = "/home/ann/Games/doomcl.exe"};

void fillRoom(frmMain& room) {
  room.Label1.Caption =
      "\xA5"
      "ann";
  room.Label6.Caption = "US - Oregon (Main Sever)";
  for (const char* user : {"ann", "bob[AW]", "Crusher", "Doomgal[IG]", "Hellion", "Vex[CS]"}) {
    room.List1.AddItem(user);
  }
  room.AppendChat("Hellion has entered Kelvaron");
  room.txtOutput.setSelColor({219, 178, 240});
  room.txtOutput.insert("Hellion: ");
  room.txtOutput.setSelColor({96, 246, 241});
  room.txtOutput.insert("anyone up for coop on Plutonia? http://localhost/maps.html\r\n");
}

GameConfig saved(RoomDesk& desk) {
  saveGameConfig(desk.ports.files, kConfig);
  return kConfig;
}

game1& chosenGame(RoomDesk& desk) {
  saved(desk);
  auto& form = desk.client->form<game1>();
  form.Check26.Value = 1;
  form.Check26.Click();
  form.Check1.Value = 1;
  form.Check7.Value = 1;
  form.Combo5.Text = "4";
  form.Combo4.Text = "07";
  form.Text1.Text = "A long name of an external wad.wad";
  return form;
}

Form1& answers(RoomDesk& desk) {
  auto& form = desk.client->form<Form1>();
  form.invite({"bob", "Crusher[AW]", "WWWWWWWWWWWW[CS]", "Vex"});
  form.showAsked(4);
  form.showAccepted("bob");
  form.showAccepted("WWWWWWWWWWWW[CS]");
  form.showDeclined("Crusher[AW]");
  return form;
}

request& offer(RoomDesk& desk) {
  auto& form = desk.client->form<request>();
  form.Text1.Text = "Hellion";
  form.Text2.Text = "ZDOOM / Final DOOM";
  form.Text3.Text = "maps.wad";
  form.Text4.Text = "NONE";
  form.Text5.Text =
      " -nomonsters -nomusic -nosfx -respawn -altdeath -deathmatch -timer 20 -skill 4";
  form.Text6.Text = "192.168.100.200";
  return form;
}

Form3& lastLook(RoomDesk& desk) {
  desk.client->lasting<PendingOffers>().latest.command =
      "/home/ann/Games/Doom Engines/zdoom.exe -iwad /home/ann/wads/DOOM2.WAD -join 192.168.100.200 "
      "-file /home/ann/wads/extra\\maps.wad  -nomonsters -nomusic -deathmatch -skill 4\r\n";
  auto& form = desk.client->form<Form3>();
  form.Check1.Value = 1;
  form.Text2.Visible = true;
  return form;
}

Profile& othersProfile(RoomDesk& desk) {
  auto& form = desk.client->form<Profile>();
  for (TextBox* box : form.boxes()) {
    box->Text = "Something about Hellion";
    box->Enabled = false;
  }
  return form;
}

struct Shot {
  const char* name;
  std::function<Form&(RoomDesk&)> make;
};

const std::vector<Shot> kShots = {
    {"room",
     [](RoomDesk& d) -> Form& {
       fillRoom(d.room());
       return d.room();
     }},
    {"room_buffering",
     [](RoomDesk& d) -> Form& {
       d.room().Frame1.Caption = "Buffering KKRZ";
       d.room().Label9.Caption = "47%";
       d.room().Frame1.Visible = true;
       return d.room();
     }},
    {"room_hint",
     [](RoomDesk& d) -> Form& {
       fillRoom(d.room());
       d.room().hints.stand(
           {.text = "To play, tell Kelvaron where your games are.", .link = "Configure Games"},
           nullptr);
       return d.room();
     }},
    {"room_small",
     [](RoomDesk& d) -> Form& {
       fillRoom(d.room());
       d.frame().resize(640, 420);
       QTest::qWait(60);
       return d.room();
     }},
    {"room_smallest",
     [](RoomDesk& d) -> Form& {
       fillRoom(d.room());
       d.frame().resize(384, 300);
       QTest::qWait(60);
       return d.room();
     }},
    {"login", [](RoomDesk& d) -> Form& { return d.client->form<frmLogin>(); }},
    {"message_of_the_day",
     [](RoomDesk& d) -> Form& {
       auto& form = d.client->form<Form5>();
       form.Text1.Text = "Welcome to Kelvaron.\r\nBe kind to newcomers.";
       return form;
     }},
    {"private_message",
     [](RoomDesk& d) -> Form& {
       auto& form = d.client->form<SendPM>();
       form.Label2.Caption = "WWWWWWWWWWWW[CS]";
       return form;
     }},
    {"muted",
     [](RoomDesk& d) -> Form& {
       auto& form = d.client->form<Muted>();
       form.List1.AddItem("BOB");
       form.List1.AddItem("CRUSHER");
       return form;
     }},
    {"volume", [](RoomDesk& d) -> Form& { return d.client->form<Volume>(); }},
    {"volume_moved",
     [](RoomDesk& d) -> Form& {
       auto& form = d.client->form<Volume>();
       form.Slider1.Value = 2900;
       return form;
     }},
    {"about", [](RoomDesk& d) -> Form& { return d.client->form<frmAbout>(); }},
    {"configuration",
     [](RoomDesk& d) -> Form& {
       saved(d);
       return d.client->form<config>();
     }},
    {"configuration_refused",
     [](RoomDesk& d) -> Form& {
       auto& form = d.client->form<config>();
       form.Label12.Caption =
           "Plutonia Experiment takes a file whose name ends in PLUTONIA.WAD, and \"plut.wad\" "
           "doesn't.";
       return form;
     }},
    {"game_request", [](RoomDesk& d) -> Form& { return chosenGame(d); }},
    {"awaiting_verification", [](RoomDesk& d) -> Form& { return answers(d); }},
    {"offer", [](RoomDesk& d) -> Form& { return offer(d); }},
    {"final_chance", [](RoomDesk& d) -> Form& { return lastLook(d); }},
    {"in_game", [](RoomDesk& d) -> Form& { return d.client->form<Form4>(); }},
    {"profile_own",
     [](RoomDesk& d) -> Form& {
       editProfile(*d.client);
       return d.client->form<Profile>();
     }},
    {"profile_of_another", [](RoomDesk& d) -> Form& { return othersProfile(d); }},
    {"ping",
     [](RoomDesk& d) -> Form& {
       auto& form = d.client->form<Pingme>();
       form.Label2.Caption = "WWWWWWWWWWWW";
       form.Label3.Caption = "255.255.255.255";
       form.Label1.Caption = "124 ms";
       form.Timer1.Enabled = false;
       return form;
     }},
    {"file_send",
     [](RoomDesk& d) -> Form& {
       auto& form = d.client->form<Frm_Server>();
       form.Txt_File.Text = "/home/ann/wads/extra/A long name of an external wad.wad";
       form.Lbl_FileName.Caption = "A long name of an external wad.wad";
       form.Lbl_FileSize.Caption = "Filesize: 2147483647";
       form.Lbl_Complete.Caption = "Complete: 42 %";
       form.Lbl_Averages.Caption = "Average: 123456.7 / KBps";
       form.Lbl_Status.Caption = "7 to port: 5050";
       form.FileBar.Value = 42;
       form.Timer1.Enabled = false;
       return form;
     }},
    {"file_server",
     [](RoomDesk& d) -> Form& {
       auto& form = d.client->form<Frm_Client>();
       form.Txt_File.Text = "/home/ann/kelvaron/received/";
       form.Lbl_Status.Caption = "2 on port: 5050";
       form.Timer1.Enabled = false;
       return form;
     }},
    {"status_request", [](RoomDesk& d) -> Form& { return d.client->form<frmGetOP>(); }},
    {"user_kick",
     [](RoomDesk& d) -> Form& {
       fillRoom(d.room());
       return d.client->form<frmkick>();
     }},
};

/// Whether all of a form's captions fit, and its main and lowest buttons are on the screen.
bool fits(const Shot& shot) {
  RoomDesk desk;
  QStringList cut;
  desk.edge.run([&] {
    Form& form = shot.make(desk);
    form.Show();
    QTest::qWait(20);
    cut = cutOrOutOfSight(form, *desk.shell.shown(form));
  });
  for (const QString& text : cut) {
    std::printf("%s: cut or out of sight at %g pt: %s\n", shot.name,
                QApplication::font().pointSizeF(), qUtf8Printable(text));
  }
  return cut.isEmpty();
}

void useFont(qreal points) {
  QFont font = QApplication::font();
  font.setPointSizeF(points);
  QApplication::setFont(font);
  setFormScale(formScaleFor(font));
}

bool shoot(const Shot& shot, const std::filesystem::path& folder) {
  // The room comes up with the desk, at its usual size.
  RoomDesk desk;
  QTest::qWait(20);
  bool saves = false;
  desk.edge.run([&] {
    Form& form = shot.make(desk);
    form.Show();
    QTest::qWait(20);
    QWidget& frame = *desk.shell.shown(form)->frame();
    if (!QTest::qWaitForWindowActive(&frame, 2000)) {
      std::fprintf(stderr, "%s: the window did not get the focus\n", shot.name);
    }
    QTest::qWait(60);
    const std::string file = (folder / (std::string(shot.name) + ".png")).string();
    saves = frame.grab().save(QString::fromStdString(file));
  });
  std::printf("%s %s\n", saves ? "made  " : "FAILED", shot.name);
  return saves;
}

}  // namespace
}  // namespace kelvaron::testing

int main(int argc, char** argv) {
  if (argc < 2 || argc > 3) {
    std::fprintf(stderr, "kelvaron_shots FOLDER [POINTS] | --check\n");
    return 2;
  }
  QApplication application(argc, argv);
  kelvaron::applyTheme(application);
  QApplication::setQuitOnLastWindowClosed(false);
  bool all = true;
  if (std::string_view(argv[1]) == "--check") {
    for (const qreal points : {9.0, 11.0, 14.0, 18.0}) {
      kelvaron::testing::useFont(points);
      for (const auto& shot : kelvaron::testing::kShots) {
        // What is made small on purpose shows less.
        if (std::string_view(shot.name).starts_with("room_small")) continue;
        all = kelvaron::testing::fits(shot) && all;
      }
    }
    return all ? 0 : 1;
  }
  const std::filesystem::path folder = argv[1];
  std::filesystem::create_directories(folder);
  kelvaron::testing::useFont(argc > 2 ? std::atof(argv[2]) : QApplication::font().pointSizeF());
  for (const auto& shot : kelvaron::testing::kShots) {
    all = kelvaron::testing::shoot(shot, folder) && all;
  }
  return all ? 0 : 1;
}
