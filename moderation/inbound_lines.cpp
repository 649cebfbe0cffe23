#include "moderation/inbound_lines.h"

#include "moderation/kick_form.h"
#include "session/client.h"

namespace kelvaron::inbound {

void onKicker(InboundContext& context) { context.client.form<frmkick>().ShowQuietly(); }

}  // namespace kelvaron::inbound
