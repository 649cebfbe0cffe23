// Handlers of the inbound lines that decide the session: refusals, kicks and bans, boxes, the
// message of the day, and the server's questions for the address.
#pragma once

#include "session/dispatch.h"

namespace kelvaron::inbound {

void onBanUser(InboundContext& context);
void onBad(InboundContext& context);
void onBanned(InboundContext& context);
void onMsgBox(InboundContext& context);
void onKicked(InboundContext& context);
void onDouble(InboundContext& context);
void onMotd(InboundContext& context);
void onGetIp(InboundContext& context);
void onBanIp(InboundContext& context);

}  // namespace kelvaron::inbound
