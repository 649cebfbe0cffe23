#include "session/dispatch.h"

#include <algorithm>
#include <optional>

#include "platform/text.h"
#include "session/client.h"

namespace kelvaron {
namespace {

void handleLine(Client& client, std::string_view text, FaultRule& rule,
                std::span<const InboundRow> table) {
  const ProtocolLine line(text);
  const std::string_view keyword = line.keyword();
  const auto row = std::ranges::find(table, keyword, &InboundRow::keyword);
  if (row == table.end() || row->handler == nullptr) return;
  InboundContext context{client, line, rule};
  row->handler(context);
}

}  // namespace

void handleArrival(Client& client, std::string_view received, std::span<const InboundRow> table) {
  FaultRule rule = FaultRule::stop();
  const std::optional<Fault> fault = FaultRule::stop().handle([&] {
    for (std::size_t end = 0; (end = received.find(kLineEnd)) != std::string_view::npos;) {
      const std::string_view line = received.substr(0, end);
      received.remove_prefix(end + kLineEnd.size());
      rule.step([&] { handleLine(client, line, rule, table); });
    }
  });
  if (fault && fault->number() == fault_number::kFileNotFound) {
    client.MsgBox(
        "Someone is trying to view your profile But you havent made one. Please create it to avoid "
        "seeing this message");
  }
}

}  // namespace kelvaron
