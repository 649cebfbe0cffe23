#include "chat/about_box.h"

#include <array>
#include <optional>

#include "build_settings.h"
#include "chat/colors.h"
#include "session/client.h"

namespace kelvaron {
namespace {

constexpr const char* kUnavailable = "System Information Is Unavailable At This Time";
/// The longest value that is read, in bytes.
constexpr std::size_t kValueRoom = 1024;

// The digits of each byte from the last to the first, without a zero in front of a single one.
std::string hexadecimal(const std::string& bytes) {
  constexpr std::array<char, 16> kDigits = {'0', '1', '2', '3', '4', '5', '6', '7',
                                            '8', '9', 'A', 'B', 'C', 'D', 'E', 'F'};
  std::string digits;
  for (const char each : std::string(bytes.rbegin(), bytes.rend())) {
    const auto byte = static_cast<unsigned char>(each);
    if (byte >= 16) digits += kDigits[byte / 16U];
    digits += kDigits[byte % 16U];
  }
  return digits;
}

}  // namespace

frmAbout::frmAbout(Client& client)
    : Form({.name = "frmAbout",
            .caption = "",
            .width = 580 * kTwipsPerPixel,
            .height = 340 * kTwipsPerPixel}),
      client_(client) {
  Image1.AccessibleName = "Kelvaron icon";
  Image2.AccessibleName = "Kelvaron logo";
  lblTitle.Font_ = Font{.points = 13, .bold = true};
  lblTitle.ForeColor = colors::kLabel;
  for (Label* label : {&lblDescription, &lblDisclaimer, &Label8}) label->WordWrap = true;
  lblDisclaimer.ForeColor = colors::kWarning;
  cmdOK.Default = true;
  cmdOK.Cancel = true;
  Image1.MouseMove = [this] { Image1_MouseMove(); };
  cmdOK.Click = [this] { cmdOK_Click(); };
  cmdSysInfo.Click = [this] { cmdSysInfo_Click(); };
}

void frmAbout::Form_Load() {
  Caption = "About " + client_.title;
  lblVersion.Caption = "Version " + std::to_string(build::kVersionMajor) + "." +
                       std::to_string(build::kVersionMinor);
  lblTitle.Caption = client_.title;
}

void frmAbout::Image1_MouseMove() { MousePointer_ = MousePointer::noDrop; }

void frmAbout::Form_MouseMove() { MousePointer_ = MousePointer::standard; }

void frmAbout::cmdOK_Click() { client_.slots.unload(*this); }

void frmAbout::cmdSysInfo_Click() { StartSysInfo(); }

void frmAbout::StartSysInfo() {
  const auto fault = FaultRule::stop().handle([&] {
    const auto none = [] {
      return Fault(fault_number::kFileNotFound, "There is no information tool");
    };
    std::string path;
    if (!GetKeyValue(registry_key::HKEY_LOCAL_MACHINE, R"(SOFTWARE\Microsoft\Shared Tools\MSINFO)",
                     "PATH", path)) {
      if (!GetKeyValue(registry_key::HKEY_LOCAL_MACHINE,
                       R"(SOFTWARE\Microsoft\Shared Tools Location)", "MSINFO", path)) {
        throw none();
      }
      path += R"(\MSINFO32.EXE)";
      if (!client_.ports.registry.fileExists(path)) throw none();
    }
    if (path.empty()) throw none();
    client_.ports.processes.run(path, WindowStyle::maximizedFocus, [&client = client_] {
      client.edge.run([&client] { client.MsgBox(kUnavailable); });
    });
  });
  if (fault) client_.MsgBox(kUnavailable);
}

bool frmAbout::GetKeyValue(RegistryKey KeyRoot, const std::string& KeyName,
                           const std::string& SubKeyRef, std::string& KeyVal) {
  Registry& registry = client_.ports.registry;
  const auto key = registry.RegOpenKeyExA(KeyRoot, KeyName);
  std::optional<RegistryValue> value;
  if (key) {
    value = registry.RegQueryValueExA(*key, SubKeyRef, kValueRoom);
    registry.RegCloseKey(*key);
  }
  if (!value) {
    KeyVal.clear();
    return false;
  }
  std::string& bytes = value->bytes;
  if (!bytes.empty() && bytes.back() == '\0') bytes.pop_back();
  if (value->type == registry_type::kString) KeyVal = bytes;
  if (value->type == registry_type::kNumber) KeyVal = "&h" + KeyVal + hexadecimal(bytes);
  return true;
}

}  // namespace kelvaron
