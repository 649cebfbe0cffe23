#include "native/program_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

#include "base/code_page.h"
#include "native/bare_name.h"
#include "native/file_descriptor.h"
#include "native/file_fault.h"
#include "platform/fault.h"

namespace kelvaron {
namespace {

void writeAll(const FileDescriptor& file, std::string_view content, const std::string& name) {
  while (!content.empty()) {
    const ssize_t written = ::write(file.get(), content.data(), content.size());
    if (written >= 0) {
      content.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      throwFileFault(name, "written", errno);
    }
  }
  if (::fsync(file.get()) != 0) throwFileFault(name, "written", errno);
}

/// The rights of the file that is replaced, else those that a new one would get.
mode_t rightsFor(const std::filesystem::path& target) {
  constexpr mode_t kRights = S_IRWXU | S_IRWXG | S_IRWXO;
  struct stat former {};
  if (::stat(target.c_str(), &former) == 0) return former.st_mode & kRights;
  // Only asking the system by setting tells them.
  const mode_t masked = ::umask(0);
  ::umask(masked);
  return (S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH) & ~masked;
}

}  // namespace

std::string ProgramFiles::folder() const { return fromUtf8(programFolder_.string()); }

std::string ProgramFiles::read(const std::string& name) {
  const auto path = isBareName(name) ? findByName(programFolder_, name) : std::nullopt;
  const FileDescriptor file(path ? ::open(path->c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK) : -1);
  // A link may lead nowhere.
  if (!path || (!file && errno == ENOENT)) {
    throw Fault(fault_number::kFileNotFound, "The file " + name + " was not found");
  }
  if (!file) throwFileFault(name, "read", errno);
  std::string content;
  constexpr std::size_t kBlock = 4096;
  std::array<char, kBlock> block{};
  for (;;) {
    const ssize_t got = ::read(file.get(), block.data(), block.size());
    if (got == 0) return content;
    if (got > 0) {
      content.append(block.data(), static_cast<std::size_t>(got));
    } else if (errno != EINTR) {
      throwFileFault(name, "read", errno);
    }
  }
}

void ProgramFiles::replace(const std::string& name, const std::string& content) {
  if (!isBareName(name)) throwFileFault(name, "written", EINVAL);
  std::filesystem::path target =
      findByName(programFolder_, name).value_or(programFolder_ / toUtf8(name));
  // A link that leads to a file stays, and that file is replaced.
  std::error_code leadsNowhere;
  const auto real = std::filesystem::canonical(target, leadsNowhere);
  if (!leadsNowhere) target = real;
  std::string beside =
      (target.parent_path() / ("." + target.filename().string() + ".XXXXXX")).string();
  FileDescriptor file(::mkostemp(beside.data(), O_CLOEXEC));
  if (!file) throwFileFault(name, "written", errno);
  try {
    writeAll(file, content, name);
    if (::fchmod(file.get(), rightsFor(target)) != 0) throwFileFault(name, "written", errno);
    if (::rename(beside.c_str(), target.c_str()) != 0) throwFileFault(name, "written", errno);
  } catch (const Fault&) {
    ::unlink(beside.c_str());
    throw;
  }
}

void ProgramFiles::MkDir(const std::string& name) {
  const bool made = isBareName(name) && !findByName(programFolder_, name) && [&] {
    std::error_code error;
    return std::filesystem::create_directory(programFolder_ / toUtf8(name), error);
  }();
  if (!made) throw Fault(fault_number::kPathAccess, "The folder " + name + " cannot be made");
}

}  // namespace kelvaron
