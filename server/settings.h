// The limits and time-outs of a server, as the file `settings` gives them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kelvaron::server {

/// Times are in milliseconds, sizes in bytes. What each is for stands once, in settings.cpp, from
/// where it also reaches the file as a comment.
struct Settings {
  long login_timeout_ms = 15'000;
  long leave_grace_ms = 3'000;
  long stall_timeout_ms = 30'000;
  long address_answer_ms = 5'000;
  long list_delay_ms = 50;
  long accept_pause_ms = 200;
  long line_limit = 65'536;
  long queue_limit = 4'194'304;
  long burst_lines = 60;
  long lines_per_second = 30;
  long connections = 4'096;
  long connections_per_address = 32;
  long proofs_per_connection = 3;
  long proofs_per_address = 10;
};

/// From lines "key = value"; blank lines and lines that begin with "#" are comments, and a key that
/// is not given keeps its default. Throws `StoreError` with the line's number for a line that is
/// none of these, an unknown key or a value that is no number or out of range.
Settings parse_settings(std::string_view text);

/// The file as the server writes it when there is none: each key with its default and a comment.
std::string default_settings_text();

}  // namespace kelvaron::server
