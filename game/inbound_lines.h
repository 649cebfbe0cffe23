// Handlers of the lines by which games are arranged.
#pragma once

#include "session/dispatch.h"

namespace kelvaron::inbound {

void onGame(InboundContext& context);
void onAccept(InboundContext& context);
void onDecline(InboundContext& context);
void onStart(InboundContext& context);
void onGetUserIp(InboundContext& context);
void onOkUserIp(InboundContext& context);

}  // namespace kelvaron::inbound
