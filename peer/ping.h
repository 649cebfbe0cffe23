// Measuring the delay to another user's machine.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

#include "platform/controls.h"
#include "platform/echo.h"

namespace kelvaron {

class Client;

/// Dotted decimal text to the address, its first number in the low byte. Of each number the low
/// eight bits count. 0 for anything but four numbers.
std::uint32_t addressToLong(std::string_view address);

/// Shows the delay to a user, measured once a second until it is closed. A reply counts that comes
/// within 200 ms.
class Pingme : public Form {
 public:
  explicit Pingme(Client& client);

  Label Label2{*this, "Label2", pixels(16, 16, 328, 22), "Player Name : "};
  /// The address that is measured.
  Label Label3{*this, "Label3", pixels(16, 44, 328, 22), "Label3"};
  /// The result.
  Label Label1{*this, "Label1", pixels(16, 76, 328, 40), ""};
  Timer Timer1{*this, "Timer1", 1000, false};
  CommandButton Command1{*this, "Command1", pixels(108, 124, 112, 30), "Re-Ping"};
  CommandButton Command2{*this, "Command2", pixels(232, 124, 112, 30), "OK"};

  void Form_Load() override;
  void Form_Unload() override;

 private:
  void ping();
  void show(const EchoOutcome& outcome);
  void Command2_Click();

  Client& client_;
  std::unique_ptr<Echo> echo_;
};

}  // namespace kelvaron
