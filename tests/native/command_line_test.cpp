// Commands cut against a real disk.
#include "native/command_line.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>

#include "tests/support/temporary_folder.h"

namespace kelvaron::testing {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

/// A folder of programs and game files; "@" in texts stands for it.
class CommandLineTest : public ::testing::Test {
 protected:
  void SetUp() override {
    for (const char* name : {"zdoom.exe", "my games/zdoom.exe", "text editor"}) {
      make(name, fs::perms::owner_all);
    }
    for (const char* name :
         {"text", "doom2.wad", "my games/doom2.wad", "my  games/doom2.wad", "wads/one.wad",
          "wads/t\xC3\xBCr two.wad", "Doom - Wads/doom.wad", "Doom - Wads/Scythe - 2.wad",
          "Kelvaron +1/x", "-x", "$(touch made)"}) {
      make(name, fs::perms::owner_read);
    }
    ASSERT_EQ(::mkfifo((base / "pipe").c_str(), 0600), 0);
  }
  void make(const std::string& name, fs::perms permissions) const {
    fs::create_directories((base / name).parent_path());
    std::ofstream(base / name) << "x";
    fs::permissions(base / name, permissions);
  }
  std::string placed(std::string text) const {
    for (std::size_t at = 0; (at = text.find('@', at)) != std::string::npos;) {
      text.replace(at, 1, base.string());
    }
    return text;
  }

  TemporaryFolder folder;
  fs::path base = folder.path();
};

TEST_F(CommandLineTest, LocationsReachAsFarAsTheDiskSays) {
  struct Case {
    std::string command;
    std::string location;
    std::string problem;
    std::vector<std::string> arguments;
  };
  const std::vector<Case> cases = {
      {"", "", "was not found", {}},
      {" \r\n", "", "was not found", {}},
      {" -IWAD @/doom2.wad", "", "was not found", {"-IWAD", "@/doom2.wad"}},
      {"@/zdoom.exe", "@/zdoom.exe", "", {}},
      {"@\\ZDOOM.EXE  -host   2 \r\n", "@\\ZDOOM.EXE", "", {"-host", "2"}},
      {"@/MY games\\zdoom.exe -host 2", "@/MY games\\zdoom.exe", "", {"-host", "2"}},
      {"@/my games/doom.exe -host 2", "@/my games/doom.exe", "was not found", {"-host", "2"}},
      {"@/my games -host 2", "@/my games", "is a folder", {"-host", "2"}},
      {"@/text 5 -host 2", "@/text", "is not executable", {"5", "-host", "2"}},
      {"@/text editor -host 2", "@/text editor", "", {"-host", "2"}},
      {"@/pipe", "@/pipe", "is not a program", {}},
      {"@/zdoom.exe/", "@/zdoom.exe/", "was not found", {}},
      {"\"@/zdoom.exe\"", "\"@/zdoom.exe\"", "was not found", {}},
      {"@/zdoom.exe;id", "@/zdoom.exe;id", "was not found", {}},
      {"@/zdoom.exe\n", "@/zdoom.exe", "", {}},
      {"C:\\GAMES\\ZDOOM.EXE -host 2",
       "C:\\GAMES\\ZDOOM.EXE",
       "was not found: this system has no drives, only folders such as /home",
       {"-host", "2"}},
      {"@/zdoom.exe\0 -x"s, "@/zdoom.exe\0"s, "was not found", {"-x"}},
      {"@/zdoom.exe a\0b"s,
       "@/zdoom.exe",
       "was not started: an argument holds a character that no program can take",
       {"a\0b"s}},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.command);
    const CommandLine cut = tokenize(placed(each.command));
    EXPECT_EQ(cut.location, placed(each.location));
    EXPECT_EQ(startProblem(cut), each.problem);
    ASSERT_EQ(cut.arguments.size(), each.arguments.size());
    for (std::size_t i = 0; i < each.arguments.size(); ++i) {
      EXPECT_EQ(cut.arguments[i], placed(each.arguments[i]));
    }
  }
}

