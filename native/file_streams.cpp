#include "native/file_streams.h"

#include <cerrno>
#include <system_error>

#include "base/code_page.h"
#include "native/bare_name.h"
#include "native/disk_file.h"
#include "native/disk_names.h"
#include "native/file_fault.h"
#include "native/paths.h"
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
    const std::int64_t length = lengthOf(file_.get());
    if (length < 0) throwFileFault(path_, "read", errno);
    return length;
  }

  std::size_t read(std::span<char> block) override {
    const std::ptrdiff_t got = readFully(file_.get(), block);
    if (got < 0) throwFileFault(path_, "read", errno);
    return static_cast<std::size_t>(got);
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
    if (writeAll(file_.get(), bytes) != 0) throwFileFault(name_, "written", errno);
  }

  void commit() override {
    file_.reset();
    std::error_code failed;
    fs::rename(beside_, target_, failed);
    if (!failed) return;
    throw Fault(fault_number::kPathAccess,
                "The file " + name_ +
                    " came whole but cannot take its name: " + fromUtf8(failed.message()) +
                    ". It is in " + fromUtf8(utf8Of(beside_.filename())) + ".");
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
  FileDescriptor file = openToRead(systemPath(found->path));
  if (!file) throwFileFault(path, "read", errno);
  return std::make_unique<DiskReader>(path, std::move(file));
}

fs::path DiskStreams::receivedFolder() const {
  if (auto there = findByName(programFolder_, kFolder)) return *there;
  fs::path folder = programFolder_ / kFolder;
  std::error_code error;
  fs::create_directory(folder, error);
  if (error)
    throwFileFault(std::string(kFolder), "written", error.default_error_condition().value());
  return folder;
}

std::unique_ptr<ReceivedFile> DiskStreams::receive(const std::string& name) {
  if (const std::string problem = fileNameProblem(name); !problem.empty()) {
    throw Fault(fault_number::kPathAccess, "The file " + name + " cannot be written: " + problem);
  }
  const fs::path folder = receivedFolder();
  fs::path target = findByName(folder, name).value_or(folder / systemPath(toUtf8(name)));
  for (int number = 1; number <= kMostUnfinished; ++number) {
    fs::path beside = target;
    beside += number == 1 ? kUnfinished : "." + std::to_string(number) + kUnfinished;
    FileDescriptor file = createNew(beside);
    if (file) {
      return std::make_unique<DiskReceived>(name, std::move(target), std::move(beside),
                                            std::move(file));
    }
    if (errno != EEXIST) throwFileFault(name, "written", errno);
  }
  throwFileFault(name, "written", EEXIST);
}

}  // namespace kelvaron
