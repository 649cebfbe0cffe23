// The ports of the desktop that need no window: sounds, pages and the radio, through the
// sound library with an output that nobody hears, from a station on this machine.
#include <gtest/gtest.h>

#include <QDesktopServices>
#include <QElapsedTimer>
#include <QTest>
#include <QUrl>
#include <algorithm>
#include <fstream>
#include <map>

#include "desktop/ports/application.h"
#include "desktop/ports/qt_event_loop.h"
#include "desktop/ports/radio.h"
#include "desktop/ports/sounds.h"
#include "desktop/ports/system_sound.h"
#include "native/native_socket.h"
#include "tests/support/temporary_folder.h"

namespace kelvaron::testing {

class PageCatcher : public QObject {
  Q_OBJECT

 public:
  QStringList opened;
  Q_INVOKABLE void open(const QUrl& url) { opened << url.toString(); }
};

namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;

#ifdef __SANITIZE_ADDRESS__
// Plug-ins of the sound library leave memory behind when they are unloaded.
constexpr const char* kPlayed = "missing too";
#else
constexpr const char* kPlayed = "bOOM";
#endif

TEST(Sounds, AreFoundBesideTheProgramAndAFloodDoesNotWait) {
  const TemporaryFolder folder;
  const auto& path = folder.path();
  std::filesystem::create_directory(path / "sounds");
  std::ofstream(path / "sounds" / "Boom.WAV") << "not a wave";
  EXPECT_EQ(WaveSounds::find(path / "sounds", "bOOM"), path / "sounds" / "Boom.WAV");
  EXPECT_FALSE(WaveSounds::find(path / "sounds", "bang"));
  EXPECT_FALSE(WaveSounds::find(path, "sounds/Boom"));
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

/// A wave file: a minute of silence, one channel of 8000 samples a second with 16 bits each.
const std::string kWave =
    "RIFF\x24\xA6\x0E\0WAVEfmt \x10\0\0\0\1\0\1\0"
    "\x40\x1F\0\0\x80\x3E\0\0\2\0\x10\0data\0\xA6\x0E\0"s +
    std::string(960'000, '\0');

std::string page(const std::string& content, const std::string& status = "200 OK") {
  return "HTTP/1.0 " + status + "\r\nContent-Length: " + std::to_string(content.size()) +
         "\r\n\r\n" + content;
}

std::string moved(const std::string& where) { return page("", "302 Found\r\nLocation: " + where); }

std::string asx(const std::string& stream) {
  return page("<ASX version = \"3.0\">\r\n<Entry>\r\n<Ref href = \"" + stream +
              "\"/>\r\n</Entry></ASX>");
}

/// An HTTP server on the loop of the test.
class RadioStation {
 public:
  explicit RadioStation(EventLoop& loop) : sockets_(loop), listener_(sockets_.makeSocket()) {
    listener_->onConnectionRequest = [this](int id) {
      Socket& socket = *peers_.emplace_back(sockets_.makeSocket());
      socket.onDataArrival = [this, &socket] { answer(socket); };
      socket.onSendComplete = [&socket] { socket.Close(); };
      socket.onClose = [&socket] { socket.Close(); };
      socket.onError = [&socket](int, const std::string&) { socket.Close(); };
      socket.Accept(id);
    };
    listener_->Listen(0);
  }

  /// Of a target here; any other address is itself.
  std::string address(const std::string& target) const {
    if (!target.starts_with('/')) return target;
    return "http://127.0.0.1:" + std::to_string(listener_->LocalPort()) + target;
  }
  auto connected() const {
    return std::ranges::count(peers_, SocketState::connected,
                              [](auto& each) { return each->State(); });
  }

  /// What each target answers; who asks for one that answers nothing is kept waiting.
  std::map<std::string, std::string> answers;
  std::vector<std::string> asked;

 private:
  void answer(Socket& socket) {
    const std::string request = socket.GetData();
    asked.push_back(request.substr(4, request.find(' ', 4) - 4));
    const auto found = answers.find(asked.back());
    const std::string answer = found == answers.end() ? page("", "404 Not Found") : found->second;
    if (!answer.empty()) socket.SendData(answer);
  }

  NativeSocketPort sockets_;
  std::unique_ptr<Socket> listener_;
  std::vector<std::unique_ptr<Socket>> peers_;
};

class RadioTest : public ::testing::Test {
 protected:
  RadioTest() {
    radio.onTrouble = [this](const std::string& text) { troubles.push_back(text); };
    station.answers = {{"/tone.wav", page(kWave)}, {"/silent.asx", ""}, {"/silent.mp3", ""}};
    station.answers["/kkrz.asx?stationid=KKRZ-FM"] = asx(station.address("/tone.wav"));
  }
  bool progressIs(int progress, std::chrono::milliseconds patience = 8s) {
    return QTest::qWaitFor([&] { return radio.BufferingProgress() == progress; },
                           static_cast<int>(patience.count()));
  }
  bool plays(const std::string& target) {
    radio.Open(station.address(target));
    EXPECT_EQ(radio.BufferingProgress(), 0);
    return progressIs(100);
  }

  QtEventLoop loop;
  NativeSocketPort sockets{loop};
  RadioStation station{loop};
  std::vector<std::string> troubles;
  Radio radio{sockets, loop, VlcLibrary::Output::silent, {.search = 400ms, .stream = 1500ms}};
};

TEST_F(RadioTest, PlaysAStationStopsAndPlaysOthersInPlaceOfIt) {
  EXPECT_TRUE(plays("/kkrz.asx?stationid=KKRZ-FM"));
  radio.Stop();
  QTest::qWait(300);
  EXPECT_EQ(radio.BufferingProgress(), 0) << "nothing of the old station is told";

  station.answers["/one.wav"] = page(kWave);
  station.answers["/kwjj.asx"] = asx("/one.wav");
  station.answers["/moved.asx"] = moved("/kkrz.asx?stationid=KKRZ-FM");
  station.answers["/nested.asx"] = asx(station.address("/moved.asx"));
  station.answers["/second.asx"] = page(
      "<asx><entry><ref href='file:///etc/passwd'/><ref "
      "href=/missing.mp3 /><REF HREF='one.wav'></asx>");
  station.answers["/list.m3u"] = page("#EXTM3U\n" + station.address("/one.wav") + "\n");
  for (const char* target :
       {"/kwjj.asx", "/tone.wav", "/moved.asx", "/nested.asx", "/second.asx", "/list.m3u"}) {
    EXPECT_TRUE(plays(target)) << target;
  }
  EXPECT_TRUE(troubles.empty());
}

TEST_F(RadioTest, WhatCannotBePlayedStaysAtZero) {
  station.answers["/rubbish.asx"] = page(std::string(5'000, '\x8F'));
  station.answers["/empty.asx"] = page("");
  station.answers["/ring.asx"] = moved("/ring.asx");
  station.answers["/late.asx"] = asx("/silent.mp3");
  for (const char* target : {"/rubbish.asx", "/empty.asx", "/ring.asx", "/missing.asx",
                             "http://127.0.0.1:1/", "no address", "/silent.asx", "/late.asx"}) {
    radio.Open(station.address(target));
    EXPECT_FALSE(progressIs(100, 500ms)) << target;
    EXPECT_EQ(radio.BufferingProgress(), 0) << target;
  }
  // Neither a playlist nor a stream is waited for without end.
  EXPECT_EQ(station.asked.back(), "/silent.mp3");
  EXPECT_EQ(station.connected(), 1);
  EXPECT_TRUE(QTest::qWaitFor([&] { return station.connected() == 0; }, 4000));
  EXPECT_LE(std::ranges::count(station.asked, "/ring.asx"), 5);
  EXPECT_TRUE(plays("/kkrz.asx?stationid=KKRZ-FM")) << "after all that";
  EXPECT_TRUE(troubles.empty());
}

TEST_F(RadioTest, CallsNeverWait) {
  station.answers["/late.asx"] = asx("/silent.mp3");
  QElapsedTimer time;
  time.start();
  for (int i = 0; i < 50; ++i) {
    radio.Open(station.address(i % 2 == 0 ? "/late.asx" : "/tone.wav"));
    radio.setVolume(-29 * i);
    if (i % 7 == 3) radio.Stop();
  }
  EXPECT_LT(time.elapsed(), 500);
  EXPECT_TRUE(progressIs(100));
  // While the player waits for a stream that says nothing.
  radio.Open(station.address("/late.asx"));
  QTest::qWait(600);
  time.restart();
  radio.Stop();
  EXPECT_LT(time.elapsed(), 200);
}

TEST_F(RadioTest, VolumeTakesHoldWithEachStream) {
  StreamPlayer player(VlcLibrary::Output::silent, 5s);
  ASSERT_EQ(player.prepare(), "");
  const auto volumeIs = [&](int percent) {
    return QTest::qWaitFor([&] {
      player.tick();
      return player.progress() == 100 && player.volume() == percent;
    });
  };
  player.play({station.address("/tone.wav")});
  EXPECT_TRUE(volumeIs(100));
  for (const int percent : {33, 100, 57}) {
    player.setVolume(percent);
    EXPECT_TRUE(volumeIs(percent)) << player.volume();
  }
  player.stop();
  player.play({station.address("/tone.wav")});
  EXPECT_TRUE(volumeIs(57)) << player.volume();
}

TEST_F(RadioTest, AMachineWithoutSoundSaysSoOncePerPress) {
  Radio audible(sockets, loop);
  audible.onTrouble = [this](const std::string& text) { troubles.push_back(text); };
  for (std::size_t press = 1; press <= 2; ++press) {
    audible.Open(station.address("/missing.asx"));
    const bool told = QTest::qWaitFor([&] { return troubles.size() == press; }, 1500);
    EXPECT_NE(told, hasSoundDevice());
  }
  for (const auto& each : troubles) EXPECT_TRUE(each.starts_with("The radio is silent: ")) << each;
  audible.Stop();
  QTest::qWait(200);
  EXPECT_LE(troubles.size(), 2U) << "not once more when nothing is found";
}

}  // namespace
}  // namespace kelvaron::testing

#include "ports_test.moc"
