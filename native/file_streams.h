// Files read and written block by block, on the disk.
#pragma once

#include <filesystem>

#include "platform/file_streams.h"

namespace kelvaron {

class DiskStreams final : public FileStreams {
 public:
  explicit DiskStreams(std::filesystem::path programFolder)
      : programFolder_(std::move(programFolder)) {}

  std::unique_ptr<FileReader> open(const std::string& path) override;
  std::unique_ptr<ReceivedFile> receive(const std::string& name) override;

 private:
  std::filesystem::path receivedFolder() const;

  std::filesystem::path programFolder_;
};

}  // namespace kelvaron
