// The room on the real shell, with a radio that nobody hears.
#pragma once

#include <QTest>
#include <memory>
#include <string>

#include "chat/main_window.h"
#include "client/kelvaron_client.h"
#include "desktop/ports/dialogs.h"
#include "desktop/ports/qt_event_loop.h"
#include "desktop/ports/radio.h"
#include "desktop/shell/shell.h"
#include "native/echo.h"
#include "native/file_streams.h"
#include "native/local_host.h"
#include "native/program_files.h"
#include "tests/support/no_processes.h"
#include "tests/support/quiet_ports.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/test_desktop.h"

namespace kelvaron::testing {

class RoomDesk : private SoundPort, private Application {
 public:
  RoomDesk() {
    room().Show();
    QTest::qWait(1);
  }

  frmMain& room() { return client->form<frmMain>(); }
  FormFrame& frame() { return *shell.shown(room())->frame(); }
  QWidget& widgetOf(const Control& control) {
    return shell.shown(room())->viewOf(control)->widget();
  }

  QtEventLoop loop;
  RoutedSocketPort sockets{loop, 0};
  Edge edge;
  EventGate gate{edge};
  QtDialogs dialogs{gate};
  TemporaryFolder folder;
  ProgramFiles files{folder.path()};
  NoProcesses processes;
  EmptyRegistry registry;
  Radio radio{sockets, loop, VlcLibrary::Output::silent};
  NativeEcho echo{loop};
  DiskStreams streams{folder.path()};
  NativeLocalHost localHost{loop};
  std::unique_ptr<Client> client = makeClient(edge, Ports{.sockets = sockets,
                                                          .dialogs = dialogs,
                                                          .sound = *this,
                                                          .files = files,
                                                          .application = *this,
                                                          .processes = processes,
                                                          .registry = registry,
                                                          .player = radio,
                                                          .echo = echo,
                                                          .streams = streams,
                                                          .localHost = localHost});
  Shell shell{*client, gate};

 private:
  void play(std::string_view /*name*/) override {}
  void playBeside(std::string_view /*name*/) override {}
  std::string InstanceProblem() const override { return {}; }
  bool PrevInstance() const override { return false; }
  [[noreturn]] void End() override { throw ProgramEnd{}; }
  void DoEvents() override {}
  void showPage(const std::string& /*address*/) override {}
};

}  // namespace kelvaron::testing
