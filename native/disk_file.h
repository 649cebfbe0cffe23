// Files on the disk, in the system's own calls. Where one fails, errno says why.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string_view>

#include "native/descriptor.h"

namespace kelvaron {

void closeFile(int number);

/// An open file, pipe or device.
using FileDescriptor = Descriptor<closeFile>;

/// Opens what is there, without waiting for whoever writes to it. No started program inherits it.
FileDescriptor openToRead(const std::filesystem::path& path);
/// Makes a file that wasn't there, to be written to; EEXIST when something has its name.
FileDescriptor createNew(const std::filesystem::path& path);

/// A new file in the folder of another one, for its user alone, to take its place.
struct FileBeside {
  FileDescriptor file;
  std::filesystem::path path;
};
FileBeside createBeside(const std::filesystem::path& target);
/// Gives a file the rights of the one whose place it takes, else those that a new one gets. Zero,
/// or -1.
int giveRightsOf(int file, const std::filesystem::path& target);

/// A file without a name in the folder for temporary files, above the three descriptors that
/// programs know.
FileDescriptor createNameless();

/// -1 on failure.
std::int64_t lengthOf(int file);
/// How many bytes came, fewer than asked for at the end of the file alone; -1 on failure.
std::ptrdiff_t readFully(int file, std::span<char> bytes);
/// The last bytes of a file, as many as there is room for, whoever has read or written it up to
/// where; none of what is no file. How many, or -1.
std::ptrdiff_t readEnd(int file, std::span<char> bytes);
/// Zero when all bytes went, else -1.
int writeAll(int file, std::string_view bytes);
/// Waits until what was written is on the disk. Zero, or -1.
int writeToDisk(int file);

/// Whether an errno value says that the disk, or the user's share of it, is full.
bool meansDiskFull(int errnoValue);

/// Whether this user may make files in a folder; errno says why not.
bool canWriteTo(const std::filesystem::path& folder);
/// Makes a folder, and those above it, for the user alone where the system can. Whether it is
/// there.
bool makePrivateFolder(const std::filesystem::path& folder);

}  // namespace kelvaron
