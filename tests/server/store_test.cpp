// The folder of files, the settings and the command line.
#include "server/store.h"

#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <sstream>

#include "server/file.h"
#include "server/options.h"
#include "server/password.h"
#include "server/settings.h"
#include "server/statistics.h"
#include "tests/server/peer.h"

namespace kelvaron::server {
namespace {

template <class Call>
std::string errorOf(Call call) {
  try {
    call();
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "no error";
}

TEST(Store, DefaultsOfAFreshFolder) {
  TemporaryFolder folder;
  const Store store(folder.path() / "new" / "deeper");
  store.prepare();
  EXPECT_EQ(store.reserved(),
            (std::vector<std::string>{"QZN", "Sorrel", "Message", "Private", "Server"}));
  EXPECT_TRUE(store.bans().empty());
  EXPECT_TRUE(store.moderators().empty());
  EXPECT_EQ(store.motd(), "Welcome to Kelvaron.");
  EXPECT_EQ(store.settings().lineLimit, 65'536);
  std::ofstream(store.folder() / "reserved") << "admin\n";
  store.prepare();
  EXPECT_EQ(store.reserved(), std::vector<std::string>{"admin"}) << "what is there stays";
}

TEST(Store, ChangesKeepTheRestOfTheFile) {
  TemporaryFolder folder;
  const Store store(folder.path());
  std::ofstream(folder.path() / "bans") << "# mine\r\nnick\tx\t\t\tby hand\t\r\n";
  store.addBans({{BanKind::user, "bob", "10.1.1.1", "", "alice", "a\tb\nc"}});
  store.noteToldAddress("BOB", "10.0.0.7");
  store.noteToldAddress("unknown", "1.1.1.1");
  EXPECT_EQ(*readFile(folder.path() / "bans"),
            "# mine\nnick\tx\t\t\tby hand\t\nuser\tbob\t10.1.1.1\t10.0.0.7\talice\ta b c\n");
  store.setModerator({"#ann", "a@example.org", "one"});
  store.setModerator({"bob", "b@example.org", "two"});
  store.setModerator({"#ANN", "c@example.org", "three"});
  EXPECT_EQ(*readFile(folder.path() / "moderators"),
            "bob\tb@example.org\ttwo\n#ANN\tc@example.org\tthree\n");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 2)
      << "nothing is left beside the files";
}

TEST(Store, WhatABanKeepsOut) {
  const std::vector<std::tuple<BanKind, std::string, std::string, bool>> cases = {
      {BanKind::user, "BOB", "10.9.9.9", true},     {BanKind::user, "eve", "10.1.1.1", true},
      {BanKind::nick, "bob", "10.9.9.9", true},     {BanKind::nick, "eve", "10.1.1.1", false},
      {BanKind::address, "bob", "10.9.9.9", false}, {BanKind::address, "eve", "10.1.1.1", true},
      {BanKind::user, "eve", "10.1.1.10", false},
  };
  for (const auto& [kind, nick, address, out] : cases) {
    const Ban ban{kind, "bob", "10.1.1.1", "", "", ""};
    EXPECT_EQ(ban.keepsOut(nick, address), out) << nick << ' ' << address;
  }
  const Ban household{BanKind::address, "", "2001:db8:1:2::5", "", "", ""};
  EXPECT_TRUE(household.keepsOut("eve", "2001:db8:1:2:ffff::1"));
  EXPECT_FALSE(household.keepsOut("eve", "2001:db8:1:3::5"));
  for (const char* own : {"127.0.0.1", "127.1.2.3", "::1"}) {
    EXPECT_FALSE((Ban{BanKind::user, "bob", own, "", "", ""}.keepsOut("eve", own))) << own;
  }
}

TEST(Store, FaultsNameTheFileAndTheLine) {
  TemporaryFolder folder;
  const std::vector<std::tuple<std::string, std::string, std::string>> cases = {
      {"settings", "# x\n\nline_limit = 12x\n", "settings, line 3: line_limit must be a number"},
      {"settings", "line_limit = 1", "settings, line 1: line_limit must be a number from 256"},
      {"settings", "line_limit = 99999999999999999999", "settings, line 1: line_limit must be"},
      {"settings", "speed = 3\n", "settings, line 1: there is no setting \"speed\""},
      {"settings", "line_limit\n", "settings, line 1: a line must read: key = value"},
      {"reserved", "good\na b\n", "reserved, line 2: \"a b\" can't be a nickname"},
      {"moderators", "bob\tx@example.org\n", "moderators, line 1: a line must hold"},
      {"bans", "\nuser\tbob\n", "bans, line 2: a line must hold"},
      {"bans", "ip\tbob\t\t\t\t\n", "bans, line 1: a line must hold"},
      {"bans", "nick\t \t10.1.1.1\t\t\t\n", "bans, line 1: a ban of a nickname needs one"},
      {"bans", "address\tbob\t192.0.2.0/24\t\t\t\n", "bans, line 1: a ban of an address needs one"},
  };
  for (const auto& [file, text, fault] : cases) {
    SCOPED_TRACE(text);
    std::ofstream(folder.path() / file) << text;
    asio::io_context io;
    const auto start = [&] {
      const Server server(io, {.address = "127.0.0.1", .port = 0, .folder = folder.path()});
    };
    EXPECT_TRUE(errorOf(start).starts_with(fault)) << errorOf(start);
    EXPECT_EQ(*readFile(folder.path() / file), text) << "the file is left alone";
    std::filesystem::remove(folder.path() / file);
  }
  std::ofstream(folder.path() / "bans") << "# mine\nuser\tbob\n";
  EXPECT_TRUE(errorOf([&] {
                Store(folder.path()).noteToldAddress("bob", "10.0.0.7");
              }).starts_with("bans, line 2"));
  std::ofstream(folder.path() / "plain") << "x";
  EXPECT_NE(errorOf([&] { Store(folder.path() / "plain").prepare(); }), "no error");
  std::filesystem::create_directory(folder.path() / "motd.new");
  EXPECT_TRUE(errorOf([&] {
                replaceFile(folder.path() / "motd", "x");
              }).ends_with("can't be written: Is a directory"));
}

TEST(Store, EverySettingIsInTheDocumentWithItsDefault) {
  std::ifstream document(KELVARON_SERVER_DOCUMENT);
  std::string line;
  std::string settings;
  const std::regex row("\\| `([a-z_]+)` \\| ([0-9]+) \\|.*");
  for (std::smatch cells; std::getline(document, line);) {
    if (std::regex_match(line, cells, row)) settings += cells.str(1) + " = " + cells.str(2) + "\n";
  }
  std::string defaults;
  for (std::istringstream all(defaultSettingsText()); std::getline(all, line);) {
    if (!line.empty() && line.front() != '#') defaults += line + "\n";
  }
  EXPECT_EQ(settings, defaults);
  EXPECT_EQ(parseSettings("line_limit = 16777216").lineLimit, 16'777'216) << "the most";
}

TEST(Statistics, OfTrafficAreToldOnceThereWasSome) {
  Statistics statistics;
  EXPECT_FALSE(statistics.next(1, true));
  statistics.countLine();
  EXPECT_TRUE(statistics.next(1, true));
  EXPECT_FALSE(statistics.next(1, true));
  EXPECT_TRUE(statistics.next(1, false));
}

TEST(Store, PasswordsAreKeptAsHashes) {
  const std::string hash = hashPassword("secret word");
  EXPECT_TRUE(hash.starts_with("$argon2id$"));
  EXPECT_TRUE(isPassword(hash, "secret word"));
  EXPECT_FALSE(isPassword(hash, "secret word "));
  for (const std::string& broken : {std::string(), std::string("secret word"),
                                    std::string(4096, '$'), hash.substr(0, hash.size() - 1)}) {
    EXPECT_FALSE(isPassword(broken, "secret word")) << broken;
  }
}

TEST(Store, WhatIsTakenAwayIsGoneAndNothingElse) {
  TemporaryFolder folder;
  const Store store(folder.path());
  std::ofstream(folder.path() / "bans")
      << "# mine\nnick\tBob\t\t\tann\t\nuser\teve\t10.1.1.1\t\tann\t\n"
      << "address\t\t10.1.1.1\t\tann\t\nnick\tcy\t\t\tann\t\n"
      << "address\t\t2001:db8:0:1::ffff\t\tann\t\n";
  EXPECT_EQ(store.removeBans("bob"), 1U);
  EXPECT_EQ(store.removeBans("10.1.1.1"), 2U);
  EXPECT_EQ(store.removeBans("2001:DB8:0:1::2"), 1U) << "of the network that is kept out";
  EXPECT_EQ(store.removeBans("nobody"), 0U);
  EXPECT_EQ(*readFile(folder.path() / "bans"), "# mine\nnick\tcy\t\t\tann\t\n");
  store.setModerator({"ann", "a@example.org", "one"});
  EXPECT_FALSE(store.removeModerator("bob"));
  EXPECT_TRUE(store.removeModerator("ANN"));
  EXPECT_TRUE(store.moderators().empty());
}

TEST(Options, CommandLine) {
  const std::vector<std::pair<std::vector<const char*>, std::string>> wrong = {
      {{"--port"}, "--port needs a value"},
      {{"--port", "65536"}, "a port is a number from 0 to 65535, not \"65536\""},
      {{"--port", "30x"}, "a port is a number from 0 to 65535, not \"30x\""},
      {{"--address", "localhost"}, "\"localhost\" is not a numeric address"},
      {{"--folder", ""}, "the folder's name is empty"},
      {{"--add-moderator", "bob"}, "--add-moderator needs a nickname and an e-mail address"},
      {{"--add-moderator", "bob", "a\tb"}, "that is no e-mail address"},
      {{"extra"}, "unknown option \"extra\""},
  };
  for (const auto& [arguments, fault] : wrong) {
    EXPECT_EQ(errorOf([&, &line = arguments] { parseCommandLine(line); }), fault);
  }
  const std::vector<const char*> right = {"--address", "::", "--folder", "d", "--port", "0"};
  const CommandLine line = parseCommandLine(right);
  EXPECT_EQ(line.options.address, "::");
  EXPECT_EQ(line.options.folder, "d");
  EXPECT_EQ(line.options.port, 0);
}

}  // namespace
}  // namespace kelvaron::server
