#include "moderation/status_request.h"

#include "chat/colors.h"
#include "session/client.h"
#include "session/outbound.h"
#include "session/sending.h"

namespace kelvaron {

frmGetOP::frmGetOP(Client& client)
    : Form({.name = "frmGetOP",
            .caption = "Request OP Status",
            .width = 512 * kTwipsPerPixel,
            .height = 196 * kTwipsPerPixel}),
      client_(client) {
  txtPassword.PasswordChar = '*';
  Label3.ForeColor = colors::kWarning;
  Label3.WordWrap = true;
  cmdOK.Default = true;
  cmdCancel.Cancel = true;
  cmdOK.Click = [this] { cmdOK_Click(); };
  cmdCancel.Click = [this] { cmdCancel_Click(); };
}

void frmGetOP::cmdOK_Click() {
  if (!sendOrTell(client_, outbound::requestOp(client_.UserName, txtEMail.Text.get(),
                                               txtPassword.Text.get()))) {
    return;
  }
  client_.ports.application.DoEvents();
  client_.slots.unload(*this);
}

void frmGetOP::cmdCancel_Click() { client_.slots.unload(*this); }

}  // namespace kelvaron
