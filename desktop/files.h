// Folders beside the program.
#pragma once

#include <filesystem>

#include "platform/ports.h"

namespace kelvaron {

class ProgramFiles final : public FilePort {
 public:
  explicit ProgramFiles(std::filesystem::path programFolder)
      : programFolder_(std::move(programFolder)) {}

  void MkDir(const std::string& name) override;

 private:
  std::filesystem::path programFolder_;
};

}  // namespace kelvaron
