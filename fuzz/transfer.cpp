// Fuzz target: bytes from whoever connects to deliver a file, with the receiver of a whole live
// client behind them.
//
// The byte 0xFF parts two arrivals, 0xFE two connections; neither comes with the bytes.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "fuzz/fuzz_desktop.h"
#include "peer/file_receiver.h"

namespace kelvaron {
namespace {

/// Where the content begins: behind the third bar, or at the end.
std::size_t contentBegin(std::string_view stream) {
  std::size_t at = 0;
  for (int bars = 0; bars < 3; ++bars) {
    const std::size_t bar = stream.find('|', at);
    if (bar == std::string_view::npos) return stream.size();
    at = bar + 1;
  }
  return at;
}

void connect(FuzzDesktop& desktop, Frm_Client& form, FuzzSocket& socket, std::string_view input) {
  desktop.files.clear();
  socket.onConnectionRequest(1);
  std::string stream;
  for (const std::string_view arrival : pieces(input, '\xFF')) {
    if (socket.State() != SocketState::connected) break;
    socket.received = arrival;
    stream += arrival;
    socket.onDataArrival();
  }
  // A refused sender leaves no file, and the next one may come.
  const bool refused = socket.State() == SocketState::listening;
  require(desktop.files.size() <= (refused ? 0 : 1));
  for (const auto& file : desktop.files) {
    const std::string_view content = std::string_view(stream).substr(contentBegin(stream));
    const auto announced = static_cast<std::size_t>(form.FileBar.Max.get());
    require(file->content == content.substr(0, announced));
    require(file->kept == (content.size() >= announced));
    require(form.FileBar.Value <= form.FileBar.Max);
  }
  if (!refused) socket.onClose();
  form.Timer1.Tick();
  for (const auto& file : desktop.files) require(!file->open);
}

}  // namespace
}  // namespace kelvaron

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kelvaron;
  static FuzzDesktop desktop;
  static auto& form = desktop.client->form<Frm_Client>();
  static FuzzSocket& socket = *desktop.newest;
  for (const std::string_view each : pieces(asText(data, size), '\xFE')) {
    connect(desktop, form, socket, each);
  }
  return 0;
}
