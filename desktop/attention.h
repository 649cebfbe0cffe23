// How a window asks for the user's attention.
#pragma once

class QWidget;

namespace kelvaron {

/// Something was said to the user: while another program is at work, the desktop marks the window.
void callForAttention(QWidget& window);

}  // namespace kelvaron
