// Files and folders of the program's folder; see program_folders.h for where that is.
#pragma once

#include <filesystem>

#include "platform/ports.h"

namespace kelvaron {

class ProgramFiles final : public FilePort {
 public:
  explicit ProgramFiles(std::filesystem::path programFolder)
      : programFolder_(std::move(programFolder)) {}

  std::string folder() const override;
  std::string read(const std::string& name) override;
  void replace(const std::string& name, const std::string& content) override;
  void MkDir(const std::string& name) override;

 private:
  std::filesystem::path programFolder_;
};

}  // namespace kelvaron
