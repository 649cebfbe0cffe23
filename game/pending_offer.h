// The offer under way on a guest's side: what the program knows of it, from its arrival to the
// start.
#pragma once

#include <optional>
#include <string>

namespace kelvaron {

/// An offer as a guest's client has worked it out when it arrived.
struct PendingOffer {
  /// As the host named himself, with a moderator's mark.
  std::string host = {};
  std::string address = {};
  /// What starts the guest's engine.
  std::string command = {};
  /// Sentences about what no Kelvaron sends and what can't work here; empty when there is nothing.
  std::string unusual = {};

  bool operator==(const PendingOffer&) const = default;
  /// Whether an answer to the other one is an answer to this one.
  bool isSameGame(const PendingOffer& other) const {
    return host == other.host && address == other.address && command == other.command;
  }
};

/// The offers of one client (`client.lasting<PendingOffers>()`). The hidden box `frmMain.Text1` has
/// the command of the latest as its text.
struct PendingOffers {
  PendingOffer latest;
  /// The one that the user accepted last, until its game starts or the last look is cancelled.
  std::optional<PendingOffer> accepted;

  bool isAccepted(const PendingOffer& offer) const {
    return accepted && accepted->isSameGame(offer);
  }
};

}  // namespace kelvaron
