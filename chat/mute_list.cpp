#include "chat/mute_list.h"

#include <algorithm>

#include "base/code_page.h"
#include "chat/colors.h"
#include "session/client.h"

namespace kelvaron {

Muted::Muted(Client&)
    : Form({.name = "Muted",
            .caption = "People you have Muted",
            .width = 320 * kTwipsPerPixel,
            .height = 296 * kTwipsPerPixel}) {
  List1.ForeColor = colors::kUsers;
  List1.BackColor = colors::kBlack;
  List1.AccessibleName = "Muted users";
  HidesOnClose = true;
  Command1.Cancel = true;
  Command1.Click = [this] { Command1_Click(); };
}

void Muted::Command1_Click() { Visible = false; }

bool isMuted(const Client& client, std::string_view sender) {
  const auto* muted = client.loadedForm<Muted>();
  if (muted == nullptr) return false;
  const std::string capitals = upper(sender);
  return std::ranges::any_of(muted->List1.entries(),
                             [&](const std::string& entry) { return capitals == entry + ": "; });
}

}  // namespace kelvaron
