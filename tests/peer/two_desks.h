// Two clients in one process, each logged in to a chat server of the test's, ready for a transfer.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <set>
#include <string>
#include <string_view>

#include "peer/file_receiver.h"
#include "peer/file_sender.h"
#include "peer/transfer.h"
#include "tests/support/line_server.h"
#include "tests/support/test_desktop.h"

namespace kelvaron::testing {

inline std::string contentOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline void writeFile(const std::filesystem::path& path, std::string_view content) {
  std::ofstream(path, std::ios::binary) << content;
}

/// Bytes without a pattern, the same for the same length.
inline std::string randomBytes(std::size_t length) {
  std::mt19937 random(static_cast<std::mt19937::result_type>(length));
  std::string bytes(length, '\0');
  for (char& byte : bytes) byte = static_cast<char>(random());
  return bytes;
}

inline std::set<std::string> namesIn(const std::filesystem::path& folder) {
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    names.insert(entry.path().filename().string());
  }
  return names;
}

class TwoDesks : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(ann.logIn("ann") && bob.logIn("bob"));
    ASSERT_TRUE(
        until([&] { return annsServer.lines.size() == 2 && bobsServer.lines.size() == 2; }));
    annsServer.lines.clear();
    bobsServer.lines.clear();
  }

  bool until(const std::function<bool()>& condition) { return ann.until(condition); }

  Frm_Server& sender() { return ann.client->form<Frm_Server>(); }
  Frm_Client& receiver() { return bob.client->form<Frm_Client>(); }

  /// Has bob listen on a port that the system picks, and ann send there.
  void openReceiver() {
    receiver().Txt_Port.Text = "0";
    bob.raise(receiver().Btn_Listen.Click);
    const std::string status = receiver().Lbl_Status.Caption;
    ASSERT_TRUE(status.starts_with("2 on port: ")) << status;
    // The port is kept when the form listens again.
    receiver().Txt_Port.Text = status.substr(status.rfind(' ') + 1);
    sender().Txt_Port.Text = receiver().Txt_Port.Text.get();
  }
  std::uint16_t port() { return static_cast<std::uint16_t>(std::stoi(receiver().Txt_Port.Text)); }

  /// Chooses a file in ann's folder with this content.
  void choose(const std::string& name, std::string_view content) {
    writeFile(ann.folder.path() / name, content);
    ann.chosenFiles.push_back((ann.folder.path() / name).string());
    ann.raise(sender().Btn_Browse.Click);
  }
  std::filesystem::path arrived(const std::string& name) {
    return bob.folder.path() / "received" / name;
  }
  std::string complete() { return receiver().Lbl_Complete.Caption; }
  bool completes(std::string_view caption = kWholeCaption) {
    return until([&] { return complete() == caption; });
  }
  bool receiverListens() { return receiver().Lbl_Status.Caption.get().starts_with("2 "); }

  PollLoop loop;
  LineServer annsServer{loop};
  LineServer bobsServer{loop};
  TestDesktop ann{loop, annsServer.port()};
  TestDesktop bob{loop, bobsServer.port()};
};

}  // namespace kelvaron::testing
