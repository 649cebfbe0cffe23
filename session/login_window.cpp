#include "session/login_window.h"

#include <algorithm>
#include <array>

#include "build_settings.h"
#include "platform/fault.h"
#include "session/client.h"
#include "session/main_window.h"

namespace kelvaron {
namespace {

constexpr std::string_view kCaption = "Kelvaron Login";
// The longest name that logs in. The message speaks of 12, so that names stay short.
constexpr std::size_t kLongestName = 15;

struct Server {
  CheckBox frmLogin::*box;
  std::string_view address;
  std::string_view location;
};

constexpr auto kServers = std::to_array<Server>({
    {&frmLogin::Check1, build::kMasterServer, "Oregon USA (Master Server)"},
    {&frmLogin::Check2, build::kSecondServer, "Washington USA"},
    {&frmLogin::Check3, build::kTournamentServer, "Tournament Server"},
});

// What is wrong with a nickname, or an empty text. An empty name is another matter.
std::string objectionTo(std::string_view name) {
  if (name.find(' ') != std::string_view::npos) {
    return "You are not allowed to use Spaces in your name. Try again";
  }
  if (name.find_first_of("\xA5[]") != std::string_view::npos) {
    return "You are not allowed to use \xA5 or [] in your name. Try again";
  }
  if (name.size() > kLongestName) {
    return "Too many characters in your name. Please limit your user name to 12 characters";
  }
  return {};
}

/// Whether an instance whose session can't be told from others' was told of already.
struct InstanceProblemTold {
  bool told = false;
};

// Once: nothing can be done about it in here, and two programs would share one folder.
void tellInstanceProblem(Client& client) {
  const std::string problem = client.ports.application.InstanceProblem();
  if (problem.empty() || std::exchange(client.lasting<InstanceProblemTold>().told, true)) return;
  client.MsgBox("Kelvaron can not make sure that it runs only once. " + problem + ".",
                box_style::kExclamation);
}

}  // namespace

frmLogin::frmLogin(Client& client)
    : Form({.name = "frmLogin", .caption = kCaption, .width = 5400, .height = 4410}),
      client_(client) {
  imgArt.AccessibleName = "Kelvaron";
  lblServerIP.Visible = false;
  txtServerIP.Visible = false;
  txtServerIP.Text = std::string(build::kMasterServer);
  for (CheckBox* unused : {&Check4, &Check5, &Check6, &Check7}) {
    unused->Visible = false;
    unused->Enabled = false;
  }
  cmdOK.Default = true;
  cmdCancel.Cancel = true;

  txtUserName.Change = [this] { txtUserName_Change(); };
  for (const Server& server : kServers) {
    CheckBox& box = this->*server.box;
    box.MouseDown = [this, &box](MouseButton) { choose(box); };
    box.MouseUp = [this, &box](MouseButton) { choose(box); };
  }
  cmdOK.Click = [this] { cmdOK_Click(); };
  cmdCancel.Click = [this] { cmdCancel_Click(); };
}

void frmLogin::Form_Load() {
  const FaultRule rule = FaultRule::goOn();
  rule.step([&] { client_.ports.files.MkDir("sounds"); });
  rule.step([&] { client_.ports.files.MkDir("received"); });
  rule.step([&] {
    if (!client_.ports.application.PrevInstance()) return;
    client_.title = "Doh!";
    client_.MsgBox(
        "Im sorry but there is another Kelvaron open. Please close it before opening another");
    client_.ports.application.End();
  });
  rule.step([&] { tellInstanceProblem(client_); });
  Check1.Value = 1;
}

void frmLogin::Form_Unload() {
  if (client_.mainWindowShown()) return;
  cmdCancel_Click();
}

void frmLogin::txtUserName_Change() { client_.UserName = txtUserName.Text; }

void frmLogin::choose(CheckBox& pressed) {
  for (const Server& server : kServers) {
    CheckBox& box = this->*server.box;
    box.Value = &box == &pressed ? 1 : 0;
  }
}

void frmLogin::cmdOK_Click() {
  // Any fault on the way to the connection is told in one box, and the form is ready again.
  if (FaultRule::stop().handle([&] { connectToServer(txtUserName.Text); })) connectionError();
}

void frmLogin::connectToServer(const std::string& name) {
  if (const std::string objection = objectionTo(name); !objection.empty()) {
    client_.MsgBox(objection);
    return;
  }
  if (name.empty()) {
    connectionError();
    return;
  }
  setWaiting(true);
  client_.UserName = name;
  std::string address;
  for (const Server& server : kServers) {
    if ((this->*server.box).Value != 1) continue;
    address = server.address;
    client_.mainWindow().serverLocation().Caption = std::string(server.location);
  }
  Caption = std::string(kCaption) + " - Connecting...";
  txtServerIP.Text = address;
  client_.serverAddress = address;
  client_.mainWindow();
  client_.connect(address);
}

void frmLogin::connectionError() {
  client_.MsgBox("An error occured while connecting. Please try again. The server may be down.",
                 box_style::kExclamation, "Connection Error");
  setWaiting(false);
  Caption = std::string(kCaption);
  // The room is made here at the latest, and takes its shown name from what stands in the box.
  client_.mainWindow();
  client_.leaveConnection();
  const auto chosen = [this](const Server& server) { return (this->*server.box).Value == 1; };
  if (std::ranges::none_of(kServers, chosen)) Check1.SetFocus();
}

void frmLogin::setWaiting(bool waiting) {
  MousePointer_ = waiting ? MousePointer::hourglass : MousePointer::standard;
  cmdCancel.Enabled = !waiting;
  cmdOK.Enabled = !waiting;
  txtUserName.Enabled = !waiting;
}

void frmLogin::cmdCancel_Click() {
  client_.leaveConnection();
  client_.ports.application.End();
}

}  // namespace kelvaron
