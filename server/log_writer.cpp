// Plain writes, as a stream that has failed once stays silent.
#include "server/log_writer.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <ctime>
#include <system_error>
#include <utility>

#include "server/store_error.h"

namespace kelvaron::server {
namespace {

// What a pipe takes at once when it says that it takes anything.
constexpr std::size_t kLongestLine = 4096;

std::string timeStamp() {
  const std::time_t now = std::time(nullptr);
  std::tm parts{};
  localtime_r(&now, &parts);
  std::array<char, 32> stamp{};
  return {stamp.data(), std::strftime(stamp.data(), stamp.size(), "%Y-%m-%d %H:%M:%S ", &parts)};
}

}  // namespace

LogWriter::LogWriter(std::filesystem::path file) : descriptor_(-1), file_(std::move(file)) {
  reopen();
  if (descriptor_ < 0) {
    throw StoreError(file_.string() +
                     ": can't be written: " + std::generic_category().message(errno));
  }
}

LogWriter::~LogWriter() {
  if (!file_.empty()) ::close(descriptor_);
}

void LogWriter::reopen() {
  if (file_.empty()) return;
  const int opened = ::open(file_.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0640);
  if (opened >= 0 && descriptor_ >= 0) ::close(descriptor_);
  if (opened >= 0) {
    descriptor_ = opened;
  } else if (descriptor_ >= 0) {
    write("the log's file can't be opened anew: " + std::generic_category().message(errno));
  }
}

void LogWriter::write(std::string_view text) {
  const std::string stamp = timeStamp();
  if (lost_ > 0 && give(stamp + std::to_string(lost_) + " lines of the log were lost\n")) lost_ = 0;
  std::string line = stamp;
  line += text.substr(0, kLongestLine - stamp.size() - 1);
  line += '\n';
  if (lost_ > 0 || !give(line)) ++lost_;
}

bool LogWriter::give(const std::string& line) {
  const std::string whole = (broken_ ? "\n" : "") + line;
  pollfd ready{descriptor_, POLLOUT, 0};
  if (::poll(&ready, 1, 0) != 1 || (ready.revents & POLLOUT) == 0) return false;
  ssize_t written = -1;
  do {
    written = ::write(descriptor_, whole.data(), whole.size());
  } while (written < 0 && errno == EINTR);
  if (written < 0) return false;
  broken_ = static_cast<std::size_t>(written) < whole.size();
  return !broken_;
}

}  // namespace kelvaron::server
