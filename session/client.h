// The client: the one object that owns the session, and through which every form reaches the
// ports, the other forms, the connection and the user's own name.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <typeindex>

#include "base/non_copyable.h"
#include "platform/edge.h"
#include "platform/form_slots.h"
#include "platform/ports.h"
#include "session/arrival_queue.h"

namespace kelvaron {

class Client;
class MainWindow;

/// The way to the main window, which a higher folder builds.
struct MainWindowSlot {
  /// Makes it at the first touch.
  MainWindow& (*touch)(Client&);
  /// Null while it isn't loaded.
  MainWindow* (*loaded)(const Client&);
};

class Client : NonCopyable {
 public:
  /// `inbound` is the table of inbound keywords. Edge and ports outlive the client.
  Client(Edge& edge, const Ports& ports, std::span<const InboundRow> inbound,
         const MainWindowSlot& mainWindow);
  ~Client();

  Edge& edge;
  const Ports ports;
  FormSlots slots;

  /// The application's title: boxes without a title of their own carry it.
  std::string title = "Kelvaron";
  /// The user's nickname as typed at login; empty at start.
  std::string UserName;
  /// The address of the server chosen at the last login, for reconnecting.
  std::string serverAddress;

  /// The form of kind `F`, made at the first touch.
  template <class F>
  F& form() {
    return slots.touch<F>(*this);
  }
  template <class F>
  F* loadedForm() const {
    return slots.loaded<F>();
  }
  /// The one object of kind `T` that lives as long as the client, made at the first touch.
  template <class T>
  T& lasting() {
    std::shared_ptr<void>& kept = lasting_[typeid(T)];
    if (!kept) kept = std::make_shared<T>();
    return *static_cast<T*>(kept.get());
  }
  /// The main window, made at the first touch.
  MainWindow& mainWindow() { return mainWindow_.touch(*this); }
  /// Whether the main window is on the screen; makes none.
  bool mainWindowShown() const;

  /// Tells the main window, if there is one, whether there is a connection.
  void tellConnected(bool connected);

  /// The one connection to the chat server; made and closed by the two below.
  Socket& sckClient() { return *sckClient_; }
  /// Begins to connect, in place of the connection before.
  void connect(const std::string& host);
  /// The user's own: closes it, and what came over it counts no more.
  void leaveConnection();
  /// A line's: closes the connection that it came over, unless the user has left that one
  /// meanwhile. Lines that were read with it have their turn still.
  void closeConnection();
  /// What comes over the connection.
  ArrivalQueue& arrivals() { return arrivals_; }
  /// Sends one line (see outbound.h) at once. Fault 40006 without a connection.
  void send(const std::string& line) { sckClient_->SendData(line); }

  /// A message box; an empty title stands for the application's.
  void MsgBox(const std::string& text, int style = box_style::kPlain,
              const std::string& boxTitle = {});
  /// A question with the application's title, of which No is the default. Whether it was Yes.
  bool confirm(const std::string& text);
  /// The same of what does no harm: Yes is the default.
  bool offer(const std::string& text);

  /// How often the connection to the chat server was made.
  std::uint64_t connectionsMade = 0;
  /// The time as rules that last for a while see it.
  std::function<std::chrono::steady_clock::time_point()> now = std::chrono::steady_clock::now;
  /// How many keys the user has typed so far, in any window; the desktop counts.
  std::function<std::uint64_t()> keysTyped = [] { return std::uint64_t{0}; };
  /// When a box about a missing file was on the screen last, by the text of its fault.
  std::map<std::string, std::chrono::steady_clock::time_point> missingFileTold;

 private:
  BoxAnswer show(BoxRequest box);
  void tellTrouble(const std::string& text);

  MainWindowSlot mainWindow_;
  std::unique_ptr<Socket> sckClient_;
  ArrivalQueue arrivals_;
  std::map<std::type_index, std::shared_ptr<void>> lasting_;
  // Boxes in a row that lines caused, and when the last of them was closed.
  int boxesInARow_ = 0;
  std::chrono::steady_clock::time_point boxClosed_{};
  // A box about a program that failed is open, and so many more have failed since.
  bool troubleOpen_ = false;
  int furtherTroubles_ = 0;
};

/// Opens the login window, or ends the program if another instance runs.
void start(Client& client);

}  // namespace kelvaron
