// The radio through the sound library, with an output that nobody hears, from a station on this
// machine.
#include "desktop/ports/radio.h"

#include <gmock/gmock.h>

#include <QElapsedTimer>
#include <QLabel>
#include <algorithm>
#include <map>

#include "native/native_socket.h"
#include "tests/desktop/room_desk.h"

namespace kelvaron::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::Contains;
using ::testing::Each;
using ::testing::IsEmpty;
using ::testing::StartsWith;

constexpr const char* kAsxType = "video/x-ms-asf";

std::string asx(const std::string& stream) {
  return "<ASX version = \"3.0\">\r\n<!-- <ref href=\"http://wrong/\"/> -->\r\n<Entry>\r\n"
         "<Ref href = \"" +
         stream + "\"/>\r\n</Entry></ASX>";
}

/// A wave file of silence, one channel of 8000 samples a second with 16 bits each.
std::string wave(std::uint32_t seconds) {
  const std::uint32_t size = seconds * 8000 * 2;
  const auto number = [](std::uint32_t value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i) text += static_cast<char>((value >> (8 * i)) & 0xFFU);
    return text;
  };
  return "RIFF" + number(36 + size, 4) + "WAVEfmt " + number(16, 4) + number(1, 2) + number(1, 2) +
         number(8000, 4) + number(16000, 4) + number(2, 2) + number(16, 2) + "data" +
         number(size, 4) + std::string(size, '\0');
}

/// An HTTP server on the loop of the test.
class RadioStation {
 public:
  explicit RadioStation(EventLoop& loop) : sockets_(loop), listener_(sockets_.makeSocket()) {
    listener_->onConnectionRequest = [this](int id) { accept(id); };
    listener_->Listen(0);
  }

  std::uint16_t port() const { return listener_->LocalPort(); }
  std::string address(const std::string& target) const {
    return "http://127.0.0.1:" + std::to_string(port()) + target;
  }
  void serve(const std::string& target, const std::string& type, const std::string& page) {
    const std::string& answer = answers_[target] =
        "HTTP/1.0 200 OK\r\nContent-Type: " + type +
        "\r\nContent-Length: " + std::to_string(page.size()) + "\r\n\r\n" + page;
    for (Socket* peer : std::exchange(waiting_[target], {})) {
      if (peer->State() == SocketState::connected) peer->SendData(answer);
    }
  }
  void redirect(const std::string& target, const std::string& location) {
    answers_[target] = "HTTP/1.0 302 Found\r\nLocation: " + location + "\r\n\r\n";
  }
  /// Takes connections for this target and says nothing until it is served.
  void keepWaiting(const std::string& target) { answers_[target] = ""; }
  void refuse() { listener_->Close(); }
  /// How many wait for a target in vain.
  auto waiting(const std::string& target) {
    return std::ranges::count(waiting_[target], SocketState::connected, &Socket::State);
  }

  /// The targets that were asked for, in order.
  std::vector<std::string> asked;

 private:
  void accept(int id) {
    Socket& socket = *peers_.emplace_back(sockets_.makeSocket());
    socket.onDataArrival = [this, &socket] { answer(socket); };
    socket.onSendComplete = [&socket] { socket.Close(); };
    socket.onClose = [&socket] { socket.Close(); };
    socket.onError = [&socket](int, const std::string&) { socket.Close(); };
    socket.Accept(id);
  }
  void answer(Socket& socket) {
    const std::string request = socket.GetData();
    const std::string target = request.substr(4, request.find(' ', 4) - 4);
    asked.push_back(target);
    const auto found = answers_.find(target);
    if (found == answers_.end()) {
      socket.SendData("HTTP/1.0 404 Not Found\r\n\r\n");
    } else if (found->second.empty()) {
      waiting_[target].push_back(&socket);
    } else {
      socket.SendData(found->second);
    }
  }

  NativeSocketPort sockets_;
  std::unique_ptr<Socket> listener_;
  std::vector<std::unique_ptr<Socket>> peers_;
  std::map<std::string, std::string> answers_;
  std::map<std::string, std::vector<Socket*>> waiting_;
};

