// Sending a file to a plain blocking receiver, beside a plain blocking sender of the same blocks in
// the same run: speed, processor time, how late a timer comes meanwhile, and memory. Then receiving
// from a plain blocking sender.
//
//   transfer_bench [MEGABYTES]     the file's size, 256 unless told otherwise
#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "base/non_copyable.h"
#include "base/resident_bytes.h"
#include "native/disk_file.h"
#include "native/socket_setup.h"
#include "peer/file_receiver.h"
#include "peer/file_sender.h"
#include "tests/support/test_desktop.h"

namespace kelvaron::bench {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr double kMegabyte = 1e6;
constexpr int kRounds = 5;
constexpr milliseconds kPatience(300'000);

double seconds(Clock::duration time) { return std::chrono::duration<double>(time).count(); }

/// Of this thread.
double processorSeconds() {
  timespec time{};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

double median(std::vector<double> values) {
  std::ranges::sort(values);
  return values[values.size() / 2];
}

sockaddr_in loopback(std::uint16_t port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(port);
  return address;
}

/// Takes one connection on a thread of its own and drops what comes, at most `rate` bytes a second
/// (0 for as fast as it can).
class BlockingReceiver : NonCopyable {
 public:
  explicit BlockingReceiver(double rate = 0) : rate_(rate) {
    listener_ = FileDescriptor(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in address = loopback(0);
    socklen_t size = sizeof(address);
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (::bind(listener_.get(), generic, size) != 0 || ::listen(listener_.get(), 1) != 0 ||
        ::getsockname(listener_.get(), generic, &size) != 0) {
      throw std::runtime_error("the receiver could not listen");
    }
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { run(); });
  }
  ~BlockingReceiver() { thread_.join(); }

  std::uint16_t port() const { return port_; }
  bool done() const { return done_; }
  /// Bytes received, when done.
  std::size_t received() const { return received_; }

 private:
  void run() {
    const FileDescriptor connection(::accept(listener_.get(), nullptr, nullptr));
    std::vector<char> bytes(std::size_t{64} << 10U);
    const auto begin = Clock::now();
    for (;;) {
      const ssize_t got = ::recv(connection.get(), bytes.data(), bytes.size(), 0);
      if (got <= 0) break;
      received_ += static_cast<std::size_t>(got);
      if (rate_ <= 0) continue;
      const auto due =
          begin + std::chrono::duration_cast<Clock::duration>(
                      std::chrono::duration<double>(static_cast<double>(received_) / rate_));
      std::this_thread::sleep_until(due);
    }
    done_ = true;
  }

  double rate_;
  FileDescriptor listener_;
  std::uint16_t port_ = 0;
  std::size_t received_ = 0;
  std::atomic<bool> done_{false};
  std::thread thread_;
};

struct Cost {
  double wall = 0;
  double processor = 0;
};

/// Reads and sends with plain blocking calls, as little as can be.
Cost sendPlainly(const std::string& path, std::uint16_t port) {
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  FileDescriptor connection(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  const sockaddr_in address = loopback(port);
  if (::connect(connection.get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) !=
      0) {
    throw std::runtime_error("the plain sender could not connect");
  }
  setConnectionOptions(connection.get());
  const double processor = processorSeconds();
  const auto begin = Clock::now();
  std::array<char, TransferSender::kBlock> block{};
  for (;;) {
    const ssize_t got = ::read(file.get(), block.data(), block.size());
    if (got <= 0) break;
    for (ssize_t sent = 0; sent < got;) {
      const ssize_t now = ::send(connection.get(), block.data() + sent,
                                 static_cast<std::size_t>(got - sent), MSG_NOSIGNAL);
      if (now <= 0) throw std::runtime_error("the plain sender could not send");
      sent += now;
    }
  }
  return {seconds(Clock::now() - begin), processorSeconds() - processor};
}

/// A client that nobody is logged in with: its windows work all the same.
class Desk {
 public:
  Desk() { desktop_.runTimers(); }

  /// Sends the file with the window and waits until the receiver has it.
  Cost send(const std::string& path, const BlockingReceiver& receiver) {
    auto& form = desktop_.client->form<Frm_Server>();
    form.Txt_File.Text = path;
    form.Txt_Port.Text = std::to_string(receiver.port());
    const double processor = processorSeconds();
    const auto begin = Clock::now();
    desktop_.raise(form.Btn_Send.Click);
    if (!loop_.runUntil([&] { return receiver.done(); }, kPatience) || !desktop_.boxes.empty()) {
      throw std::runtime_error("the window did not send");
    }
    return {seconds(Clock::now() - begin), processorSeconds() - processor};
  }

  /// Receives with the window what a plain sender sends, and waits until it is on the disk.
  Cost receive(const std::string& path) {
    auto& form = desktop_.client->form<Frm_Client>();
    form.Txt_Port.Text = "0";
    desktop_.boxes.clear();
    desktop_.raise(form.Btn_Listen.Click);
    const std::string status = form.Lbl_Status.Caption;
    const auto port = static_cast<std::uint16_t>(std::stoi(status.substr(status.rfind(' ') + 1)));
    // The header is the beginning of the file itself.
    std::thread sending([&] { sendPlainly(path, port); });
    const double processor = processorSeconds();
    const auto begin = Clock::now();
    const auto file = desktop_.folder.path() / "received" / "bench.bin";
    const bool came = loop_.runUntil([&] { return std::filesystem::exists(file); }, kPatience);
    const Cost cost{seconds(Clock::now() - begin), processorSeconds() - processor};
    sending.join();
    std::filesystem::remove(file);
    if (!came) throw std::runtime_error("the window did not receive");
    return cost;
  }

  PollLoop& loop() { return loop_; }
  std::filesystem::path folder() const { return desktop_.folder.path(); }

 private:
  PollLoop loop_;
  testing::TestDesktop desktop_{loop_, 1};
};

/// Notes how late a timer of five milliseconds comes, and the memory at each of its calls.
class Watcher {
 public:
  explicit Watcher(PollLoop& loop) : loop_(loop) { next(); }
  std::vector<double> late;
  std::size_t mostMemory = 0;

 private:
  void next() {
    constexpr milliseconds kDelay(5);
    const auto due = Clock::now() + kDelay;
    timer_ = loop_.after(kDelay, [this, due] {
      late.push_back(seconds(Clock::now() - due) * 1000);
      mostMemory = std::max(mostMemory, residentBytes());
      next();
    });
  }
  PollLoop& loop_;
  std::unique_ptr<LoopWatch> timer_;
};

std::string fileOf(const std::filesystem::path& path, std::size_t bytes, std::string_view head) {
  std::ofstream file(path, std::ios::binary);
  file << head;
  const std::string chunk(std::size_t{1} << 20U, 'k');
  for (std::size_t left = bytes; left > 0;) {
    const std::size_t now = std::min(left, chunk.size());
    file.write(chunk.data(), static_cast<std::streamsize>(now));
    left -= now;
  }
  return path.string();
}

void report(const char* what, const Cost& cost, double megabytes) {
  std::printf("%-34s %8.0f MB/s %8.2f s of processor per GB\n", what, megabytes / cost.wall,
              cost.processor / megabytes * 1000);
}

Cost medianOf(const std::vector<Cost>& costs) {
  std::vector<double> wall;
  std::vector<double> processor;
  for (const Cost& cost : costs) {
    wall.push_back(cost.wall);
    processor.push_back(cost.processor);
  }
  return {median(wall), median(processor)};
}

void run(std::size_t bytes) {
  Desk desk;
  const double megabytes = static_cast<double>(bytes) / kMegabyte;
  const std::string path = fileOf(desk.folder() / "send.bin", bytes, "");
  std::vector<Cost> plain;
  std::vector<Cost> window;
  for (int round = 0; round < kRounds; ++round) {
    {
      const BlockingReceiver receiver;
      const auto begin = Clock::now();
      Cost cost = sendPlainly(path, receiver.port());
      while (!receiver.done()) std::this_thread::yield();
      cost.wall = seconds(Clock::now() - begin);
      plain.push_back(cost);
    }
    const BlockingReceiver receiver;
    window.push_back(desk.send(path, receiver));
  }
  std::printf("Sending %.0f MB in blocks of %zu, median of %d\n", megabytes, TransferSender::kBlock,
              kRounds);
  report("plain blocking socket", medianOf(plain), megabytes);
  report("the window", medianOf(window), megabytes);
  std::printf("ratio of the speeds                %8.2f\n",
              medianOf(plain).wall / medianOf(window).wall);

  {
    Watcher watcher(desk.loop());
    const BlockingReceiver receiver;
    desk.send(path, receiver);
    std::ranges::sort(watcher.late);
    std::printf("a timer comes late by              %8.2f ms median, %.2f ms at most (of %zu)\n",
                watcher.late[watcher.late.size() / 2], watcher.late.back(), watcher.late.size());
  }
  {
    const BlockingReceiver receiver(20 * kMegabyte);
    const std::string part = fileOf(desk.folder() / "part.bin", 100'000'000, "");
    const Cost cost = desk.send(part, receiver);
    std::printf("to a receiver of 20 MB/s           %8.1f percent of a core\n",
                cost.processor / cost.wall * 100);
  }
  for (const std::size_t size : {std::size_t{16} << 20U, std::size_t{1} << 30U}) {
    const std::string sparse = fileOf(desk.folder() / "sparse.bin", 0, "");
    std::filesystem::resize_file(sparse, size);
    Watcher watcher(desk.loop());
    const BlockingReceiver receiver;
    desk.send(sparse, receiver);
    std::printf("memory at most while %5zu MiB go   %8.1f MiB\n", size >> 20U,
                static_cast<double>(watcher.mostMemory) / (1U << 20U));
  }

  const std::string head = "FILEINFO|" + std::to_string(bytes) + "|bench.bin|";
  const std::string stream = fileOf(desk.folder() / "stream.bin", bytes, head);
  std::vector<Cost> received;
  received.reserve(kRounds);
  for (int round = 0; round < kRounds; ++round) received.push_back(desk.receive(stream));
  std::printf("Receiving %.0f MB from a plain blocking socket, median of %d\n", megabytes, kRounds);
  report("the window, to the disk", medianOf(received), megabytes);
}

}  // namespace
}  // namespace kelvaron::bench

int main(int argc, char** argv) {
  const unsigned long megabytes = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 256;
  constexpr unsigned long kMost = 2000;
  if (megabytes == 0 || megabytes > kMost) {
    std::fprintf(stderr, "usage: %s [MEGABYTES up to %lu]\n", argv[0], kMost);
    return 2;
  }
  kelvaron::bench::run(megabytes * 1'000'000);
}
