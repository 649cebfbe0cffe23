// A process port for tests that start no program.
#pragma once

#include <gtest/gtest.h>

#include "platform/process.h"

namespace kelvaron::testing {

class NoProcesses : public ProcessPort {
 public:
  void run(const std::string& command, WindowStyle /*style*/,
           std::function<void()> /*failed*/) override {
    ADD_FAILURE() << "started: " << command;
  }
};

}  // namespace kelvaron::testing
