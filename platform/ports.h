// What Kelvaron asks of a desktop, apart from forms and controls.
#pragma once

#include <string>
#include <string_view>

#include "platform/socket.h"

namespace kelvaron {

/// Box styles, by the number that the callers tell.
namespace box_style {
inline constexpr int kPlain = 0;
inline constexpr int kCritical = 16;
inline constexpr int kExclamation = 48;
inline constexpr int kInformation = 64;
}  // namespace box_style

/// Modal dialogs: each call returns when the user has answered. Text is code page 1252. When the
/// program ends meanwhile, the call throws `ProgramEnd`.
class Dialogs {
 public:
  virtual ~Dialogs() = default;
  /// A box with an OK button.
  virtual void MsgBox(const std::string& text, int style, const std::string& title) = 0;
  /// The empty string on cancel.
  virtual std::string InputBox(const std::string& prompt, const std::string& title,
                               const std::string& initial) = 0;
};

class SoundPort {
 public:
  virtual ~SoundPort() = default;
  /// Plays a wave file without waiting. A missing or broken file, or no sound device, is silence.
  /// `name` is a file name without folder and extension, taken from the program's folder `sounds`;
  /// a name with a folder part, or one that is empty, is silence too.
  virtual void play(std::string_view name) = 0;
};

class FilePort {
 public:
  virtual ~FilePort() = default;
  /// Makes a folder in the program's own folder. Fault 75 when it cannot be made or exists; names
  /// are compared without regard to case.
  virtual void MkDir(const std::string& name) = 0;
};

class Application {
 public:
  virtual ~Application() = default;
  /// Whether another instance of the program runs in this user's session.
  virtual bool PrevInstance() const = 0;
  /// Ends the program: throws `ProgramEnd`.
  [[noreturn]] virtual void End() = 0;
  /// Lets pending events run once. Throws `ProgramEnd` when one of them ended the program.
  virtual void DoEvents() = 0;
  /// Shows an http or https page in the user's browser, without taking the focus where that can be
  /// avoided. Any other address is left alone.
  virtual void showPage(const std::string& address) = 0;
};

/// The ports together; all outlive the client.
struct Ports {
  SocketPort& sockets;
  Dialogs& dialogs;
  SoundPort& sound;
  FilePort& files;
  Application& application;
};

}  // namespace kelvaron