TEST_F(CommandLineTest, ArgumentsArePathsOrStayAsTheyAre) {
  struct Case {
    std::string text;
    std::vector<std::string> arguments;
  };
  const std::vector<Case> cases = {
      // Paths that are there.
      {"-iwad @/MY games\\DOOM2.WAD -nosfx", {"-iwad", "@/my games/doom2.wad", "-nosfx"}},
      {"-IWAD @/my  games\\doom2.wad", {"-IWAD", "@/my  games/doom2.wad"}},
      {"-File @/WADS\\ONE.WAD @/my games/doom2.wad @\\wads\\T\xDCR TWO.wad -fast",
       {"-File", "@/wads/one.wad", "@/my games/doom2.wad", "@/wads/t\xC3\xBCr two.wad", "-fast"}},
      {"-iwad @/doom2.wad two.wad a\\b", {"-iwad", "@/doom2.wad", "two.wad", "a\\b"}},
      {"-file @/wads\\..\\doom2.wad", {"-file", "@/wads/../doom2.wad"}},
      {"-file @/$(touch made)", {"-file", "@/$(touch made)"}},
      {"-record @/My Games\\kvdemo -host 3", {"-record", "@/my games/kvdemo", "-host", "3"}},
      {"-warp 07\r\n -record @/WADS\\my demo", {"-warp", "07", "-record", "@/wads/my demo"}},
      // Words like switches that belong to a path.
      {"-iwad @/Doom - Wads\\doom.wad -fast", {"-iwad", "@/Doom - Wads/doom.wad", "-fast"}},
      {"-file @/doom - wads\\SCYTHE - 2.WAD -nosfx",
       {"-file", "@/Doom - Wads/Scythe - 2.wad", "-nosfx"}},
      {"-record @/Kelvaron +1\\my demo -host 2",
       {"-record", "@/Kelvaron +1/my demo", "-host", "2"}},
      {"-record @/kvdemo -file @/wads\\one.wad",
       {"-record", "@/kvdemo", "-file", "@/wads/one.wad"}},
      // Paths that aren't.
      {"-file @/none - here.wad", {"-file", "@/none", "-", "here.wad"}},
      {"-file @/wads\\no such.wad -fast", {"-file", "@/wads/no", "such.wad", "-fast"}},
      {"-file none.wad other.wad", {"-file", "none.wad", "other.wad"}},
      {"-file @/wads", {"-file", "@/wads"}},
      {"-file -x ../x", {"-file", "-x", "../x"}},
      {"-iwad -file -record", {"-iwad", "-file", "-record"}},
      {"-record @/no\\where -record here", {"-record", "@/no/where", "-record", "here"}},
      // What other systems and other switches would give a meaning.
      {"'a b' \"c\" $(id) `id`; | & > x < y",
       {"'a", "b'", "\"c\"", "$(id)", "`id`;", "|", "&", ">", "x", "<", "y"}},
      {"+exec x.cfg +logfile @\\LOG -config ..\\c @x %x% * ~",
       {"+exec", "x.cfg", "+logfile", "@\\LOG", "-config", "..\\c", "@x", "%x%", "*", "~"}},
      {"a\nb \t \x01 -name M\xFCller \x80\x81",
       {"a\nb", "\t", "\x01", "-name", "M\xC3\xBCller", "\xE2\x82\xAC\xC2\x81"}},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.text);
    const CommandLine cut = tokenize(placed("@/zdoom.exe " + each.text));
    EXPECT_EQ(startProblem(cut), "");
    std::vector<std::string> expected;
    for (const std::string& argument : each.arguments) expected.push_back(placed(argument));
    EXPECT_EQ(cut.arguments, expected);
  }
}

TEST_F(CommandLineTest, LongTextsStayWhole) {
  // So many paths are no longer looked up, which shows in the capitals that the disk lacks.
  std::string command = placed("@/zdoom.exe -file");
  for (int word = 0; word < 20'000; ++word) command += placed(" @\\WADS\\ONE.WAD");
  const CommandLine cut = tokenize(command + " -fast " + std::string(1'000'000, 'x'));
  ASSERT_EQ(cut.arguments.size(), 20'003);
  EXPECT_EQ(cut.arguments[1], placed("@/wads/one.wad"));
  EXPECT_EQ(cut.arguments[20'000], placed("@/WADS/ONE.WAD"));
  EXPECT_EQ(cut.arguments[20'001], "-fast");
  EXPECT_EQ(cut.arguments[20'002], std::string(1'000'000, 'x'));
}

}  // namespace
}  // namespace kelvaron::testing
