#include "native/file_streams.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "base/code_page.h"
#include "native/bare_name.h"
#include "native/disk_names.h"
#include "native/file_descriptor.h"
#include "native/file_fault.h"
#include "platform/fault.h"

namespace kelvaron {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kFolder = "received";
// What a file that is not all there yet has behind its name.
constexpr const char* kUnfinished = ".part";
// Broken transfers of one name that are kept beside each other.
constexpr int kMostUnfinished = 1000;

class DiskReader final : public FileReader {
 public:
  DiskReader(std::string path, FileDescriptor file)
      : path_(std::move(path)), file_(std::move(file)) {}

  std::int64_t length() const override {
    struct stat status {};
    if (::fstat(file_.get(), &status) != 0) throwFileFault(path_, "read", errno);
    return status.st_size;
  }

  std::size_t read(std::span<char> block) override {
    std::size_t got = 0;
    while (got < block.size()) {
      const ssize_t count = ::read(file_.get(), block.data() + got, block.size() - got);
      if (count == 0) break;
      if (count > 0) {
        got += static_cast<std::size_t>(count);
      } else if (errno != EINTR) {
        throwFileFault(path_, "read", errno);
      }
    }
    return got;
  }

 private:
  std::string path_;
  FileDescriptor file_;
};

class DiskReceived final : public ReceivedFile {
 public:
  DiskReceived(std::string name, fs::path target, fs::path beside, FileDescriptor file)
      : name_(std::move(name)),
        target_(std::move(target)),
        beside_(std::move(beside)),
        file_(std::move(file)) {}

  void write(std::string_view bytes) override {
    while (!bytes.empty()) {
      const ssize_t written = ::write(file_.get(), bytes.data(), bytes.size());
      if (written >= 0) {
        bytes.remove_prefix(static_cast<std::size_t>(written));
      } else if (errno != EINTR) {
        throwFileFault(name_, "written", errno);
      }
    }
  }

  void commit() override {
    file_.reset();
    if (::rename(beside_.c_str(), target_.c_str()) == 0) return;
    throw Fault(fault_number::kPathAccess,
                "The file " + name_ + " came whole but cannot take its name: " +
                    fromUtf8(std::generic_category().message(errno)) + ". It is in " +
                    fromUtf8(beside_.filename().string()) + ".");
  }

 private:
  std::string name_;
  fs::path target_;
  fs::path beside_;
  FileDescriptor file_;
};

}  // namespace

std::unique_ptr<FileReader> DiskStreams::open(const std::string& path) {
  const auto found = findOnDisk(path);
  if (!found) throw Fault(fault_number::kFileNotFound, "The file " + path + " was not found");
  if (found->kind == DiskName::Kind::folder) throwFileFault(path, "read", EISDIR);
  // A pipe or a device has no length, and could keep a reader waiting.
  if (found->kind == DiskName::Kind::other) {
    throw Fault(fault_number::kPathAccess, path + " is not a file that can be read");
  }
  FileDescriptor file(::open(found->path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!file) throwFileFault(path, "read", errno);
  return std::make_unique<DiskReader>(path, std::move(file));
}

fs::path DiskStreams::receivedFolder() const {
  if (auto there = findByName(programFolder_, kFolder)) return *there;
  fs::path folder = programFolder_ / kFolder;
  std::error_code error;
  fs::create_directory(folder, error);
  if (error) throwFileFault(std::string(kFolder), "written", error.value());
  return folder;
}

std::unique_ptr<ReceivedFile> DiskStreams::receive(const std::string& name) {
  const bool oneFile = name.find_first_of(std::string_view("/\0", 2)) == std::string::npos &&
                       !name.empty() && name != "." && name != "..";
  if (!oneFile) throwFileFault(name, "written", EINVAL);
  const fs::path folder = receivedFolder();
  fs::path target = findByName(folder, name).value_or(folder / toUtf8(name));
  for (int number = 1; number <= kMostUnfinished; ++number) {
    fs::path beside = target;
    beside += number == 1 ? kUnfinished : "." + std::to_string(number) + kUnfinished;
    FileDescriptor file(::open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC,
                               S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH));
    if (file) {
      return std::make_unique<DiskReceived>(name, std::move(target), std::move(beside),
                                            std::move(file));
    }
    if (errno != EEXIST) throwFileFault(name, "written", errno);
  }
  throwFileFault(name, "written", EEXIST);
}

}  // namespace kelvaron
