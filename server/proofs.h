// Moderators' proofs: which are looked at, in which order, and what wrong ones cost. Looking at one
// takes a tenth of a second and happens off the loop.
#pragma once

#include <asio/io_context.hpp>
#include <functional>
#include <string>
#include <vector>

#include "server/clock.h"
#include "server/settings.h"
#include "server/store.h"
#include "server/worker.h"
#include "server/wrong_proofs.h"

namespace kelvaron::server {

class Proofs {
 public:
  struct Proof {
    std::string nick;
    std::string email;
    std::string password;
    std::string address;
  };
  enum class Outcome { right, wrong, tooMany, failed };
  /// The error says why the outcome is `failed`.
  using Done = std::function<void(Outcome outcome, const std::string& error)>;

  Proofs(asio::io_context& io, const Settings& settings) : settings_(settings), worker_(io) {}

  /// Looks at a proof against the registered moderator of that nickname (null: nobody is, which
  /// takes as long). False, and `done` isn't called, when it isn't looked at: after many wrong ones
  /// from its address, after many wrong ones for the account of which one came from there (the
  /// settings have the numbers), or with too many waiting (256, or 2 of its address). `done` is
  /// called on the loop; a wrong proof counts whoever is still there. An address of IPv6 is its
  /// network of 64 bits.
  bool ask(Proof proof, const Moderator* moderator, Done done);
  /// Forgets wrong proofs of ten minutes ago. Called every so often.
  void sweep(Clock::time_point now) { wrong_.forget(now); }

 private:
  struct Waiting {
    Proof proof;
    std::string source;  // its address, or the network of that
    Moderator moderator;
    bool registered;
    Done done;
    /// The lowest goes first: wrong ones of its address, and others of that address before it.
    long rank;
  };
  bool isLookedAt(const std::string& source, const std::string& account) const;
  bool makeRoom(long rank);
  void next();

  const Settings& settings_;
  std::vector<Waiting> waiting_;  // in the order of asking
  bool running_ = false;
  WrongProofs wrong_;
  Worker worker_;
};

}  // namespace kelvaron::server
