// The chat view's voice: tells screen readers and test drivers its text, cursor and selection.
#pragma once

#include <cstddef>
#include <string_view>

#include "platform/styled_text.h"

namespace kelvaron {

class ChatView;

/// Makes chat views known to the platform's accessibility; to be called at least once.
void installChatAccessibility();

/// What changed, for whoever listens. Offsets count bytes of the whole text with CR LF.
void tellTextInserted(ChatView& view, std::size_t offset, std::string_view text);
void tellCursorMoved(ChatView& view);

}  // namespace kelvaron
