#include "native/program_files.h"

#include <array>
#include <cerrno>
#include <system_error>

#include "base/code_page.h"
#include "native/bare_name.h"
#include "native/disk_file.h"
#include "native/file_fault.h"
#include "native/paths.h"
#include "platform/fault.h"

namespace kelvaron {
std::string ProgramFiles::folder() const { return fromUtf8(utf8Of(programFolder_)); }

std::string ProgramFiles::read(const std::string& name) {
  const auto path = isBareName(name) ? findByName(programFolder_, name) : std::nullopt;
  const FileDescriptor file = path ? openToRead(*path) : FileDescriptor();
  // A link may lead nowhere.
  if (!path || (!file && errno == ENOENT)) {
    throw Fault(fault_number::kFileNotFound, "The file " + name + " was not found");
  }
  if (!file) throwFileFault(name, "read", errno);
  std::string content;
  constexpr std::size_t kBlock = 4096;
  std::array<char, kBlock> block{};
  for (;;) {
    const std::ptrdiff_t got = readFully(file.get(), block);
    if (got < 0) throwFileFault(name, "read", errno);
    content.append(block.data(), static_cast<std::size_t>(got));
    if (static_cast<std::size_t>(got) < block.size()) return content;
  }
}

void ProgramFiles::replace(const std::string& name, const std::string& content) {
  if (!isBareName(name)) throwFileFault(name, "written", EINVAL);
  std::filesystem::path target =
      findByName(programFolder_, name).value_or(programFolder_ / systemPath(toUtf8(name)));
  // A link that leads to a file stays, and that file is replaced.
  std::error_code leadsNowhere;
  const auto real = std::filesystem::canonical(target, leadsNowhere);
  if (!leadsNowhere) target = real;
  FileBeside beside = createBeside(target);
  if (!beside.file) throwFileFault(name, "written", errno);
  const int file = beside.file.get();
  const bool written =
      writeAll(file, content) == 0 && writeToDisk(file) == 0 && giveRightsOf(file, target) == 0;
  std::error_code failed(written ? 0 : errno, std::generic_category());
  beside.file.reset();
  if (written) std::filesystem::rename(beside.path, target, failed);
  if (!failed) return;
  std::error_code ignored;  // the fault is told
  std::filesystem::remove(beside.path, ignored);
  throwFileFault(name, "written", failed.default_error_condition().value());
}

void ProgramFiles::MkDir(const std::string& name) {
  const bool made = isBareName(name) && !findByName(programFolder_, name) && [&] {
    std::error_code error;
    return std::filesystem::create_directory(programFolder_ / systemPath(toUtf8(name)), error);
  }();
  if (!made) throw Fault(fault_number::kPathAccess, "The folder " + name + " cannot be made");
}

}  // namespace kelvaron
