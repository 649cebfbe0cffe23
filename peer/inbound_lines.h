// Handlers of the inbound lines by which users' machines find each other.
#pragma once

#include "session/dispatch.h"

namespace kelvaron::inbound {

/// Answered from the user's own file, without asking.
void onGetProfile(InboundContext& context);
void onGetProfile2(InboundContext& context);
void onProfile(InboundContext& context);
void onPing(InboundContext& context);
void onThePing(InboundContext& context);
/// Answered with this machine's address, without asking.
void onGetIpForFile(InboundContext& context);
void onReturnIpForFile(InboundContext& context);
/// Known, and without effect.
void onIpFile(InboundContext& context);

}  // namespace kelvaron::inbound
