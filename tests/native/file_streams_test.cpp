#include "native/file_streams.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>

#include "platform/fault.h"
#include "tests/support/temporary_folder.h"

namespace kelvaron::testing {
namespace {

class Streams : public ::testing::Test {
 protected:
  std::string path(const std::string& name) { return (folder.path() / name).string(); }
  std::string content(const std::string& name) {
    std::ifstream file(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  int faultOf(const std::function<void()>& act) {
    try {
      act();
    } catch (const Fault& fault) {
      return fault.number();
    }
    return 0;
  }

  TemporaryFolder folder;
  DiskStreams streams{folder.path()};
};

TEST_F(Streams, ReadInBlocksAndOnlyFiles) {
  std::ofstream(path("Maps.WAD")) << "abcdefg";
  const auto file = streams.open(folder.path().string() + "\\maps.wad");
  EXPECT_EQ(file->length(), 7);
  std::filesystem::remove(path("Maps.WAD"));
  std::array<char, 4> block{};
  EXPECT_EQ(file->read(block), 4U);
  EXPECT_EQ(file->read(block), 3U);
  EXPECT_EQ(std::string(block.data(), 3), "efg");
  EXPECT_EQ(file->read(block), 0U);

  ASSERT_EQ(::mkfifo(path("pipe").c_str(), S_IRUSR | S_IWUSR), 0);
  std::ofstream(path("locked")) << "x";
  std::filesystem::permissions(path("locked"), std::filesystem::perms::none);
  const std::pair<std::string, int> cases[] = {
      {path("nothing"), 53}, {"", 53},          {"C:\\", 53},        {folder.path().string(), 75},
      {path("pipe"), 75},    {"/dev/zero", 75}, {path("locked"), 75}};
  for (const auto& [name, number] : cases) {
    if (name == path("locked") && ::geteuid() == 0) continue;  // nothing is locked for root
    EXPECT_EQ(faultOf([&, &wanted = name] { streams.open(wanted); }), number) << name;
  }
}

TEST_F(Streams, ReceivedFileHasANameOfItsOwnUntilItIsCommitted) {
  {
    const auto first = streams.receive("m.wad");
    const auto second = streams.receive("m.wad");
    first->write("first");
    second->write("second");
    EXPECT_EQ(content("received/m.wad.part"), "first");
    second->commit();
    EXPECT_EQ(content("received/m.wad"), "second");
  }
  EXPECT_EQ(content("received/m.wad.part"), "first");
  EXPECT_FALSE(std::filesystem::exists(path("received/m.wad.2.part")));
  struct stat status {};
  ASSERT_EQ(::stat(path("received/m.wad").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0111U, 0U) << "never a program";
}

TEST_F(Streams, LinkInTheFolderIsReplacedNotFollowed) {
  std::filesystem::create_directory(path("received"));
  std::ofstream(path("target")) << "precious";
  std::filesystem::create_symlink(path("target"), path("received/m"));
  std::filesystem::create_symlink(path("target"), path("received/m.part"));
  const auto file = streams.receive("m");
  file->write("new");
  file->commit();
  EXPECT_EQ(content("target"), "precious");
  EXPECT_EQ(content("received/m"), "new");
}

TEST_F(Streams, OnlyOneNameInTheFolder) {
  for (const std::string& name :
       {std::string(), std::string("."), std::string(".."), std::string("a/b"), std::string("/"),
        std::string("a\0b", 3), std::string(300, 'n')}) {
    EXPECT_EQ(faultOf([&] { streams.receive(name); }), 75) << name;
  }
}

TEST_F(Streams, FullDiskIsAFaultOfItsOwn) {
  // The one file of this system that is always full stands in for the disk.
  std::filesystem::create_directory(path("received"));
  const auto file = streams.receive("m");
  const int full = ::open("/dev/full", O_WRONLY | O_CLOEXEC);
  ASSERT_GE(full, 0);
  const auto target = std::filesystem::canonical(path("received/m.part"));
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code gone;
    if (std::filesystem::read_symlink(entry.path(), gone) != target) continue;
    ASSERT_GE(::dup2(full, std::stoi(entry.path().filename().string())), 0);
  }
  ::close(full);
  EXPECT_EQ(faultOf([&] { file->write("x"); }), 61);
}

}  // namespace
}  // namespace kelvaron::testing
