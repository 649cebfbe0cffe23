// Fuzz target: a page from a station, read as a playlist.
#include <algorithm>

#include "base/code_page.h"
#include "fuzz/require.h"
#include "radio/asx_playlist.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kelvaron;
  const std::string_view page = asText(data, size);
  static_cast<void>(isAsx(page));
  const auto streams = asxStreams(page, "http://host:8000/a/b.asx?station=1");
  require(streams.size() <= 16);
  for (const std::string& stream : streams) {
    // What is opened is an address of the network, in one word.
    const std::string small = lower(stream);
    require(small.starts_with("http") || small.starts_with("mms") || small.starts_with("rtsp://"));
    require(small.find("://") != std::string::npos);
    require(std::ranges::none_of(stream, [](char each) {
      return static_cast<unsigned char>(each) <= ' ' || each == '\x7F';
    }));
  }
  return 0;
}
