#include "chat/inbound_lines.h"

#include <charconv>

#include "base/scope_exit.h"
#include "chat/colors.h"
#include "chat/main_window.h"
#include "chat/mute_list.h"
#include "platform/text.h"
#include "session/client.h"

namespace kelvaron::inbound {
namespace {

constexpr std::string_view kGrant = "Moderator Privlidges Granted - You are now a moderator.";
constexpr unsigned kLargestColor = 0xFFFFFF;

frmMain& room(InboundContext& context) { return context.client.form<frmMain>(); }

// A colour as a decimal number from 0 to 16777215, red in the low byte. Fault 13 for anything else.
Color colorFrom(std::string_view text) {
  unsigned number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (text.empty() || error != std::errc() || end != text.data() + text.size() ||
      number > kLargestColor) {
    throw Fault(fault_number::kTypeMismatch, "\"" + std::string(text) + "\" is not a colour");
  }
  return Color::fromNumber(number);
}

}  // namespace

void onStatusText(InboundContext& context) {
  const ProtocolLine& line = context.line;
  frmMain& main = room(context);
  RichTextBox& txtOutput = main.txtOutput;
  txtOutput.caretToEnd();
  txtOutput.setSelBold(true);
  // Also when a field is missing or wrong.
  const ScopeExit boldEndsWithTheLine([&] { txtOutput.setSelBold(false); });
  context.rule.step([&] { txtOutput.setSelColor(colorFrom(line.field(1))); });
  context.rule.step([&] { txtOutput.insert(std::string(line.field(2)) + "\r\n"); });
  context.rule.step([&] {
    if (line.field(2) != kGrant) return;
    main.Label1.Caption.change([](std::string& name) { name.insert(0, 1, kModeratorMark); });
  });
}

void onAnnounce(InboundContext& context) {
  context.rule.step([&] { room(context).AppendChat(context.line.field(1)); });
  context.client.ports.sound.play("online");
}

void onMessage(InboundContext& context) {
  context.rule = FaultRule::goOn();
  const ProtocolLine& line = context.line;
  frmMain& main = room(context);
  bool muted = false;
  context.rule.step([&] { muted = isMuted(context.client, line.field(1)); });
  if (muted) return;
  main.txtOutput.caretToEnd();
  main.txtOutput.setSelColor(colors::kSender);
  context.rule.step([&] { main.txtOutput.insert(line.field(1)); });
  main.txtOutput.setSelColor(colors::kSpeech);
  context.rule.step([&] { main.txtOutput.insert(std::string(line.field(2)) + "\r\n"); });
  main.txtinput.SelColor = colors::kSpeech;
}

void onUsers(InboundContext& context) {
  context.rule.step([&] { room(context).List1.AddItem(context.line.field(1)); });
}

void onUsersClear(InboundContext& context) { room(context).List1.Clear(); }

void onPrivateMessage(InboundContext& context) {
  const ProtocolLine& line = context.line;
  RichTextBox& txtOutput = room(context).txtOutput;
  txtOutput.caretToEnd();
  txtOutput.setSelColor(colors::kPrivateHeading);
  context.rule.step(
      [&] { txtOutput.insert("Private Message From " + std::string(line.field(1)) + ": "); });
  txtOutput.setSelColor(colors::kPrivateText);
  context.rule.step([&] { txtOutput.insert(std::string(line.field(2)) + "\r\n"); });
  txtOutput.setSelColor(colors::kPlain);
  room(context).txtinput.SelColor = colors::kSpeech;
  context.client.ports.sound.play("ringin");
}

void onPlaySound(InboundContext& context) {
  context.rule.step([&] { context.client.ports.sound.play(context.line.field(1)); });
}

}  // namespace kelvaron::inbound
