#include "session/message_of_the_day.h"

#include "session/client.h"

namespace kelvaron {

Form5::Form5(Client& client)
    : Form({.name = "Form5", .caption = "Message Of The Day", .width = 7200, .height = 4200}),
      client_(client) {
  Label1.Font_ = Font{.points = 13, .bold = true};
  Label1.ForeColor = Color{192, 255, 192};
  Text1.MultiLine = true;
  Text1.Locked = true;
  Text1.AccessibleName = "Message of the day";
  Command1.Default = true;
  Command1.Cancel = true;
  Command1.Click = [this] { Command1_Click(); };
}

void Form5::Command1_Click() { client_.slots.unload(*this); }

}  // namespace kelvaron
