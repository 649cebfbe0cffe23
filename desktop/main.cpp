// The desktop client.
#include <QApplication>
#include <QIcon>
#include <QTimer>
#include <chrono>

#include "base/code_page.h"
#include "client/kelvaron_client.h"
#include "desktop/form_scale.h"
#include "desktop/ports/application.h"
#include "desktop/ports/dialogs.h"
#include "desktop/ports/qt_event_loop.h"
#include "desktop/ports/radio.h"
#include "desktop/ports/sounds.h"
#include "desktop/ports/system_frames.h"
#include "desktop/ports/system_places.h"
#include "desktop/ports/vlc_library.h"
#include "desktop/shell/caret_rest.h"
#include "desktop/shell/shell.h"
#include "desktop/shell/theme.h"
#include "native/echo.h"
#include "native/file_streams.h"
#include "native/local_host.h"
#include "native/native_process.h"
#include "native/native_socket.h"
#include "native/paths.h"
#include "native/program_files.h"
#include "native/system_registry.h"

namespace {

// Reading the icon's pictures would hold up the first window.
constexpr std::chrono::milliseconds kIconDelay{100};
/// As long as in other programs of Linux desktops.
constexpr std::chrono::seconds kCaretBlinks{10};

QIcon programIcon() {
  QIcon icon;
  for (const int size : {16, 32, 48, 64, 128, 256}) {
    icon.addFile(QStringLiteral(":/pictures/icon_%1.png").arg(size), {size, size});
  }
  return icon;
}

}  // namespace

int main(int argc, char** argv) {
  using namespace kelvaron;
  dropEmptyProxy();
  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("Kelvaron"));
  QApplication::setDesktopFileName(QStringLiteral("kelvaron"));
  QApplication::setQuitOnLastWindowClosed(false);
  applyTheme(application);
  darkenFrames(application);
  setFormScale(formScaleFor(QApplication::font()));

  const ProgramFolders folders =
      foldersOfProgram(QCoreApplication::applicationDirPath().toStdString());
  const std::string engines = utf8Of(folders.engines);
  Edge edge;
  EventGate gate(edge);
  QtEventLoop loop;
  NativeSocketPort sockets(loop);
  QtDialogs dialogs(gate, QString::fromStdString(engines));
  WaveSounds sounds(folders.own, folders.installed);
  ProgramFiles files(folders.own);
  QtApplication program(gate);
  NativeProcessPort processes(loop);
  const auto registry = makeRegistry();
  Radio radio(sockets, loop);
  const auto echo = makeEcho(loop);
  DiskStreams streams(folders.own);
  NativeLocalHost localHost(loop);

  const std::unique_ptr<Client> client = makeClient(edge, Ports{.sockets = sockets,
                                                                .dialogs = dialogs,
                                                                .sound = sounds,
                                                                .files = files,
                                                                .application = program,
                                                                .processes = processes,
                                                                .registry = *registry,
                                                                .player = radio,
                                                                .echo = *echo,
                                                                .streams = streams,
                                                                .localHost = localHost,
                                                                .loop = loop});
  client->lasting<GamePlaces>() = gamePlaces(engines);
  const Shell shell(*client, gate);
  const CaretRest caretRest(kCaretBlinks);
  QTimer::singleShot(kIconDelay, [] { QApplication::setWindowIcon(programIcon()); });
  if (!folders.problem.empty()) {
    edge.runUnasked([&] { client->MsgBox(fromUtf8(folders.problem), box_style::kExclamation); });
  }
  start(*client);
  return edge.ended() ? 0 : QApplication::exec();
}
