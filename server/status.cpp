#include "server/status.h"

#include <sys/stat.h>
#include <sys/time.h>

#include <array>
#include <asio/buffer.hpp>
#include <asio/error.hpp>
#include <asio/read_until.hpp>
#include <asio/write.hpp>
#include <cmath>
#include <string_view>
#include <utility>

#include "build_settings.h"
#include "server/store.h"

namespace kelvaron::server {
namespace {

using asio::local::stream_protocol;

constexpr const char* kSocket = "status";
constexpr std::string_view kHealthy = "\"problems\": []}";
constexpr std::size_t kLongestRequest = 1024;
constexpr double kBytesOfAMiB = 1'048'576;
constexpr std::chrono::milliseconds kPause{100};
constexpr timeval kPatience{.tv_sec = 2, .tv_usec = 0};

std::string inQuotes(std::string_view text) {
  std::string result = "\"";
  for (const char each : text) {
    if (each == '"' || each == '\\') result += '\\';
    result += static_cast<unsigned char>(each) < ' ' ? ' ' : each;
  }
  return result + '"';
}

std::string member(std::string_view name, const std::string& value) {
  return inQuotes(name) + ": " + value;
}

}  // namespace

std::string Status::text() const {
  std::string line =
      "kelvaron-server " + std::string(build::kVersion) + " runs since " + timeText(since) +
      " UTC: " + std::to_string(clients) + " clients, " + std::to_string(linesPerSecond) +
      " lines a second from them, " + std::to_string(bytesPerSecond) + " bytes a second to them, " +
      std::to_string(refusals) + " refusals, " +
      std::to_string(std::lround(static_cast<double>(memory) / kBytesOfAMiB)) + " MiB of memory";
  for (const std::string& problem : problems) line += "; " + problem;
  return line;
}

std::string Status::json() const {
  std::string told;
  for (const std::string& problem : problems)
    told += (told.empty() ? "" : ", ") + inQuotes(problem);
  return "{" + member("version", inQuotes(build::kVersion)) + ", " +
         member("since", inQuotes(timeText(since) + "Z")) + ", " +
         member("clients", std::to_string(clients)) + ", " +
         member("lines_per_second", std::to_string(linesPerSecond)) + ", " +
         member("bytes_per_second", std::to_string(bytesPerSecond)) + ", " +
         member("refusals", std::to_string(refusals)) + ", " +
         member("memory_bytes", std::to_string(memory)) + ", " +
         member("waiting_bytes", std::to_string(waiting)) + ", " +
         member("problems", "[" + told + "]") + "}";
}

StatusSocket::StatusSocket(asio::io_context& io, const std::filesystem::path& folder,
                           std::function<Status()> status)
    : acceptor_(io), pause_(io), status_(std::move(status)) {
  const std::filesystem::path path = folder / kSocket;
  std::error_code ignored;  // then the bind tells
  std::filesystem::remove(path, ignored);
  acceptor_.open();
  acceptor_.bind(path.string());
  ::chmod(path.c_str(), S_IRUSR | S_IWUSR);
  acceptor_.listen();
  accept();
}

void StatusSocket::close() {
  std::error_code ignored;
  acceptor_.close(ignored);
  pause_.cancel();
}

// An empty line asks, any other is a note. Two lines always fit a fresh socket, so nobody is waited
// for.
void StatusSocket::accept() {
  acceptor_.async_accept(
      alive_.guard([this](std::error_code error, stream_protocol::socket socket) {
        if (error == asio::error::operation_aborted) return;
        if (error) {
          // Such as one of no descriptors, which whoever asks waits out.
          pause_.expires_after(kPause);
          pause_.async_wait(alive_.guard([this](std::error_code cancelled) {
            if (!cancelled) accept();
          }));
          return;
        }
        accept();
        auto asker = std::make_shared<stream_protocol::socket>(std::move(socket));
        auto request = std::make_shared<std::string>();
        const auto answer = [this, asker, request](std::error_code unread, std::size_t size) {
          if (unread) return;
          if (size > 1) return onNote(std::string_view(*request).substr(0, size - 1));
          const Status status = status_();
          std::error_code gone;
          asker->write_some(asio::buffer(status.text() + '\n' + status.json() + '\n'), gone);
        };
        asio::async_read_until(*asker, asio::dynamic_buffer(*request, kLongestRequest), '\n',
                               alive_.guard(answer));
      }));
}

StatusAnswer askStatus(const std::filesystem::path& folder) {
  asio::io_context io;
  stream_protocol::socket socket(io);
  std::error_code error;
  socket.connect((folder / kSocket).string(), error);
  if (error) {
    throw StoreError(folder.string() + ": no server runs on this folder (" + error.message() + ')');
  }
  ::setsockopt(socket.native_handle(), SOL_SOCKET, SO_RCVTIMEO, &kPatience, sizeof kPatience);
  asio::write(socket, asio::buffer("\n", 1), error);
  std::string answer;
  std::array<char, 4096> block;
  for (ssize_t count = 1; count > 0;) {
    count = ::recv(socket.native_handle(), block.data(), block.size(), 0);
    if (count > 0) answer.append(block.data(), static_cast<std::size_t>(count));
  }
  const std::size_t end = answer.find('\n');
  if (!answer.ends_with('\n') || end + 1 == answer.size()) {
    throw StoreError(folder.string() + ": the server on this folder does not answer");
  }
  answer.pop_back();
  return {answer.substr(0, end), answer.substr(end + 1), answer.ends_with(kHealthy)};
}

void tellServer(const std::filesystem::path& folder, const std::string& note) {
  asio::io_context io;
  stream_protocol::socket socket(io);
  std::error_code nobodyThere;
  socket.connect((folder / kSocket).string(), nobodyThere);
  if (!nobodyThere) asio::write(socket, asio::buffer(note + '\n'), nobodyThere);
}

}  // namespace kelvaron::server
