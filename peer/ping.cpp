#include "peer/ping.h"

#include <charconv>
#include <chrono>

#include "session/client.h"

namespace kelvaron {
namespace {

constexpr std::string_view kData = "Echo This";
constexpr std::chrono::milliseconds kTimeOut{200};
constexpr std::uint32_t kByte = 0xFF;

// Takes the number in front of the next dot, or of the end. False when there is none.
bool takeNumber(std::string_view& text, std::uint32_t& number) {
  const std::string_view part = text.substr(0, text.find('.'));
  const auto [end, error] = std::from_chars(part.data(), part.data() + part.size(), number);
  if (part.empty() || error != std::errc() || end != part.data() + part.size()) return false;
  text.remove_prefix(part.size());
  return true;
}

}  // namespace

std::uint32_t addressToLong(std::string_view address) {
  std::uint32_t result = 0;
  for (unsigned index = 0; index < 4; ++index) {
    if (index > 0) {
      if (!address.starts_with('.')) return 0;
      address.remove_prefix(1);
    }
    std::uint32_t number = 0;
    if (!takeNumber(address, number)) return 0;
    result |= (number & kByte) << (8 * index);
  }
  return address.empty() ? result : 0;
}

Pingme::Pingme(Client& client)
    : Form({.name = "Pingme",
            .caption = "User Ping",
            .width = 360 * kTwipsPerPixel,
            .height = 170 * kTwipsPerPixel}),
      client_(client) {
  Label1.WordWrap = true;
  Label2.AccessibleName = "Player name";
  Label3.AccessibleName = "Address";
  Label1.AccessibleName = "Ping";
  Command2.Default = true;
  Command2.Cancel = true;
  Timer1.Tick = [this] { ping(); };
  Command1.Click = [this] { ping(); };
  Command2.Click = [this] { Command2_Click(); };
}

void Pingme::Form_Load() {
  Timer1.Enabled = true;
  ping();
}

void Pingme::Form_Unload() {
  Timer1.Enabled = false;
  echo_.reset();
}

void Pingme::ping() {
  const std::string address = Label3.Caption;
  echo_ = client_.ports.echo.send(addressToLong(address), kData, kTimeOut,
                                  [this, address](const EchoOutcome& outcome) {
                                    client_.edge.runUnasked([&] {
                                      // The form may meanwhile be about somebody else.
                                      if (address == Label3.Caption.get()) show(outcome);
                                    });
                                  });
}

void Pingme::show(const EchoOutcome& outcome) {
  switch (outcome.kind) {
    case EchoOutcome::Kind::replied:
      Label1.Caption = std::to_string(outcome.milliseconds) + " ms";
      break;
    case EchoOutcome::Kind::noReply:
      Label1.Caption = "No reply";
      break;
    case EchoOutcome::Kind::refused:
      Label1.Caption = outcome.reason.empty() ? "No reply" : outcome.reason;
      break;
  }
}

void Pingme::Command2_Click() {
  Timer1.Enabled = false;
  client_.slots.unload(*this);
}

}  // namespace kelvaron
