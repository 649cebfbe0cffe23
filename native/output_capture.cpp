#include "native/output_capture.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <vector>

#include "base/code_page.h"
#include "native/output_keeper.h"
#include "platform/text.h"

namespace kelvaron {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMostLines = 5;
constexpr std::size_t kLongestLine = 200;
constexpr off_t kReadFromTheEnd = 16'384;

// The same above the three descriptors that programs know; none where there is none.
FileDescriptor aboveStandard(const FileDescriptor& made) {
  return FileDescriptor(::fcntl(made.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

FileDescriptor makeFile() {
  std::error_code failed;
  std::string name = (fs::temp_directory_path(failed) / "kelvaron-XXXXXX").string();
  const FileDescriptor made(failed ? -1 : ::mkostemp(name.data(), O_CLOEXEC));
  if (made) ::unlink(name.c_str());
  return aboveStandard(made);
}

struct Pipe {
  FileDescriptor out;
  FileDescriptor in;
};

Pipe makePipe() {
  std::array<int, 2> ends{-1, -1};
  static_cast<void>(::pipe2(ends.data(), O_CLOEXEC));
  const FileDescriptor out(ends[0]);
  const FileDescriptor in(ends[1]);
  return {aboveStandard(out), aboveStandard(in)};
}

std::string endOf(int file) {
  struct stat status {};
  if (::fstat(file, &status) != 0 || !S_ISREG(status.st_mode)) return "";
  std::string text(static_cast<std::size_t>(std::min(status.st_size, kReadFromTheEnd)), '\0');
  const ssize_t count =
      ::pread(file, text.data(), text.size(), status.st_size - static_cast<off_t>(text.size()));
  text.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
  return text;
}

std::string readable(std::string_view line) {
  std::string text = fromUtf8(line);
  if (text.size() > kLongestLine) text = text.substr(0, kLongestLine) + "...";
  std::ranges::replace_if(text, isControl, ' ');
  return text;
}

}  // namespace

OutputCapture::OutputCapture() : file_(makeFile()) {
  Pipe printed = makePipe();
  Pipe done = makePipe();
  if (file_ && printed.in && done.in &&
      startOutputKeeper(printed.out.get(), file_.get(), done.in.get())) {
    output_ = std::move(printed.in);
    done_ = std::move(done.out);
  } else {
    output_ = aboveStandard(FileDescriptor(::open("/dev/null", O_RDWR | O_CLOEXEC)));
  }
}

bool OutputCapture::complete() const {
  pollfd done{.fd = done_.get(), .events = POLLIN, .revents = 0};
  return !done_ || ::poll(&done, 1, 0) != 0;
}

std::string OutputCapture::last() const {
  const std::string text = endOf(file_.get());
  std::vector<std::string> lines;
  for (std::size_t end = text.size(); lines.size() < kMostLines;) {
    const std::size_t lineEnd = std::string_view(text).substr(0, end).find_last_of("\r\n");
    const std::size_t begin = lineEnd == std::string::npos ? 0 : lineEnd + 1;
    std::string line = readable(std::string_view(text).substr(begin, end - begin));
    if (line.find_first_not_of(' ') != std::string::npos) lines.push_back(std::move(line));
    if (begin == 0) break;
    end = begin - 1;
  }
  std::string result;
  std::ranges::reverse(lines);
  for (const std::string& line : lines) {
    result += kLineEnd;
    result += line;
  }
  return result;
}

}  // namespace kelvaron
