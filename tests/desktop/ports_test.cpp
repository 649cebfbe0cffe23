// The ports of the desktop that need no window.
#include <gtest/gtest.h>
#include <unistd.h>

#include <QDesktopServices>
#include <QTest>
#include <QUrl>
#include <chrono>
#include <filesystem>
#include <fstream>

#include "desktop/ports/application.h"
#include "desktop/ports/qt_event_loop.h"
#include "desktop/ports/sounds.h"
#include "tests/support/temporary_folder.h"

namespace kelvaron::testing {

/// Stands in for the browser.
class PageCatcher : public QObject {
  Q_OBJECT

 public:
  QStringList opened;
  Q_INVOKABLE void open(const QUrl& url) { opened << url.toString(); }
};

namespace {

using namespace std::chrono_literals;

TEST(Sounds, AreFoundBesideTheProgram) {
  const TemporaryFolder folder;
  const auto& path = folder.path();
  std::filesystem::create_directory(path / "Sounds");
  std::ofstream(path / "Sounds" / "Boom.WAV") << "x";
  EXPECT_EQ(WaveSounds::find(path / "Sounds", "bOOM"), path / "Sounds" / "Boom.WAV");
  EXPECT_FALSE(WaveSounds::find(path / "Sounds", "bang"));
  EXPECT_FALSE(WaveSounds::find(path, "Sounds/Boom"));
}

#ifdef __SANITIZE_ADDRESS__
// Plug-ins of the sound library leave memory behind when they are unloaded.
constexpr const char* kPlayed = "missing too";
#else
constexpr const char* kPlayed = "broken";
#endif

TEST(Sounds, AFloodDoesNotWait) {
  const TemporaryFolder folder;
  const auto& path = folder.path();
  std::filesystem::create_directory(path / "sounds");
  std::ofstream(path / "sounds" / "broken.wav") << "not a wave";
  WaveSounds sounds(path, path);
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < 1000; ++i) sounds.play(i % 2 == 0 ? kPlayed : "missing");
  EXPECT_LT(std::chrono::steady_clock::now() - start, 500ms);
}

TEST(Pages, OnlyOfTheWeb) {
  Edge edge;
  EventGate gate(edge);
  QtApplication application(gate);
  PageCatcher catcher;
  const QStringList schemes = {"http", "https", "file", "ssh", "mailto"};
  for (const auto& scheme : schemes) QDesktopServices::setUrlHandler(scheme, &catcher, "open");
  for (const char* address : {"http://one.example/", "HTTPS://two.example/a", "file:///etc/passwd",
                              "ssh://x", "mailto:a@b", "relative", "http:", "-option"}) {
    application.showPage(address);
  }
  for (const auto& scheme : schemes) QDesktopServices::unsetUrlHandler(scheme);
  EXPECT_EQ(catcher.opened, (QStringList{"http://one.example/", "https://two.example/a"}));
}

TEST(Loop, TimersAndDescriptors) {
  QtEventLoop loop;
  const auto start = std::chrono::steady_clock::now();
  std::chrono::steady_clock::duration waited{};
  std::unique_ptr<LoopWatch> timer = loop.after(20ms, [&] {
    waited = std::chrono::steady_clock::now() - start;
    timer.reset();
  });
  int pipe[2];
  ASSERT_EQ(::pipe(pipe), 0);
  int turns = 0;
  std::unique_ptr<LoopWatch> watch;
  watch = loop.watch(pipe[0], EventLoop::Readiness::readable, [&] {
    if (++turns == 3) watch.reset();
  });
  ASSERT_EQ(::write(pipe[1], "x", 1), 1);
  QTest::qWait(100);
  EXPECT_GE(waited, 20ms);
  EXPECT_EQ(turns, 3);
  ::close(pipe[0]);
  ::close(pipe[1]);
}

}  // namespace
}  // namespace kelvaron::testing

#include "ports_test.moc"
