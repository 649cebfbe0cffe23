// Playlists of radio stations, and the web addresses that stand in them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvaron {

/// The parts of an http address.
struct WebAddress {
  std::string host;
  std::uint16_t port = 80;
  /// Path and query, beginning with "/".
  std::string target;
};

/// None for an address that isn't http, or has a blank or a control character in it.
std::optional<WebAddress> parseWebAddress(std::string_view address);

/// What `reference` means in a page of `base`: itself when it is an address, else a place on the
/// same host. None for what Kelvaron doesn't open: anything but http, https, mms (mmsh, mmst and
/// mmsu too) and rtsp.
std::optional<std::string> resolveAddress(const std::string& base, std::string_view reference);

/// Whether a page is an ASX playlist, by how it begins.
bool isAsx(std::string_view page);

/// The streams of an ASX playlist in their order, resolved against the playlist's own address; at
/// most 16. Written in capitals or not, with any quotes; comments are passed over.
std::vector<std::string> asxStreams(std::string_view page, const std::string& base);

}  // namespace kelvaron
