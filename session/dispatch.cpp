#include "session/dispatch.h"

#include <algorithm>
#include <optional>

#include "platform/text.h"
#include "session/client.h"

namespace kelvaron {
namespace {

constexpr std::chrono::minutes kBetweenMissingProfiles{1};
// Lines of one turn take so long at most, and the one that is at work then.
constexpr std::chrono::milliseconds kLongestTurn{10};

void handleLine(Client& client, std::string_view text, FaultRule& rule,
                std::span<const InboundRow> table) {
  const ProtocolLine line(text);
  const std::string_view keyword = line.keyword();
  const auto row = std::ranges::find(table, keyword, &InboundRow::keyword);
  if (row == table.end()) return;
  InboundContext context{client, line, rule};
  row->handler(context);
}

/// Whoever asks for a profile again and again must not keep its owner from the room.
bool mayTellMissingProfile(Client& client) {
  const auto now = client.now();
  if (client.missingProfileTold && now - *client.missingProfileTold < kBetweenMissingProfiles) {
    return false;
  }
  client.missingProfileTold = now;
  return true;
}

}  // namespace

ArrivalRest handleArrival(Client& client, std::string_view received,
                          std::span<const InboundRow> table, FaultRule rule) {
  const auto until = client.now() + kLongestTurn;
  bool late = false;
  const std::optional<Fault> fault = FaultRule::stop().handle([&] {
    for (std::size_t end = 0; (end = received.find(kLineEnd)) != std::string_view::npos;) {
      const std::string_view line = received.substr(0, end);
      received.remove_prefix(end + kLineEnd.size());
      rule.step([&] { handleLine(client, line, rule, table); });
      if (client.arrivalDropped()) return;
      if ((late = client.now() >= until)) return;
    }
  });
  if (fault && fault->number() == fault_number::kFileNotFound && mayTellMissingProfile(client)) {
    client.MsgBox(
        "Someone is trying to view your profile But you havent made one. Please create it to avoid "
        "seeing this message");
  }
  return {late ? received : std::string_view(), rule};
}

}  // namespace kelvaron
