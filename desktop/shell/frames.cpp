#include "desktop/shell/frames.h"

#include <QApplication>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <vector>

#include "desktop/attention.h"
#include "desktop/shell/form_frame.h"

namespace kelvaron {
namespace {

/// All that are on the screen, those that came up last first.
std::vector<FormFrame*> framesOnScreen() {
  std::vector<FormFrame*> frames;
  for (QWidget* window : QApplication::topLevelWidgets()) {
    auto* frame = dynamic_cast<FormFrame*>(window);
    if (frame != nullptr && frame->isVisible()) frames.push_back(frame);
  }
  std::ranges::sort(frames, std::greater{}, &FormFrame::appearance);
  return frames;
}

FormFrame* largestFrame(const FormFrame* except = nullptr) {
  std::vector<FormFrame*> frames = framesOnScreen();
  std::erase(frames, except);
  const auto area = [](const FormFrame* frame) { return frame->width() * frame->height(); };
  const auto largest = std::ranges::max_element(frames, std::less{}, area);
  return largest == frames.end() ? nullptr : *largest;
}

}  // namespace

const QWidget* anchorFor(const FormFrame& frame) {
  const auto* atWork = dynamic_cast<FormFrame*>(QApplication::activeWindow());
  return atWork != nullptr && atWork != &frame ? atWork : largestFrame(&frame);
}

void bringUp(FormFrame& frame, Coming coming) {
  const auto [activates, asked, quiet] = coming;
  const bool appears = !frame.isVisible();
  const QWidget* atWork = QApplication::activeWindow();
  // A window that is there already doesn't even come to the front: a server could make it do so
  // over and over.
  const bool onlyAsks = activates && !appears && !asked && atWork != &frame;
  const bool comesByItself = quiet || (!activates && !asked && atWork != nullptr);
  frame.setAttribute(Qt::WA_ShowWithoutActivating, comesByItself);
  frame.winId();
  // What the toolkit makes of the attribute when it makes a window, which may have been before.
  frame.windowHandle()->setProperty("_q_showWithoutActivating", comesByItself);
  frame.show();
  // An offer, a start, an answer: somebody wants something.
  if (appears && comesByItself) callForAttention(frame);
  if (onlyAsks) {
    QApplication::alert(&frame);
    return;
  }
  if (appears || activates) frame.raise();
  if (activates || (appears && !comesByItself)) {
    if (frame.isMinimized()) frame.showNormal();
    frame.activateWindow();
  }
}

void hideFrame(FormFrame& frame) {
  constexpr int kUntilDesktopActs = 100;  // in ms
  const bool hadKeyboard = frame.isActiveWindow();
  frame.hide();
  if (!hadKeyboard) return;
  QTimer::singleShot(kUntilDesktopActs, qApp, [] {
    if (QApplication::activeWindow() != nullptr) return;
    if (FormFrame* next = largestFrame()) next->activateWindow();
  });
}

void goToNextFrame(const FormFrame& from) {
  const std::vector<FormFrame*> frames = framesOnScreen();
  auto next = std::ranges::find(frames, &from);
  if (next == frames.end() || ++next == frames.end()) next = frames.begin();
  (*next)->raise();
  (*next)->activateWindow();
}

}  // namespace kelvaron
