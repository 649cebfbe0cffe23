// One end of a transfer as a program. It listens until it is killed, and says where its folder is;
// or it sends, says what the window said, and ends with 0 for a whole transfer, 3 for a time-out, 4
// for a connection that was lost.
#include <chrono>
#include <cstdio>
#include <string>
#include <string_view>

#include "peer/file_receiver.h"
#include "peer/file_sender.h"
#include "peer/transfer.h"
#include "tests/support/test_desktop.h"

namespace kelvaron::testing {
namespace {

constexpr std::chrono::minutes kPatience(5);

int receive(PollLoop& loop, TestDesktop& desktop) {
  desktop.sockets.keepsFilePort = true;
  auto& form = desktop.client->form<Frm_Client>();
  std::printf("%s\n%s\n", desktop.folder.path().c_str(), form.Lbl_Status.Caption.get().c_str());
  std::fflush(stdout);
  loop.runUntil([] { return false; }, kPatience);
  return 1;
}

int send(PollLoop& loop, TestDesktop& desktop, const std::string& file,
         const std::string& address) {
  desktop.chosenFiles.push_back(file);
  auto& form = desktop.client->form<Frm_Server>();
  desktop.raise(form.Btn_Browse.Click);
  form.Txt_RemoteIP.Text = address;
  const auto begin = std::chrono::steady_clock::now();
  desktop.raise(form.Btn_Send.Click);
  loop.runUntil([&] { return !form.transferring(); }, kPatience);
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
  std::printf("after %.1f s: %s, %lld of %lld bytes\n", time.count(),
              form.Lbl_Complete.Caption.get().c_str(),
              static_cast<long long>(form.FileBar.Value.get()),
              static_cast<long long>(form.FileBar.Max.get()));
  for (const Box& box : desktop.boxes) std::printf("box: %s\n", box.text.c_str());
  if (!desktop.boxes.empty()) return desktop.boxes.back().text == "Timeout" ? 3 : 1;
  const std::string complete = form.Lbl_Complete.Caption;
  return complete == kWholeCaption || complete == kDoneCaption ? 0 : 4;
}

}  // namespace
}  // namespace kelvaron::testing

int main(int argc, char** argv) {
  using namespace kelvaron::testing;
  const std::string_view role = argc > 1 ? argv[1] : "";
  kelvaron::PollLoop loop;
  TestDesktop desktop(loop, 1);
  desktop.runTimers();
  if (role == "receive" && argc == 2) return receive(loop, desktop);
  if (role == "send" && argc == 4) return send(loop, desktop, argv[2], argv[3]);
  std::fprintf(stderr, "usage: %s receive | send FILE ADDRESS\n", argv[0]);
  return 2;
}
