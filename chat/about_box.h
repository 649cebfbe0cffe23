// The about box, and the way to the system's own information tool.
#pragma once

#include <string>

#include "platform/controls.h"
#include "platform/registry.h"

namespace kelvaron {

class Client;

class frmAbout : public Form {
 public:
  explicit frmAbout(Client& client);

  Image Image1{*this, "Image1", pixels(20, 20, 72, 72), "icon_128"};
  Image Image2{*this, "Image2", pixels(108, 20, 248, 48), "wordmark"};
  Label lblTitle{*this, "lblTitle", pixels(108, 74, 110, 24), ""};
  Label lblVersion{*this, "lblVersion", pixels(226, 74, 180, 24), ""};
  Label lblDescription{
      *this, "lblDescription", pixels(20, 112, 540, 80),
      "Kelvaron is the best and most fun way to launch Doom, Doom2 and other doom port multiplayer "
      "games over the internet! No need to know what an IP address is, or how to make it all work, "
      "Kelvaron does all the work for you! Just select your players, and go!"};
  Label lblDisclaimer{
      *this, "lblDisclaimer", pixels(20, 200, 540, 46),
      "Warning: No other 3rd party clients are permitted to access the Kelvaron network. If you "
      "have ideas for Kelvaron, please contact QZN or Sorrel."};
  Label Label8{*this, "Label8", pixels(20, 254, 540, 24),
               "Logo, icon and login picture were drawn for Kelvaron by its makers."};
  CommandButton cmdOK{*this, "cmdOK", pixels(448, 294, 112, 30), "OK"};
  CommandButton cmdSysInfo{*this, "cmdSysInfo", pixels(296, 294, 140, 30), "&System Info..."};

  /// Finds the system's information tool in the registry and starts it, or says that it can't.
  void StartSysInfo();
  /// Reads a value into `KeyVal`: a string as it stands, a number as "&h" and the hexadecimal
  /// digits of its bytes from the highest down; any other type leaves `KeyVal` as it came. Returns
  /// whether the value is there; without it, `KeyVal` becomes empty.
  bool GetKeyValue(RegistryKey KeyRoot, const std::string& KeyName, const std::string& SubKeyRef,
                   std::string& KeyVal);

  void Form_Load() override;
  void Form_MouseMove() override;

 private:
  void Image1_MouseMove();
  void cmdOK_Click();
  void cmdSysInfo_Click();

  Client& client_;
};

}  // namespace kelvaron
