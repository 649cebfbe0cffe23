#include "desktop/ports/qt_event_loop.h"

#include <QSocketNotifier>
#include <QTimer>
#include <utility>

namespace kelvaron {
namespace {

/// Deletes what may be the sender of the signal being handled.
struct DeleteLater {
  void operator()(QObject* object) const { object->deleteLater(); }
};

class DescriptorWatch final : public LoopWatch {
 public:
  DescriptorWatch(int descriptor, QSocketNotifier::Type type, std::function<void()> ready)
      : notifier_(new QSocketNotifier(descriptor, type)) {
    // The toolkit keeps the call alive while it runs, also when it destroys this watch.
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [ready = std::move(ready)] { ready(); });
  }
  ~DescriptorWatch() override {
    notifier_->setEnabled(false);
    notifier_->disconnect();
  }

 private:
  std::unique_ptr<QSocketNotifier, DeleteLater> notifier_;
};

class TimerWatch final : public LoopWatch {
 public:
  TimerWatch(std::chrono::milliseconds delay, std::function<void()> due) : timer_(new QTimer) {
    timer_->setSingleShot(true);
    timer_->setTimerType(Qt::PreciseTimer);
    QObject::connect(timer_.get(), &QTimer::timeout, timer_.get(),
                     [due = std::move(due)] { due(); });
    timer_->start(delay);
  }
  ~TimerWatch() override {
    timer_->stop();
    timer_->disconnect();
  }

 private:
  std::unique_ptr<QTimer, DeleteLater> timer_;
};

}  // namespace

std::unique_ptr<LoopWatch> QtEventLoop::watch(int descriptor, Readiness readiness,
                                              std::function<void()> ready) {
  const auto type =
      readiness == Readiness::readable ? QSocketNotifier::Read : QSocketNotifier::Write;
  return std::make_unique<DescriptorWatch>(descriptor, type, std::move(ready));
}

std::unique_ptr<LoopWatch> QtEventLoop::after(std::chrono::milliseconds delay,
                                              std::function<void()> due) {
  return std::make_unique<TimerWatch>(delay, std::move(due));
}

}  // namespace kelvaron
