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
  void appendLines(std::size_t count, std::size_t from = 0) {
    for (std::size_t i = from; i < from + count; ++i) {
      append("line " + std::to_string(i) + "\r\n");
    }
  }
  /// Lets a turn of the event loop show what changed.
  void turn() { QTest::qWait(30); }

  QPoint pointOf(TextPosition place) {
    const QRect rect = view.characterRect(place);
    EXPECT_FALSE(rect.isNull()) << place.line << ',' << place.column;
    return {rect.left() + 1, rect.center().y()};
  }
  void click(TextPosition place, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::mouseClick(view.viewport(), Qt::LeftButton, modifiers, pointOf(place));
  }
  void doubleClick(TextPosition place) {
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, pointOf(place));
  }
  void press(TextPosition place) {
    QTest::mousePress(view.viewport(), Qt::LeftButton, {}, pointOf(place));
  }
  void drag(TextPosition place) { moveMouse(pointOf(place), Qt::LeftButton); }
  void release(QPoint point) { QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, point); }
  void moveMouse(QPoint point, Qt::MouseButtons buttons = Qt::NoButton) {
    const QPointF local(point);
    QMouseEvent event(QEvent::MouseMove, local, view.viewport()->mapToGlobal(local), Qt::NoButton,
                      buttons, Qt::NoModifier);
    QApplication::sendEvent(view.viewport(), &event);
  }
  void wheel(int delta, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    const QPointF local(20, 20);
    QWheelEvent event(local, view.viewport()->mapToGlobal(local), {}, {0, delta}, Qt::NoButton,
                      modifiers, Qt::NoScrollPhase, false);
    QApplication::sendEvent(view.viewport(), &event);
  }
  void key(Qt::Key code, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(&view, code, modifiers);
  }

  StyledText text;
  ChatView view{text};
};

}  // namespace kelvaron::testing
