// A radio station for tests: an HTTP server on the loop of the test.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "native/native_socket.h"

namespace kelvaron::testing {

class RadioStation {
 public:
  explicit RadioStation(EventLoop& loop) : sockets_(loop), listener_(sockets_.makeSocket()) {
    listener_->onConnectionRequest = [this](int id) { accept(id); };
    listener_->Listen(0);
  }

  std::uint16_t port() const { return listener_->LocalPort(); }
  std::string address(const std::string& target) const {
    return "http://127.0.0.1:" + std::to_string(listener_->LocalPort()) + target;
  }
  /// What a target answers: head lines after the first one, and the page.
  void serve(const std::string& target, const std::string& type, const std::string& page) {
    const std::string& answer = answers_[target] =
        "HTTP/1.0 200 OK\r\nContent-Type: " + type +
        "\r\nContent-Length: " + std::to_string(page.size()) + "\r\n\r\n" + page;
    for (Socket* peer : waiting_[target]) {
      if (peer->State() == SocketState::connected) peer->SendData(answer);
    }
    waiting_[target].clear();
  }
  void redirect(const std::string& target, const std::string& location) {
    answers_[target] = "HTTP/1.0 302 Found\r\nLocation: " + location + "\r\n\r\n";
  }
  /// Takes connections for this target and says nothing until it is served.
  void keepWaiting(const std::string& target) { answers_[target] = ""; }
  void refuse() { listener_->Close(); }
  /// How many wait for a target in vain.
  auto waiting(const std::string& target) {
    return std::ranges::count(waiting_[target], SocketState::connected, &Socket::State);
  }

  /// The targets that were asked for, in order.
  std::vector<std::string> asked;

 private:
  void accept(int id) {
    auto peer = sockets_.makeSocket();
    Socket& socket = *peer;
    peers_.push_back(std::move(peer));
    socket.onDataArrival = [this, &socket] { answer(socket); };
    socket.onSendComplete = [&socket] { socket.Close(); };
    socket.onClose = [&socket] { socket.Close(); };
    socket.onError = [&socket](int, const std::string&) { socket.Close(); };
    socket.Accept(id);
  }
  void answer(Socket& socket) {
    const std::string request = socket.GetData();
    const std::string target = request.substr(4, request.find(' ', 4) - 4);
    asked.push_back(target);
    const auto found = answers_.find(target);
    if (found == answers_.end()) {
      socket.SendData("HTTP/1.0 404 Not Found\r\n\r\n");
    } else if (found->second.empty()) {
      waiting_[target].push_back(&socket);
    } else {
      socket.SendData(found->second);
    }
  }

  NativeSocketPort sockets_;
  std::unique_ptr<Socket> listener_;
  std::vector<std::unique_ptr<Socket>> peers_;
  std::map<std::string, std::string> answers_;
  std::map<std::string, std::vector<Socket*>> waiting_;
};

/// A wave file: a tone of 440 Hz, one channel of 8000 samples a second with 16 bits each.
inline std::string tone(int seconds) {
  constexpr std::uint32_t kRate = 8000;
  const auto number = [](std::uint32_t value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i) text += static_cast<char>((value >> (8 * i)) & 0xFFU);
    return text;
  };
  std::string samples;
  for (std::uint32_t i = 0; i < kRate * static_cast<std::uint32_t>(seconds); ++i) {
    const double angle = 2 * 3.14159265358979 * 440 * i / kRate;
    samples += number(static_cast<std::uint32_t>(std::lround(8000 * std::sin(angle))) & 0xFFFFU, 2);
  }
  const auto size = static_cast<std::uint32_t>(samples.size());
  return "RIFF" + number(36 + size, 4) + "WAVEfmt " + number(16, 4) + number(1, 2) + number(1, 2) +
         number(kRate, 4) + number(kRate * 2, 4) + number(2, 2) + number(16, 2) + "data" +
         number(size, 4) + samples;
}

}  // namespace kelvaron::testing
