// Draws one row of the chat view.
#pragma once

#include <QColor>
#include <QPointF>
#include <optional>

#include "desktop/chat_view/chat_layout.h"
#include "desktop/chat_view/chat_links.h"
#include "desktop/chat_view/chat_selection.h"

class QPainter;

namespace kelvaron {

/// A link and the line that it stands in.
struct ChatLink {
  std::size_t line;
  LinkSpan span;
  bool operator==(const ChatLink&) const = default;
};

/// What is drawn over the text's own colours.
struct ChatMarks {
  /// What the text is drawn on.
  QColor ground;
  TextRange selection;
};

/// Links are underlined in lines of up to 16 KiB.
void paintRow(QPainter& painter, const ChatLayout& layout, ChatRow row, QPointF topLeft,
              const ChatMarks& marks);

}  // namespace kelvaron
