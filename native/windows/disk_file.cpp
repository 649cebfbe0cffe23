#include "native/disk_file.h"

#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

#include "native/windows/long_path.h"
#include "native/windows/system_headers.h"

namespace kelvaron {
namespace {

constexpr std::size_t kMostAtOnce = std::size_t{1} << 30U;  // what a call can count
constexpr int kTries = 1000;                                // names of files beside others

FileDescriptor openFile(const std::filesystem::path& path, int flags) {
  int number = -1;
  const errno_t error =
      ::_wsopen_s(&number, longPath(path).c_str(), flags | _O_BINARY | _O_NOINHERIT, _SH_DENYNO,
                  _S_IREAD | _S_IWRITE);
  if (error != 0) errno = error;
  return FileDescriptor(number);
}

}  // namespace

void closeFile(int number) { ::_close(number); }

FileDescriptor openToRead(const std::filesystem::path& path) { return openFile(path, _O_RDONLY); }

FileDescriptor createNew(const std::filesystem::path& path) {
  return openFile(path, _O_WRONLY | _O_CREAT | _O_EXCL);
}

FileBeside createBeside(const std::filesystem::path& target) {
  for (int number = 1; number <= kTries; ++number) {
    std::filesystem::path path = target;
    path += "." + std::to_string(number) + ".new";
    if (FileDescriptor file = createNew(path)) return {std::move(file), path};
    if (errno != EEXIST) break;
  }
  return {};
}

// What a file may be used for is the folder's to say.
int giveRightsOf(int /*file*/, const std::filesystem::path& /*target*/) { return 0; }

FileDescriptor createNameless() {
  std::error_code failed;
  const auto folder = std::filesystem::temp_directory_path(failed);
  for (int number = 1; !failed && number <= kTries; ++number) {
    // Goes when the last who has it open closes it.
    FileDescriptor made = openFile(folder / ("kelvaron-" + std::to_string(number) + ".tmp"),
                                   _O_RDWR | _O_CREAT | _O_EXCL | _O_TEMPORARY | _O_SHORT_LIVED);
    if (made) return made;
    if (errno != EEXIST && errno != EACCES) break;
  }
  return {};
}

std::int64_t lengthOf(int file) { return ::_filelengthi64(file); }

std::ptrdiff_t readFully(int file, std::span<char> bytes) {
  std::size_t got = 0;
  while (got < bytes.size()) {
    const int count = ::_read(file, bytes.data() + got,
                              static_cast<unsigned>(std::min(bytes.size() - got, kMostAtOnce)));
    if (count < 0) return -1;
    if (count == 0) break;
    got += static_cast<std::size_t>(count);
  }
  return static_cast<std::ptrdiff_t>(got);
}

std::ptrdiff_t readEnd(int file, std::span<char> bytes) {
  const auto handle = reinterpret_cast<HANDLE>(::_get_osfhandle(file));
  LARGE_INTEGER length{};
  if (::GetFileSizeEx(handle, &length) == 0) return -1;
  const auto count = std::min(length.QuadPart, static_cast<LONGLONG>(bytes.size()));
  // This leaves the place, which the program that prints shares, at the end, where it was.
  OVERLAPPED place{};
  const auto from = static_cast<ULONGLONG>(length.QuadPart - count);
  place.Offset = static_cast<DWORD>(from);
  place.OffsetHigh = static_cast<DWORD>(from >> 32U);
  DWORD got = 0;
  return ::ReadFile(handle, bytes.data(), static_cast<DWORD>(count), &got, &place) != 0
             ? static_cast<std::ptrdiff_t>(got)
             : -1;
}

int writeAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const int count =
        ::_write(file, bytes.data(), static_cast<unsigned>(std::min(bytes.size(), kMostAtOnce)));
    if (count < 0) return -1;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return 0;
}

int writeToDisk(int file) { return ::_commit(file); }

bool meansDiskFull(int errnoValue) { return errnoValue == ENOSPC; }

// Only trying tells: rights lie in lists, and folders of programs may be shown writable.
bool canWriteTo(const std::filesystem::path& folder) {
  FileBeside tried = createBeside(folder / "kelvaron");
  if (!tried.file) return false;
  tried.file.reset();
  std::error_code ignored;  // it was written
  std::filesystem::remove(tried.path, ignored);
  return true;
}

// A folder in the user's own is the user's own.
bool makePrivateFolder(const std::filesystem::path& folder) {
  std::error_code failed;
  std::filesystem::create_directories(folder, failed);
  if (failed) errno = failed.default_error_condition().value();
  return !failed;
}

}  // namespace kelvaron
