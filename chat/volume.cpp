#include "chat/volume.h"

#include "session/client.h"

namespace kelvaron {

Volume::Volume(Client& client)
    : Form({.name = "Volume",
            .caption = "Volume",
            .width = 360 * kTwipsPerPixel,
            .height = 132 * kTwipsPerPixel}),
      client_(client) {
  Slider1.AccessibleName = "Volume";
  Slider1.FillsBehind = true;
  Label1.Alignment_ = Alignment::center;
  Slider1.Change = [this] { Slider1_Change(); };
}

void Volume::Slider1_Change() {
  client_.ports.player.setVolume(-Slider1.Value.get());
  Label1.Caption = "Volume: " + std::to_string(Slider1.Value.get());
}

}  // namespace kelvaron
