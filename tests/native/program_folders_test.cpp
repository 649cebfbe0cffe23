// Where an installed program and one that is carried along keep their files.
#include "native/program_folders.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "build_settings.h"
#include "tests/support/temporary_folder.h"

namespace kelvaron::testing {
namespace {

namespace fs = std::filesystem;

TEST(ProgramFolders, CarriedAlongOrInstalled) {
  TemporaryFolder folder;
  const fs::path program = folder.path() / "bin";
  const fs::path home = folder.path() / "home";
  fs::create_directories(program);

  const ProgramFolders carried = programFolders(program, "", home);
  EXPECT_EQ(carried.own, program);
  EXPECT_EQ(carried.installed, program);
  EXPECT_EQ(carried.engines, program / "engines");
  EXPECT_FALSE(fs::exists(home)) << "nothing is made where nothing is needed";

  // Also when it can be written to, as by an administrator.
  fs::create_directories(program / build::kDataFromPrograms);
  const ProgramFolders installed = programFolders(program, "", home);
  EXPECT_EQ(installed.own, home / ".local/share/kelvaron");
  EXPECT_EQ(installed.installed, folder.path() / "share/kelvaron");
  EXPECT_EQ(installed.problem, "");
  struct stat status {};
  ASSERT_EQ(::stat(installed.own.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0700U);

  const fs::path data = folder.path() / "data";
  EXPECT_EQ(programFolders(program, data, home).own, data / "kelvaron");
  EXPECT_EQ(programFolders(program, "relative", home).own, installed.own);
}

TEST(ProgramFolders, ProblemsAreSentences) {
  TemporaryFolder folder;
  const fs::path program = folder.path() / "bin";
  fs::create_directories(program / build::kDataFromPrograms);
  EXPECT_NE(programFolders(program, "", "").problem.find("no home folder"), std::string::npos);
  const ProgramFolders nowhere = programFolders(program, "", "/dev/null");
  EXPECT_EQ(nowhere.problem,
            "Kelvaron can not keep settings and files: the folder "
            "/dev/null/.local/share/kelvaron can not be written to (Not a directory).");
}

}  // namespace
}  // namespace kelvaron::testing
