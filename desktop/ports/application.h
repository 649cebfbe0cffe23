// The program as a whole: one instance, its end, its event loop, pages for the browser.
#pragma once

#include "base/code_page.h"
#include "desktop/event_gate.h"
#include "native/instance_lock.h"
#include "platform/ports.h"

namespace kelvaron {

class QtApplication final : public Application {
 public:
  explicit QtApplication(EventGate& gate) : gate_(gate), lock_(InstanceLock::sessionFolder()) {}

  bool PrevInstance() const override { return lock_.takenByAnother(); }
  std::string InstanceProblem() const override {
    return lock_.takenByAnother() ? std::string() : fromUtf8(lock_.problem());
  }
  [[noreturn]] void End() override { throw ProgramEnd{}; }
  void DoEvents() override;
  void showPage(const std::string& address) override;
  void showFolder(const std::string& path) override;

 private:
  EventGate& gate_;
  InstanceLock lock_;
};

}  // namespace kelvaron
