// Names found on a real disk: of files, in commands, of an information tool.
#include "native/disk_names.h"

#include <sys/stat.h>

#include <tuple>

#include "native/bare_name.h"
#include "native/command_line.h"
#include "native/posix/system_information.h"
#include "tests/native/native_test.h"

namespace kelvaron::testing {
namespace {

using namespace std::string_literals;
using Kind = DiskName::Kind;

class DiskNames : public DiskTest {};

TEST_F(DiskNames, AreFoundInAnyCase) {
  for (const std::string name : {"dooM2", "doOm2", "DOOM2", "doom2", "dOom2", "Doom2"}) {
    make("Wads/" + name + ".wad");
  }
  // The Greek letter is none of the code page.
  for (const char* name : {"stra\u00DFe/\u00E9t\u00E9", "\u20AC", "\u03B1"}) {
    make("Wads/"s + name + ".wad");
  }
  make("run.exe", "x", fs::perms::owner_all);
  fs::create_symlink(base / "Wads", base / "link");
  fs::create_symlink(base / "gone", base / "broken");
  ASSERT_EQ(::mkfifo((base / "fifo").c_str(), 0600), 0);
  const std::vector<std::tuple<std::string, std::string, Kind>> cases = {
      {"Wads/doom2.wad", "Wads/doom2.wad", Kind::file},
      {"WADS\\DOOM2.Wad", "Wads/DOOM2.wad", Kind::file},
      {"wads//..\\.\\LINK/doom2.WAD", "Wads/.././link/DOOM2.wad", Kind::file},
      {"wads/STRA\337E/\311T\311.WAD", "Wads/stra\u00DFe/\u00E9t\u00E9.wad", Kind::file},
      {"wads/\x80.WAD", "Wads/\u20AC.wad", Kind::file},
      {"wads/?.wad", "", Kind::other},
      {"Run.EXE", "run.exe", Kind::program},
      {"run.exe/", "", Kind::other},
      {"RUN.EXE\\x", "", Kind::other},
      {"LINK\\", "link/", Kind::folder},
      {"broken", "", Kind::other},
      {"BROKEN", "", Kind::other},
      {"FIFO", "fifo", Kind::other},
      {"none/doom2.wad", "", Kind::other},
      {std::string(300, 'x'), "", Kind::other},
      {std::string(1'000'000, '/') + "run.exe", "", Kind::other},
      {"run.exe\0"s, "", Kind::other},
  };
  const fs::path before = fs::current_path();
  fs::current_path(base);
  for (const auto& [typed, found, kind] : cases) {
    for (const std::string& above : {""s, base.string() + '/'}) {
      SCOPED_TRACE(above + typed.substr(0, 100));
      const auto name = findOnDisk(above + typed);
      EXPECT_EQ(name, found.empty() ? std::nullopt : std::optional(DiskName{above + found, kind}));
    }
  }
  fs::current_path(before);
  EXPECT_EQ(findOnDisk(""), std::nullopt);
  EXPECT_EQ(findOnDisk("/"), (DiskName{"/", Kind::folder}));
}

TEST_F(DiskNames, PathsThatWouldReadTooManyFoldersAreNotFound) {
  make("Wads/doom2.wad");
  std::string path = base.string();
  for (int turn = 0; turn < 30; ++turn) path += "/WADS/..";
  EXPECT_TRUE(findOnDisk(path + "/Wads/doom2.wad"));
  for (int turn = 0; turn < 10; ++turn) path += "/WADS/..";
  EXPECT_FALSE(findOnDisk(path + "/Wads/doom2.wad"));
}

TEST_F(DiskNames, BareOnesAndDrives) {
  for (const char* good : {"boom", "Boom 2", "a.b", "\xFC"}) EXPECT_TRUE(isBareName(good)) << good;
  for (const char* bad : {"", ".", "..", ".hidden", "a/b", "..\\b", "c:b", "a\nb", "a\x7F"}) {
    EXPECT_FALSE(isBareName(bad)) << bad;
  }
  for (const char* drive : {"C:\\GAMES", "c:/x", "Z:"}) EXPECT_TRUE(namesDrive(drive)) << drive;
  for (const char* none : {"", "C", "1:\\x", "\\C:\\x", "C:x", "\xC4:\\x"}) {
    EXPECT_FALSE(namesDrive(none)) << none;
  }
}

TEST_F(DiskNames, TheInformationToolThatIsInstalled) {
  const auto place = [&](const char* name, fs::perms permissions) {
    make(name, "#!/bin/sh\n", permissions);
    return (base / name).string();
  };
  const auto tool = [&](const std::string& searchPath) -> std::string {
    SystemInformation information(searchPath);
    const auto key = information.RegOpenKeyExA(registry_key::HKEY_LOCAL_MACHINE,
                                               R"(SOFTWARE\Microsoft\Shared Tools\MSINFO)");
    if (!key) return "no key";
    const auto value = information.RegQueryValueExA(*key, "Path", 1024);
    information.RegCloseKey(*key);
    return value ? std::to_string(value->type) + " " + value->bytes : "none";
  };
  const std::string path = placed("@/one::@/two");
  EXPECT_EQ(tool(""), "none");
  place("one/hardinfo2", fs::perms::owner_read);
  fs::create_directories(base / "two" / "hardinfo");
  EXPECT_EQ(tool(path), "none") << "neither a folder nor a file that can't be run";
  const std::string monitor = place("one/gnome-system-monitor", fs::perms::owner_all);
  EXPECT_EQ(tool(path), "1 " + monitor);
  const std::string better = place("two/kinfocenter", fs::perms::owner_all);
  EXPECT_EQ(tool(path), "1 " + better);
  SystemInformation information(path);
  EXPECT_FALSE(information.RegOpenKeyExA(registry_key::HKEY_LOCAL_MACHINE,
                                         R"(SOFTWARE\Microsoft\Shared Tools Location)"));
  EXPECT_FALSE(information.RegQueryValueExA(1, "PATH", better.size() - 1));
  EXPECT_TRUE(information.fileExists(better));
  EXPECT_FALSE(information.fileExists(base.string()));
}

class CommandLineTest : public DiskTest {
 protected:
  void SetUp() override {
    for (const char* name : {"zdoom.exe", "my games/zdoom.exe", "text editor"}) {
      make(name, "x", fs::perms::owner_all);
    }
    for (const char* name :
         {"text", "doom2.wad", "my games/doom2.wad", "my  games/doom2.wad", "wads/one.wad",
          "wads/t\u00FCr two.wad", "Doom - Wads/Scythe - 2.wad", "Kelvaron +1/x", "-x"}) {
      make(name);
    }
    ASSERT_EQ(::mkfifo((base / "pipe").c_str(), 0600), 0);
  }
  static std::string commas(const std::vector<std::string>& words) {
    std::string joined;
    for (const std::string& word : words) joined += (joined.empty() ? "" : ",") + word;
    return joined;
  }
};

TEST_F(CommandLineTest, LocationsReachAsFarAsTheDiskSays) {
  const std::tuple<std::string, const char*, std::string, std::string> cases[] = {
      {" \r\n", "", "was not found", ""},
      {" -IWAD @/doom2.wad", "", "was not found", "-IWAD,@/doom2.wad"},
      {"@\\ZDOOM.EXE  -host   2 \r\n", "@\\ZDOOM.EXE", "", "-host,2"},
      {"@/MY games\\zdoom.exe -host 2", "@/MY games\\zdoom.exe", "", "-host,2"},
      {"@/my games/doom.exe -host 2", "@/my games/doom.exe", "was not found", "-host,2"},
      {"@/my games -host 2", "@/my games", "is a folder", "-host,2"},
      {"@/text 5 -host 2", "@/text", "is not executable", "5,-host,2"},
      {"@/text editor -host 2", "@/text editor", "", "-host,2"},
      {"@/pipe", "@/pipe", "is not a program", ""},
      {"\"@/zdoom.exe\"", "\"@/zdoom.exe\"", "was not found", ""},
      {"C:\\ZDOOM.EXE -host 2", "C:\\ZDOOM.EXE",
       "was not found: this system has no drives, only folders such as /home", "-host,2"},
      {"@/zdoom.exe a\0b"s, "@/zdoom.exe",
       "was not started: an argument holds a character that no program can take", "a\0b"s},
  };
  for (const auto& [command, location, problem, arguments] : cases) {
    SCOPED_TRACE(command);
    const CommandLine cut = tokenize(placed(command));
    EXPECT_EQ(cut.location, placed(location));
    EXPECT_EQ(startProblem(cut), problem);
    EXPECT_EQ(commas(cut.arguments), placed(arguments));
  }
}

TEST_F(CommandLineTest, ArgumentsArePathsOrStayAsTheyAre) {
  const std::pair<const char*, const char*> cases[] = {
      // Paths that are there.
      {"-iwad @/MY games\\DOOM2.WAD -nosfx", "-iwad,@/my games/doom2.wad,-nosfx"},
      {"-IWAD @/my  games\\doom2.wad", "-IWAD,@/my  games/doom2.wad"},
      {"-File @/WADS\\ONE.WAD @/my games/doom2.wad @\\wads\\T\xDCR TWO.wad -fast",
       "-File,@/wads/one.wad,@/my games/doom2.wad,@/wads/t\u00FCr two.wad,-fast"},
      {"-iwad @/doom2.wad two.wad a\\b", "-iwad,@/doom2.wad,two.wad,a\\b"},
      {"-record @/My Games\\kvdemo -host 3", "-record,@/my games/kvdemo,-host,3"},
      {"-warp 07\r\n -record @/WADS\\my demo", "-warp,07,-record,@/wads/my demo"},
      // Words like switches that belong to a path.
      {"-file @/doom - wads\\SCYTHE - 2.WAD -nosfx", "-file,@/Doom - Wads/Scythe - 2.wad,-nosfx"},
      {"-record @/Kelvaron +1\\my demo -host 2", "-record,@/Kelvaron +1/my demo,-host,2"},
      {"-record @/kvdemo -file @/wads\\one.wad", "-record,@/kvdemo,-file,@/wads/one.wad"},
      // Paths that aren't.
      {"-file @/none - here.wad", "-file,@/none,-,here.wad"},
      {"-file @/wads\\no such.wad -fast", "-file,@/wads/no,such.wad,-fast"},
      {"-file @/wads", "-file,@/wads"},
      {"-file -x ../x", "-file,-x,../x"},
      {"-iwad -file -record", "-iwad,-file,-record"},
      {"-record @/no\\where -record here", "-record,@/no/where,-record,here"},
      // What other systems and other switches would give a meaning.
      {"'a b' \"c\" $(id) `id`; | & > x < y", "'a,b',\"c\",$(id),`id`;,|,&,>,x,<,y"},
      {"+exec x.cfg +logfile @\\LOG -config ..\\c @x %x% * ~",
       "+exec,x.cfg,+logfile,@\\LOG,-config,..\\c,@x,%x%,*,~"},
      {"a\nb \t \x01 -name M\xFCller \x80\x81", "a\nb,\t,\x01,-name,M\u00FCller,\u20AC\u0081"},
  };
  for (const auto& [text, arguments] : cases) {
    SCOPED_TRACE(text);
    const CommandLine cut = tokenize(placed("@/zdoom.exe "s + text));
    EXPECT_EQ(startProblem(cut), "");
    EXPECT_EQ(commas(cut.arguments), placed(arguments));
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
