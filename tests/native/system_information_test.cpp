// The search for an information tool.
#include "native/system_information.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "tests/support/temporary_folder.h"

namespace kelvaron::testing {
namespace {

TEST(SystemInformation, TheToolThatIsInstalled) {
  const TemporaryFolder folder;
  const auto place = [&](const char* sub, const char* name, bool executable) {
    std::filesystem::create_directories(folder.path() / sub);
    const auto file = folder.path() / sub / name;
    std::ofstream(file) << "#!/bin/sh\n";
    if (executable) std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    return file.string();
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
  const std::string path =
      (folder.path() / "one").string() + "::" + (folder.path() / "two").string();
  EXPECT_EQ(tool(path), "none");
  EXPECT_EQ(tool(""), "none");
  place("one", "hardinfo2", false);
  std::filesystem::create_directories(folder.path() / "two" / "hardinfo");
  EXPECT_EQ(tool(path), "none") << "neither a file nor a folder that can't be run";
  const std::string monitor = place("one", "gnome-system-monitor", true);
  EXPECT_EQ(tool(path), "1 " + monitor);
  const std::string better = place("two", "kinfocenter", true);
  EXPECT_EQ(tool(path), "1 " + better);
  SystemInformation information(path);
  EXPECT_FALSE(information.RegOpenKeyExA(registry_key::HKEY_LOCAL_MACHINE,
                                         R"(SOFTWARE\Microsoft\Shared Tools Location)"));
  EXPECT_FALSE(information.RegQueryValueExA(1, "PATH", better.size() - 1));
  EXPECT_TRUE(information.fileExists(better));
  EXPECT_FALSE(information.fileExists(folder.path().string()));
}

}  // namespace
}  // namespace kelvaron::testing
