// Fuzz target: addresses, of a game's host and of a station.
#include "fuzz/require.h"
#include "game/offer_check.h"
#include "radio/asx_playlist.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kelvaron;
  const std::string_view input = asText(data, size);
  if (isAddress(input)) {
    require(input.find_first_not_of("0123456789abcdefABCDEF:.") == std::string_view::npos);
  }
  if (const auto address = parseWebAddress(input)) {
    require(!address->host.empty() && address->port != 0 && address->target.starts_with('/'));
    // Host and target stand in lines of a request, where neither may begin another one.
    for (const std::string& part : {address->host, address->target}) {
      require(part.find_first_of(" \t\r\n") == std::string::npos &&
              part.find('\0') == std::string::npos);
    }
    require(address->host.find_first_of("/?#@") == std::string::npos);
  }
  if (const auto stream = resolveAddress("http://host/a/b", input)) {
    require(stream->find("://") != std::string::npos);
  }
  return 0;
}
