#include "native/socket_error.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>

#include "native/socket_headers.h"

namespace kelvaron {
namespace {

struct Row {
  int system;
  int number;
  const char* text;
};

constexpr std::array kSystemErrors{
    Row{EPERM, 10013, "The system does not permit this connection"},
    Row{EACCES, 10013, "Permission denied"},
    Row{EINVAL, 10022, "The address or port is not valid"},
    Row{EMFILE, 10024, "Too many connections are open"},
    Row{ENFILE, 10024, "Too many files are open on this machine"},
    Row{EAFNOSUPPORT, 10047, "This machine does not support that kind of address"},
    Row{EADDRINUSE, 10048, "The port is already in use"},
    Row{EADDRNOTAVAIL, 10049, "The address is not available"},
    Row{ENETDOWN, 10050, "The network is down"},
    Row{ENETUNREACH, 10051, "The network cannot be reached"},
    Row{ENETRESET, 10052, "The network dropped the connection"},
    Row{ECONNABORTED, 10053, "The connection was aborted"},
    Row{EPIPE, 10053, "The connection was aborted"},
    Row{ECONNRESET, 10054, "The connection was reset by the other side"},
    Row{ENOBUFS, 10055, "The system has no room for network data"},
    Row{ENOMEM, 10055, "The system has no memory for the connection"},
    Row{ETIMEDOUT, 10060, "The connection timed out"},
    Row{ECONNREFUSED, 10061, "The connection was refused"},
#ifdef EHOSTDOWN
    Row{EHOSTDOWN, 10064, "The host is down"},
#endif
    Row{EHOSTUNREACH, 10065, "The host cannot be reached"},
};

constexpr std::array kLookUpErrors {
  Row{EAI_NONAME, 11001, "The host was not found"},
      Row{EAI_AGAIN, 11002, "The name server did not answer"},
      Row{EAI_FAIL, 11003, "The name server could not look the host up"},
      Row{EAI_MEMORY, 10055, "The system has no memory for the look-up"},
#if defined(EAI_NODATA) && EAI_NODATA != EAI_NONAME
      Row{EAI_NODATA, 11004, "The host has no address"},
#endif
};

// What says that errno has the reason; a system without it says so itself.
#ifdef EAI_SYSTEM
constexpr int kErrnoSays = EAI_SYSTEM;
#else
constexpr int kErrnoSays = 0;
#endif

#ifdef _WIN32
std::string lookUpWords(int result) { return std::system_category().message(result); }
#else
std::string lookUpWords(int result) { return ::gai_strerror(result); }
#endif

template <std::size_t kSize>
const Row* find(const std::array<Row, kSize>& rows, int system) {
  const auto found =
      std::find_if(rows.begin(), rows.end(), [&](const Row& row) { return row.system == system; });
  return found == rows.end() ? nullptr : &*found;
}

}  // namespace

SocketError systemSocketError(int errnoValue) {
  if (const Row* row = find(kSystemErrors, errnoValue)) return {row->number, row->text};
  return {errnoValue, std::generic_category().message(errnoValue)};
}

SocketError lookUpError(int result, int errnoValue) {
  if (result == kErrnoSays) return systemSocketError(errnoValue);
  if (const Row* row = find(kLookUpErrors, result)) return {row->number, row->text};
  return {11003, lookUpWords(result)};
}

}  // namespace kelvaron
