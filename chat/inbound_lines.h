// Handlers of the inbound lines that fill the room: chat, notices, users, private messages, sounds.
#pragma once

#include "session/dispatch.h"

namespace kelvaron::inbound {

void onStatusText(InboundContext& context);
void onAnnounce(InboundContext& context);
void onMessage(InboundContext& context);
void onUsers(InboundContext& context);
void onUsersClear(InboundContext& context);
void onPrivateMessage(InboundContext& context);
void onPlaySound(InboundContext& context);

}  // namespace kelvaron::inbound
