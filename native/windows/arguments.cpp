#include "native/windows/arguments.h"

namespace kelvaron {

std::wstring quoted(const std::wstring& argument) {
  if (!argument.empty() && argument.find_first_of(L" \t\n\v\"") == std::wstring::npos) {
    return argument;
  }
  std::wstring text = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t character : argument) {
    if (character == L'\\') {
      ++backslashes;
    } else {
      if (character == L'"') text.append(backslashes + 1, L'\\');
      backslashes = 0;
    }
    text += character;
  }
  text.append(backslashes, L'\\');
  return text + L'"';
}

}  // namespace kelvaron
