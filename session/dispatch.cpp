#include "session/dispatch.h"

#include <algorithm>
#include <optional>

#include "platform/text.h"
#include "session/client.h"

namespace kelvaron {
namespace {

constexpr std::chrono::minutes kBetweenMissingProfiles{1};

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

void handleArrival(Client& client, ArrivalRead& read, std::span<const InboundRow> table,
                   std::chrono::steady_clock::time_point until) {
  const std::optional<Fault> fault = FaultRule::stop().handle([&] {
    do {
      const std::size_t end = read.lines.find(kLineEnd);
      if (end == std::string_view::npos) break;
      const std::string_view line = read.lines.substr(0, end);
      read.lines.remove_prefix(end + kLineEnd.size());
      read.rule.step([&] { handleLine(client, line, read.rule, table); });
      if (client.arrivals().dropped()) break;
      if (client.now() >= until) return;
    } while (true);
    read.lines = {};
  });
  if (!fault) return;
  read.lines = {};
  if (fault->number() == fault_number::kFileNotFound && mayTellMissingProfile(client)) {
    client.MsgBox(
        "Someone is trying to view your profile But you havent made one. Please create it to avoid "
        "seeing this message");
  }
}

}  // namespace kelvaron
