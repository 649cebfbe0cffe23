#include "native/file_fault.h"

#include <system_error>

#include "base/code_page.h"
#include "native/disk_file.h"
#include "platform/fault.h"

namespace kelvaron {

void throwFileFault(const std::string& name, const char* what, int errnoValue) {
  throw Fault(meansDiskFull(errnoValue) ? fault_number::kDiskFull : fault_number::kPathAccess,
              "The file " + name + " cannot be " + what + ": " +
                  fromUtf8(std::generic_category().message(errnoValue)));
}

}  // namespace kelvaron
