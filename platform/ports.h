// What Kelvaron asks of a desktop, apart from forms and controls.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/echo.h"
#include "platform/event_loop.h"
#include "platform/file_streams.h"
#include "platform/local_host.h"
#include "platform/media_player.h"
#include "platform/process.h"
#include "platform/registry.h"
#include "platform/socket.h"

namespace kelvaron {

/// Box styles, by the number that the callers tell.
namespace box_style {
inline constexpr int kPlain = 0;
inline constexpr int kCritical = 16;
inline constexpr int kExclamation = 48;
inline constexpr int kInformation = 64;
}  // namespace box_style

/// What a dialog that chooses a file to open is like.
struct FileDialog {
  std::string title = {};
  /// Words shown, or a pattern such as "*.wad". Empty shows all files.
  std::string filter = {};
  /// Where the dialog starts; empty, or a folder that isn't there, leaves it to the desktop.
  std::string initialFolder = {};
  /// Without a dot; goes behind a name that was typed without an extension.
  std::string defaultExtension = {};
};

/// A message box, or a question.
struct BoxRequest {
  std::string text = {};
  /// See `box_style`.
  int style = box_style::kPlain;
  std::string title = {};
  /// Yes and No, of which No is the default unless told, in place of OK.
  bool question = false;
  bool yesIsDefault = false;
  /// Nobody asked for it: it must not take the keys that are being typed elsewhere.
  bool unasked = false;
  /// Has a further button "Disconnect".
  bool offersDisconnect = false;
};

/// Closing a box by its frame is `ok`, or `no` for a question.
enum class BoxAnswer { ok, yes, no, disconnect };

/// Modal dialogs: each call returns when the user has answered. Text is code page 1252. When the
/// program ends meanwhile, the call throws `ProgramEnd`.
class Dialogs {
 public:
  virtual ~Dialogs() = default;
  /// At most one box is on the screen at a time: another one waits for its turn.
  virtual BoxAnswer show(const BoxRequest& box) = 0;
  /// The empty string on cancel.
  virtual std::string InputBox(const std::string& prompt, const std::string& title,
                               const std::string& initial) = 0;
  /// The full path of the file that the user chose; nothing on cancel.
  virtual std::optional<std::string> openFile(const FileDialog& dialog) = 0;
};

class SoundPort {
 public:
  virtual ~SoundPort() = default;
  /// Plays a wave file without waiting. A missing or broken file, or no sound device, is silence.
  /// `name` is a file name without folder and extension, taken from the program's folder `sounds`;
  /// a name with a folder part, or one that is empty, is silence too.
  virtual void play(std::string_view name) = 0;
  /// The same with a file of the program's folder itself.
  virtual void playBeside(std::string_view name) = 0;
};

/// Files in the program's own folder. Names are bare, and compared without regard to case.
class FilePort {
 public:
  virtual ~FilePort() = default;
  /// The program's folder in full, without a sign at its end.
  virtual std::string folder() const = 0;
  /// The whole of a file. Fault 53 when there is none, 75 when it can't be read.
  virtual std::string read(const std::string& name) = 0;
  /// Writes a file whole, or leaves the former one untouched: what is written takes the name when
  /// all of it is on the disk. Fault 61 when the disk is full, else 75.
  virtual void replace(const std::string& name, const std::string& content) = 0;
  /// Makes a folder. Fault 75 when it cannot be made or exists.
  virtual void MkDir(const std::string& name) = 0;
};

class Application {
 public:
  virtual ~Application() = default;
  /// Whether another instance of the program runs in this user's session.
  virtual bool PrevInstance() const = 0;
  /// Why that can't be told, as a sentence without its full stop; empty when it can.
  virtual std::string InstanceProblem() const = 0;
  /// Ends the program: throws `ProgramEnd`.
  [[noreturn]] virtual void End() = 0;
  /// Lets pending events run once. Throws `ProgramEnd` when one of them ended the program.
  virtual void DoEvents() = 0;
  /// Shows an http or https page in the user's browser, without taking the focus where that can be
  /// avoided. Any other address is left alone.
  virtual void showPage(const std::string& address) = 0;
  /// Shows a folder in the user's file manager, or the one above where it isn't there.
  virtual void showFolder(const std::string& path) = 0;
};

/// The ports together; all outlive the client.
struct Ports {
  SocketPort& sockets;
  Dialogs& dialogs;
  SoundPort& sound;
  FilePort& files;
  Application& application;
  ProcessPort& processes;
  Registry& registry;
  MediaPlayer& player;
  EchoPort& echo;
  FileStreams& streams;
  LocalHostPort& localHost;
  EventLoop& loop;
};

}  // namespace kelvaron
