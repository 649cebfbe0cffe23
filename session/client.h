// The client: the one object that owns the session, and through which every form reaches the
// ports, the other forms, the connection and the user's own name.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <typeindex>

#include "platform/edge.h"
#include "platform/form_slots.h"
#include "platform/ports.h"
#include "session/dispatch.h"

namespace kelvaron {

class Client;
class MainWindow;

/// The way to the main window, which a higher folder builds.
struct MainWindowSlot {
  /// Makes it at the first touch.
  MainWindow& (*touch)(Client&);
  /// Null while it isn't loaded.
  const MainWindow* (*loaded)(const Client&);
};

class Client {
 public:
  /// `inbound` is the table of inbound keywords. Edge and ports outlive the client.
  Client(Edge& edge, const Ports& ports, std::span<const InboundRow> inbound,
         const MainWindowSlot& mainWindow);
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;
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

  /// The one connection to the chat server.
  Socket& sckClient() { return *sckClient_; }
  /// Sends one line (see outbound.h) at once. Fault 40006 without a connection.
  void send(const std::string& line) { sckClient_->SendData(line); }

  /// A message box; an empty title stands for the application's.
  void MsgBox(const std::string& text, int style = box_style::kPlain,
              const std::string& boxTitle = {});

 private:
  void arrival();

  std::span<const InboundRow> inbound_;
  MainWindowSlot mainWindow_;
  std::unique_ptr<Socket> sckClient_;
  std::map<std::type_index, std::shared_ptr<void>> lasting_;
  // A box in a handler of an inbound line lets events run. What the socket tells meanwhile waits,
  // so that lines are handled in their order.
  bool handlingArrival_ = false;
  bool arrivalWaits_ = false;
  bool closeWaits_ = false;
};

/// Opens the login window, or ends the program if another instance runs.
void start(Client& client);

}  // namespace kelvaron
