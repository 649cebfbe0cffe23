// Moderators' passwords: kept as Argon2id hashes only.
#pragma once

#include <string>
#include <string_view>

namespace kelvaron::server {

/// A hash with its salt and cost inside, as text. Takes about a tenth of a second and 64 MiB.
/// Throws `std::runtime_error` when the memory can't be had.
std::string hashPassword(std::string_view password);

/// Whether the hash is of this password; at the cost of making one. False for a text that is no
/// hash.
bool isPassword(std::string_view hash, std::string_view password);

}  // namespace kelvaron::server
