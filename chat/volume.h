// The radio's volume.
#pragma once

#include "platform/controls.h"
#include "platform/slider.h"

namespace kelvaron {

class Client;

/// Opens with its design values whatever the player's volume is, which only moving the slider
/// changes.
class Volume : public Form {
 public:
  explicit Volume(Client& client);

  Frame Frame1{*this, "Frame1", pixels(16, 14, 328, 104), "Volume Control"};
  /// Hundredths of a decibel below full volume: the left end is the loudest.
  Slider Slider1{Frame1, "Slider1", pixels(14, 30, 300, 32), 0, 2900, 1450};
  Label Label1{Frame1, "Label1", pixels(14, 68, 300, 24), "Volume"};

 private:
  void Slider1_Change();

  Client& client_;
};

}  // namespace kelvaron
