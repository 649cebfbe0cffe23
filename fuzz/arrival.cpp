// Fuzz target: bytes from a chat server, cut into reads, with a whole live client behind them.
//
// The input is taken apart at each byte 0xFF: each piece is one read. Boxes are answered at once,
// and a client that ended is replaced by a new one.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "fuzz/fuzz_desktop.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static std::unique_ptr<kelvaron::FuzzDesktop> desktop;
  constexpr std::size_t kFullView = 1'000'000;
  for (const std::string_view piece : kelvaron::pieces(kelvaron::asText(data, size), '\xFF')) {
    const bool usable =
        desktop && !desktop->edge.ended() &&
        desktop->client->form<kelvaron::frmMain>().txtOutput.Content.length() < kFullView;
    if (!usable) desktop = std::make_unique<kelvaron::FuzzDesktop>();
    desktop->arrive(piece);
  }
  return 0;
}