class RadioTest : public ::testing::Test {
 protected:
  RadioTest() {
    radio.onTrouble = [this](const std::string& text) { troubles.push_back(text); };
    station.serve("/long.wav", "audio/x-wav", wave(60));
    station.serve("/kkrz.asx?stationid=KKRZ-FM", kAsxType, asx(station.address("/long.wav")));
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

TEST_F(RadioTest, PlaysAStationStopsAndPlaysAnother) {
  EXPECT_TRUE(plays("/kkrz.asx?stationid=KKRZ-FM"));
  EXPECT_THAT(station.asked, Contains("/long.wav"));
  radio.Stop();
  EXPECT_EQ(radio.BufferingProgress(), 0);
  QTest::qWait(300);
  EXPECT_EQ(radio.BufferingProgress(), 0) << "nothing of the old station is told";

  station.serve("/other.wav", "audio/x-wav", wave(30));
  station.serve("/kwjj.asx", "text/html", asx("/other.wav"));
  EXPECT_TRUE(plays("/kwjj.asx"));
  EXPECT_TRUE(plays("/kkrz.asx?stationid=KKRZ-FM")) << "in place of what was playing";
  EXPECT_TRUE(plays("/long.wav")) << "a stream without a playlist";
  EXPECT_THAT(troubles, IsEmpty());
}

TEST_F(RadioTest, WaysToAStream) {
  station.serve("/one.wav", "audio/x-wav", wave(30));
  station.redirect("/moved.asx", "/kkrz.asx?stationid=KKRZ-FM");
  station.serve("/nested.asx", "text/plain", asx(station.address("/moved.asx")));
  station.serve("/second.asx", kAsxType,
                "<asx><entry><ref href='file:///etc/passwd'/><ref href=/missing.mp3 /><REF "
                "HREF='one.wav'></asx>");
  station.serve("/list.m3u", "audio/x-mpegurl", "#EXTM3U\n" + station.address("/one.wav") + "\n");
  for (const char* target : {"/moved.asx", "/nested.asx", "/second.asx", "/list.m3u"}) {
    EXPECT_TRUE(plays(target)) << target;
    radio.Stop();
  }
}

TEST_F(RadioTest, WhatCannotBePlayedStaysAtZero) {
  station.serve("/rubbish.asx", kAsxType, std::string(5000, '\x8F'));
  station.serve("/empty.asx", kAsxType, "");
  station.serve("/nothing.asx", kAsxType, "<asx></asx>");
  station.serve("/page.asx", "text/html", "<html><body>Gone</body></html>");
  station.redirect("/ring.asx", "/ring.asx");
  station.keepWaiting("/silent.asx");
  station.keepWaiting("/silent.mp3");
  station.serve("/late.asx", kAsxType, asx("/silent.mp3"));
  for (const char* target : {"/rubbish.asx", "/empty.asx", "/nothing.asx", "/page.asx", "/ring.asx",
                             "/missing.asx", "/silent.asx", "/late.asx"}) {
    radio.Open(station.address(target));
    EXPECT_FALSE(progressIs(100, 500ms)) << target;
    EXPECT_EQ(radio.BufferingProgress(), 0) << target;
  }
  // Neither a playlist nor a stream is waited for without end.
  EXPECT_EQ(station.waiting("/silent.asx"), 0);
  EXPECT_EQ(station.waiting("/silent.mp3"), 1);
  EXPECT_TRUE(QTest::qWaitFor([&] { return station.waiting("/silent.mp3") == 0; }, 4000));
  EXPECT_LE(std::ranges::count(station.asked, "/ring.asx"), 5);
  EXPECT_TRUE(plays("/kkrz.asx?stationid=KKRZ-FM")) << "after all that";
  const std::string gone = station.address("/kkrz.asx");
  station.refuse();
  radio.Open(gone);
  EXPECT_FALSE(progressIs(100, 700ms));
  radio.Open("no address");
  EXPECT_FALSE(progressIs(100, 700ms));
  EXPECT_THAT(troubles, IsEmpty());
}

TEST_F(RadioTest, CallsNeverWait) {
  station.keepWaiting("/silent.mp3");
  station.serve("/late.asx", kAsxType, asx("/silent.mp3"));
  QElapsedTimer time;
  time.start();
  for (int i = 0; i < 50; ++i) {
    radio.Open(station.address(i % 2 == 0 ? "/late.asx" : "/long.wav"));
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
  Tuner tuner(VlcLibrary::Output::silent, 5s);
  ASSERT_EQ(tuner.prepare(), "");
  const auto volumeIs = [&](int percent) {
    return QTest::qWaitFor([&] {
      tuner.tick();
      return tuner.progress() == 100 && tuner.volume() == percent;
    });
  };
  tuner.play({station.address("/long.wav")});
  EXPECT_TRUE(volumeIs(100));
  for (const int percent : {33, 100, 57}) {
    tuner.setVolume(percent);
    EXPECT_TRUE(volumeIs(percent)) << tuner.volume();
  }
  tuner.stop();
  tuner.play({station.address("/long.wav")});
  EXPECT_TRUE(volumeIs(57)) << tuner.volume();
}

TEST_F(RadioTest, AMachineWithoutSoundSaysSoOncePerPress) {
  Radio audible(sockets, loop);
  audible.onTrouble = [this](const std::string& text) { troubles.push_back(text); };
  for (std::size_t press = 1; press <= 2; ++press) {
    audible.Open(station.address("/missing.asx"));
    const bool told = QTest::qWaitFor([&] { return troubles.size() == press; }, 1500);
    EXPECT_NE(told, hasSoundDevice());
    EXPECT_THAT(troubles, Each(StartsWith("The radio is silent: ")));
  }
  audible.Stop();
  QTest::qWait(200);
  EXPECT_LE(troubles.size(), 2U) << "not once more when nothing is found";
}

class RadioRoom : public ::testing::Test, protected RoomDesk {
 protected:
  RadioRoom()
      : RoomDesk([](SocketPort& network, EventLoop& turns) -> std::unique_ptr<MediaPlayer> {
          return std::make_unique<Radio>(network, turns, VlcLibrary::Output::silent);
        }) {}
  // Whether the label shows the text, written there by the timer of the room.
  bool displays(const QString& text) {
    return QTest::qWaitFor([&] {
      const auto& label = dynamic_cast<const QLabel&>(widgetOf(room().Label9));
      return label.isVisible() && label.text() == text;
    });
  }

  RadioStation station{loop};
};

TEST_F(RadioRoom, TheDisplayFollowsTheStream) {
  constexpr std::uint16_t kWebPort = 80;
  sockets.routeTo(station.port(), kWebPort);
  station.keepWaiting("/long.wav");
  station.serve("/startstream.asx?stationid=KKRZ-FM", kAsxType, asx(station.address("/long.wav")));
  QTest::qWait(1);
  edge.run([&] { room().kkrzplay.Click(); });
  EXPECT_TRUE(displays("0%"));
  EXPECT_TRUE(widgetOf(room().Frame1).isVisible());
  ASSERT_TRUE(QTest::qWaitFor([&] { return station.waiting("/long.wav") == 1; }));
  station.serve("/long.wav", "audio/x-wav", wave(30));
  EXPECT_TRUE(QTest::qWaitFor([&] { return !widgetOf(room().Frame1).isVisible(); }));
  EXPECT_EQ(room().Label9.Caption.get(), "100%");
  EXPECT_EQ(player->BufferingProgress(), 100);
  // A station that isn't there.
  edge.run([&] { room().KSHE95.Click(); });
  EXPECT_TRUE(displays("0%"));
  edge.run([&] { room().stopplay.Click(); });
  EXPECT_TRUE(QTest::qWaitFor([&] { return !widgetOf(room().Frame1).isVisible(); }));
}

}  // namespace
}  // namespace kelvaron::testing
