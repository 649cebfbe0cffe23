// Argon2id of libsodium at the cost that it recommends for logins.
#include "server/password.h"

#include <sodium.h>

#include <array>
#include <stdexcept>

namespace kelvaron::server {
namespace {

void needSodium() {
  if (sodium_init() < 0) throw std::runtime_error("libsodium can't be started");
}

}  // namespace

std::string hashPassword(std::string_view password) {
  needSodium();
  std::array<char, crypto_pwhash_STRBYTES> hash{};
  if (crypto_pwhash_str(hash.data(), password.data(), password.size(),
                        crypto_pwhash_OPSLIMIT_INTERACTIVE,
                        crypto_pwhash_MEMLIMIT_INTERACTIVE) != 0) {
    throw std::runtime_error("there is not enough memory to hash a password");
  }
  return hash.data();
}

bool isPassword(std::string_view hash, std::string_view password) {
  needSodium();
  if (hash.size() >= crypto_pwhash_STRBYTES) return false;
  std::array<char, crypto_pwhash_STRBYTES> padded{};
  hash.copy(padded.data(), hash.size());
  return crypto_pwhash_str_verify(padded.data(), password.data(), password.size()) == 0;
}

}  // namespace kelvaron::server
