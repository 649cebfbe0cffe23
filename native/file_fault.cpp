#include "native/file_fault.h"

#include <cerrno>
#include <system_error>

#include "base/code_page.h"
#include "platform/fault.h"

namespace kelvaron {

void throwFileFault(const std::string& name, const char* what, int errnoValue) {
  const bool full = errnoValue == ENOSPC || errnoValue == EDQUOT;
  throw Fault(full ? fault_number::kDiskFull : fault_number::kPathAccess,
              "The file " + name + " cannot be " + what + ": " +
                  fromUtf8(std::generic_category().message(errnoValue)));
}

}  // namespace kelvaron
