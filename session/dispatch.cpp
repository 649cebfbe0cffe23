#include "session/dispatch.h"

#include <algorithm>
#include <optional>

#include "platform/text.h"
#include "session/client.h"

namespace kelvaron {
namespace {

constexpr std::chrono::minutes kBetweenMissingFiles{1};

void handleLine(Client& client, std::string_view text, FaultRule& rule,
                std::span<const InboundRow> table) {
  const ProtocolLine line(text);
  const std::string_view keyword = line.keyword();
  const auto row = std::ranges::find(table, keyword, &InboundRow::keyword);
  if (row == table.end()) return;
  InboundContext context{client, line, rule};
  row->handler(context);
}

/// Whoever asks for a profile again and again must not keep its owner from the room. Each file that
/// is missing counts for itself.
bool mayTellMissingFile(Client& client, const Fault& fault) {
  const auto now = client.now();
  const auto [told, first] = client.missingFileTold.try_emplace(fault.what(), now);
  if (!first && now - told->second < kBetweenMissingFiles) return false;
  told->second = now;
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
  if (fault->number() == fault_number::kFileNotFound && mayTellMissingFile(client, *fault)) {
    client.MsgBox(
        "Someone is trying to view your profile But you havent made one. Please create it to avoid "
        "seeing this message");
  }
}

}  // namespace kelvaron
