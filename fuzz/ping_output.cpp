// Fuzz target: what the program ping prints; the byte 0xFF parts two reads.
#include "native/posix/ping_output.h"

#include "fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kelvaron;
  PingOutput output;
  bool sent = false;
  bool replied = false;
  for (const std::string_view piece : pieces(asText(data, size), '\xFF')) {
    output.append(piece);
    // What was said isn't taken back by what comes behind it.
    require(output.sent() || !sent);
    require(output.replied() || !replied);
    sent = output.sent();
    replied = output.replied();
    require(output.lastLine().find_first_of("\r\n") == std::string::npos);
  }
  return 0;
}
