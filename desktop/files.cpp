#include "desktop/files.h"

#include <algorithm>
#include <system_error>

#include "desktop/bare_name.h"
#include "platform/fault.h"
#include "platform/text.h"

namespace kelvaron {
namespace {

constexpr int kPathFault = 75;

}  // namespace

void ProgramFiles::MkDir(const std::string& name) {
  const bool made = isBareName(name) && !findByName(programFolder_, name) && [&] {
    std::error_code error;
    return std::filesystem::create_directory(programFolder_ / toUtf8(name), error);
  }();
  if (!made) throw Fault(kPathFault, "The folder " + name + " cannot be made");
}

}  // namespace kelvaron
