// The one inbound line of moderation.
#pragma once

#include "session/dispatch.h"

namespace kelvaron::inbound {

/// The server asks for a kick with proof.
void onKicker(InboundContext& context);

}  // namespace kelvaron::inbound
