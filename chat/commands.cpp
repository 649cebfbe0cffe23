#include "chat/commands.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "base/code_page.h"
#include "chat/colors.h"
#include "chat/main_window.h"
#include "chat/mute_list.h"
#include "chat/radio.h"
#include "chat/user_list_entry.h"
#include "session/asked_for.h"
#include "session/client.h"
#include "session/outbound.h"

namespace kelvaron {
namespace {

constexpr std::string_view kAway = "AWAY";

struct Row;

// What a command works with.
struct TypedLine {
  Client& client;
  frmMain& room;
  const FaultRule& rule;
  const Row& row;
  // The typed text whole.
  const std::string& text;

  // The text without its first `count` characters. Fault 5 when it is shorter.
  std::string rest(std::size_t count) const {
    if (text.size() < count) throw Fault(fault_number::kInvalidCall, "The command is too short");
    return text.substr(count);
  }
  // What stands behind the command word and one character more.
  std::string argument() const;
  void clear() const { room.txtinput.Text = ""; }
};

enum class Match { word, whole, whileAway, anything };

struct Row {
  Match match = Match::word;
  std::string_view word = {};
  void (*run)(const TypedLine&);
  // For actions: the sentence behind the user's name, around the argument if there is one.
  std::string_view before = {};
  std::string_view after = {};
};

std::string TypedLine::argument() const { return rest(row.word.size() + 1); }

void say(const TypedLine& line) {
  line.client.send(outbound::message(line.client.UserName, line.text));
  line.clear();
}

void act(const TypedLine& line) {
  line.client.send(outbound::action(line.client.UserName + std::string(line.row.before)));
  line.clear();
}

void actOn(const TypedLine& line) {
  line.client.send(outbound::action(line.client.UserName + std::string(line.row.before) +
                                    line.argument() + std::string(line.row.after)));
  line.clear();
}

void mute(const TypedLine& line) {
  const std::string name = upper(line.argument());
  line.client.MsgBox(name + " has been muted");
  Muted& muted = line.client.form<Muted>();
  muted.List1.AddItem(name);
  muted.Visible = true;
}

void unmute(const TypedLine& line) {
  Muted& muted = line.client.form<Muted>();
  for (int i = 0; i < muted.List1.ListCount();) {
    if (muted.List1.List(i) != upper(line.argument())) {
      ++i;
      continue;
    }
    muted.List1.RemoveItem(i);
    line.client.MsgBox(line.argument() + " Has been unmuted.");
    muted.Visible = true;
  }
}

void goAway(const TypedLine& line) {
  line.client.send(outbound::away(line.client.UserName));
  line.clear();
  line.room.Label7.Caption = std::string(kAway);
}

void comeBack(const TypedLine& line) {
  line.room.Label7.Caption = "Ready to Play";
  line.client.send(outbound::returnCs(line.client.UserName));
  say(line);
}

void sound(const TypedLine& line) {
  line.client.ports.application.DoEvents();
  const std::string name = line.argument();
  line.client.send(outbound::action(line.client.UserName + " plays a sound (" + name + ".wav)"));
  line.client.send(outbound::sound(name));
  line.clear();
}

void ping(const TypedLine& line) {
  for (const std::string& entry : line.room.List1.entries()) {
    if (entry != line.argument()) continue;
    if (hasTag(entry, kInGameTag)) return;
    line.client.send(outbound::pingUser(entry, line.room.Label1.Caption.get()));
    line.client.lasting<AskedFor>().ask(line.client, Asked::ping, nicknameOf(entry));
    line.clear();
    return;
  }
  line.clear();
  line.client.MsgBox("User is not logged in or is gurrently in a game.");
}

void help(const TypedLine& line) {
  constexpr auto kHelp = std::to_array<std::string_view>(
      {"KV / Command Help", "/SLAP  USERNAME - User slaps user with his handy dandy rubber chicken",
       "/KISS USERNAME - You invite USER to kiss your rocket", "/FRAG - You are ready to FRAG",
       "/SLEEP - You are getting tired and are ready to retire",
       "/COOL - You would rather chat on Kelvaron than eat fried liver",
       "/KISSME USERNAME - You kiss USER",
       "/RETURN USERNAME - You return the kiss from USER and ask for a full refund",
       "/ME ACTION - You perform an unique action",
       "/PLAY KKRZ - Plays the internet broadcast of Radio Station Z100 in portland",
       "/PLAY KWJJ - Plays the internet broadcast of Radio Station KWJJ in portland",
       "/PING USERNAME - Pings the user"});
  line.room.txtOutput.setSelColor(colors::kNotice);
  for (const std::string_view text : kHelp) {
    line.room.txtOutput.insert(std::string(text) + "\r\n");
  }
  line.room.txtinput.SelColor = colors::kSpeech;
  line.clear();
}

void serverMessage(const TypedLine& line) {
  line.client.send(outbound::serverMessage(line.argument()));
  line.clear();
}

void getIp(const TypedLine& line) {
  line.client.send(outbound::getIp(line.argument()));
  line.clear();
}

void kick(const TypedLine& line) {
  // Without a nickname the send is passed over and the box is cleared all the same.
  line.rule.step([&] {
    std::vector<std::string> parts;
    for (std::size_t begin = 0, blank = 0; blank != std::string::npos; begin = blank + 1) {
      blank = line.text.find(' ', begin);
      parts.push_back(line.text.substr(begin, blank - begin));
    }
    if (parts.size() < 2) throw Fault(fault_number::kSubscript, "No nickname to kick");
    const std::string& nick = parts[1];
    const std::size_t reasonAt = std::min(nick.size() + line.row.word.size() + 2, line.text.size());
    line.client.send(outbound::kick(nick, line.text.substr(reasonAt)));
  });
  line.clear();
}

template <const Station& station>
void play(const TypedLine& line) {
  playUnwatched(line.client, line.room, station);
  line.clear();
}

// The progress display goes on as it is.
void stopRadio(const TypedLine& line) {
  line.client.ports.player.Stop();
  line.clear();
}

// In the order of the compare: the first row that matches runs.
constexpr auto kRows = std::to_array<Row>({
    {.word = "/MUTE", .run = mute},
    {.word = "/UNMUTE", .run = unmute},
    {.word = "/PLAY KKRZ", .run = play<kStationKkrz>},
    {.word = "/PLAY KWJJ", .run = play<kStationKwjj>},
    {.word = "/STOP", .run = stopRadio},
    {.word = "/AWAY", .run = goAway},
    {.match = Match::whileAway, .run = comeBack},
    {.word = "/ME", .run = actOn, .before = " "},
    {.word = "/SLAP",
     .run = actOn,
     .before = " Slaps ",
     .after = " around with his handy dandy rubber chicken."},
    {.word = "/KISSME", .run = actOn, .before = " kisses ", .after = " gently on the hand"},
    {.word = "/KISS", .run = actOn, .before = " invites ", .after = " to kiss his/her rocket."},
    {.word = "/FRAG", .run = act, .before = " is ready to FRAG"},
    {.word = "/SLEEP", .run = act, .before = " is getting tired and is about to retire."},
    {.word = "/COOL", .run = act, .before = " would rather chat on Kelvaron than eat fried liver."},
    {.word = "/RETURN",
     .run = actOn,
     .before = " returns the kiss from  ",
     .after = " and asks for a refund"},
    {.word = "/SOUND", .run = sound},
    {.word = "/PING", .run = ping},
    {.match = Match::whole, .word = "/?", .run = help},
    {.word = "/MSG", .run = serverMessage},
    {.word = "/GETIP", .run = getIp},
    {.word = "/KICK", .run = kick},
    {.match = Match::anything, .run = say},
});

bool matches(const Row& row, std::string_view text, const frmMain& room) {
  switch (row.match) {
    case Match::word:
      return upper(text.substr(0, row.word.size())) == row.word;
    case Match::whole:
      return text == row.word;
    case Match::whileAway:
      return room.Label7.Caption.get() == kAway;
    case Match::anything:
      return true;
  }
  return false;
}

const Row& rowFor(std::string_view text, const frmMain& room) {
  return *std::ranges::find_if(kRows, [&](const Row& each) { return matches(each, text, room); });
}

}  // namespace

std::vector<std::string_view> commandWords() {
  std::vector<std::string_view> words;
  for (const Row& row : kRows) {
    if (!row.word.empty()) words.push_back(row.word);
  }
  return words;
}

bool isAboutEntry(std::string_view text) { return upper(text).starts_with("/PING "); }

bool saysCommandAloud(std::string_view text, const frmMain& room) {
  return text.starts_with('/') && rowFor(text, room).word.empty();
}

void enterPressed(Client& client, frmMain& room) {
  const std::string text = room.txtinput.Text;
  const Row& row = rowFor(text, room);
  const FaultRule rule = FaultRule::stopExcept(fault_number::kSubscript);
  rule.handle([&] { row.run({client, room, rule, row, text}); });
}

}  // namespace kelvaron
