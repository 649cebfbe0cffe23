// Fuzz target: what the program ping prints; the byte 0xFF parts two reads.
#include "native/ping_output.h"

#include "fuzz/require.h"
#include "platform/text.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kelvaron;
  std::string_view input = asText(data, size);
  PingOutput output;
  bool sent = false;
  bool replied = false;
  while (true) {
    const std::size_t cut = input.find('\xFF');
    output.append(input.substr(0, cut));
    // What was said isn't taken back by what comes behind it.
    require(output.sent() || !sent);
    require(output.replied() || !replied);
    sent = output.sent();
    replied = output.replied();
    const std::string line = output.lastLine();
    require(line.find_first_of("\r\n") == std::string::npos);
    if (cut == std::string_view::npos) break;
    input.remove_prefix(cut + 1);
  }
  return 0;
}
