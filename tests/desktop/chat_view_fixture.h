// A chat view in a shown window, with the hands of a user.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QMouseEvent>
#include <QTest>
#include <QWheelEvent>
#include <string>

#include "desktop/chat_view/chat_view.h"

namespace kelvaron::testing {

class ChatViewTest : public ::testing::Test {
 protected:
  ChatViewTest() {
    text.setColor({255, 255, 255});
    view.resize(400, 300);
    view.show();
    view.activateWindow();
    view.setFocus();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&view));
  }

  /// Appends as the chat does, whatever place the user chose.
  void append(const std::string& words) {
    text.caretToEnd();
    text.insert(words);
  }
  void appendLines(std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) append("line " + std::to_string(i) + "\r\n");
  }
  /// Lets a turn of the event loop show what changed.
  void turn() { QTest::qWait(30); }

  QPoint pointOf(TextPosition place) {
    const QRect rect = view.characterRect(place);
    EXPECT_FALSE(rect.isNull()) << place.line << ',' << place.column;
    return {rect.left() + 1, rect.center().y()};
  }
  void click(TextPosition place, Qt::KeyboardModifiers modifiers = {}) {
    QTest::mouseClick(port, Qt::LeftButton, modifiers, pointOf(place));
  }
  void doubleClick(TextPosition place) {
    QTest::mouseDClick(port, Qt::LeftButton, {}, pointOf(place));
  }
  void press(TextPosition place) { QTest::mousePress(port, Qt::LeftButton, {}, pointOf(place)); }
  void drag(TextPosition place) { moveMouse(pointOf(place), Qt::LeftButton); }
  void release(QPoint point) { QTest::mouseRelease(port, Qt::LeftButton, {}, point); }
  void moveMouse(QPointF point, Qt::MouseButtons buttons = Qt::NoButton) {
    QMouseEvent event(QEvent::MouseMove, point, port->mapToGlobal(point), {}, buttons, {});
    QApplication::sendEvent(port, &event);
  }
  void wheel(int delta, Qt::KeyboardModifiers modifiers = {}) {
    const QPointF local(20, 20);
    QWheelEvent event(local, port->mapToGlobal(local), {}, {0, delta}, {}, modifiers, {}, false);
    QApplication::sendEvent(port, &event);
  }
  void key(Qt::Key code, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(&view, code, modifiers);
  }

  StyledText text;
  ChatView view{text};
  QWidget* const port = view.viewport();
};

}  // namespace kelvaron::testing
