#include "native/child_process.h"

#include <io.h>

#include <system_error>
#include <vector>

#include "base/code_page.h"
#include "native/paths.h"
#include "native/windows/arguments.h"
#include "native/windows/system_headers.h"

namespace kelvaron {
namespace {

class Handle : NonCopyable {
 public:
  explicit Handle(HANDLE handle) : handle_(handle) {}
  ~Handle() {
    if (handle_ != nullptr && handle_ != INVALID_HANDLE_VALUE) ::CloseHandle(handle_);
  }
  HANDLE get() const { return handle_; }

 private:
  HANDLE handle_;
};

/// Says that these handles and no others go to a program that is started.
class Inherited : NonCopyable {
 public:
  explicit Inherited(std::vector<HANDLE> handles) : handles_(std::move(handles)) {
    SIZE_T room = 0;
    ::InitializeProcThreadAttributeList(nullptr, 1, 0, &room);
    bytes_.resize(room);
    made_ = ::InitializeProcThreadAttributeList(get(), 1, 0, &room) != 0;
    good_ = made_ && ::UpdateProcThreadAttribute(get(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST,
                                                 handles_.data(), handles_.size() * sizeof(HANDLE),
                                                 nullptr, nullptr) != 0;
  }
  ~Inherited() {
    if (made_) ::DeleteProcThreadAttributeList(get());
  }
  bool good() const { return good_; }
  LPPROC_THREAD_ATTRIBUTE_LIST get() {
    return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(bytes_.data());
  }

 private:
  std::vector<HANDLE> handles_;
  std::vector<char> bytes_;
  bool made_ = false;
  bool good_ = false;
};

HANDLE openNothing() {
  SECURITY_ATTRIBUTES inherits{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  return ::CreateFileW(L"NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherits,
                       OPEN_EXISTING, 0, nullptr);
}

/// A handle of a program's own for what it prints.
HANDLE outputFor(int descriptor) {
  const auto own = reinterpret_cast<HANDLE>(::_get_osfhandle(descriptor));
  HANDLE copy = nullptr;
  const BOOL made = ::DuplicateHandle(::GetCurrentProcess(), own, ::GetCurrentProcess(), &copy, 0,
                                      TRUE, DUPLICATE_SAME_ACCESS);
  return made != 0 ? copy : nullptr;
}

std::string startProblem(DWORD error) {
  switch (error) {
    case ERROR_BAD_EXE_FORMAT:
    case ERROR_EXE_MACHINE_TYPE_MISMATCH:
      return "could not be read as a program";
    case ERROR_FILENAME_EXCED_RANGE:
      return "was not started: the command is too long";
    default:
      return "could not be started: " +
             fromUtf8(std::system_category().message(static_cast<int>(error)));
  }
}

class WindowsChild final : public ChildProcess {
 public:
  explicit WindowsChild(HANDLE process) : process_(process) {}

  std::optional<Ending> ended() override {
    DWORD code = 0;
    if (::WaitForSingleObject(process_.get(), 0) == WAIT_TIMEOUT) return std::nullopt;
    if (::GetExitCodeProcess(process_.get(), &code) == 0) return Ending{};
    // What the system ends has the reason as its code.
    constexpr DWORD kFirstReason = 0xC0000000U;
    if (code >= kFirstReason) {
      return Ending{std::nullopt,
                    "was ended by " + (code == EXCEPTION_ACCESS_VIOLATION
                                           ? "an access violation"
                                           : "the system, reason " + std::to_string(code))};
    }
    return Ending{static_cast<int>(code),
                  code == 0 ? "" : "ended with the error " + std::to_string(code)};
  }

  // The system knows no message that every program passes over.
  void leave() override {}

 private:
  Handle process_;
};

}  // namespace

ChildProcess::Started ChildProcess::start(const std::string& path,
                                          const std::vector<std::string>& arguments, int output,
                                          WindowStyle style) {
  // The system's own limit of a command.
  constexpr std::size_t kLongest = 32'767;
  const std::wstring program = std::filesystem::absolute(systemPath(path)).native();
  std::wstring command = quoted(program);
  for (const std::string& argument : arguments)
    command += L' ' + quoted(systemPath(argument).native());
  if (command.size() >= kLongest) return {nullptr, startProblem(ERROR_FILENAME_EXCED_RANGE)};

  const Handle input(openNothing());
  const Handle printed(outputFor(output));
  if (input.get() == INVALID_HANDLE_VALUE || printed.get() == nullptr) {
    return {nullptr, startProblem(ERROR_TOO_MANY_OPEN_FILES)};
  }
  Inherited inherited({input.get(), printed.get()});
  STARTUPINFOEXW start{};
  start.StartupInfo.cb = sizeof(start);
  start.StartupInfo.dwFlags = STARTF_USESHOWWINDOW | STARTF_USESTDHANDLES;
  start.StartupInfo.wShowWindow = static_cast<WORD>(style);  // its numbers are the system's
  start.StartupInfo.hStdInput = input.get();
  start.StartupInfo.hStdOutput = printed.get();
  start.StartupInfo.hStdError = printed.get();
  start.lpAttributeList = inherited.get();
  PROCESS_INFORMATION made{};
  const DWORD flags = CREATE_NO_WINDOW | CREATE_UNICODE_ENVIRONMENT | CREATE_NEW_PROCESS_GROUP |
                      EXTENDED_STARTUPINFO_PRESENT;
  if (!inherited.good() ||
      ::CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, TRUE, flags, nullptr,
                       nullptr, &start.StartupInfo, &made) == 0) {
    return {nullptr, startProblem(::GetLastError())};
  }
  ::CloseHandle(made.hThread);
  return {std::make_unique<WindowsChild>(made.hProcess), {}};
}

}  // namespace kelvaron
