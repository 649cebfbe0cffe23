// A stand-in for programs that are started: writes down, beside itself, what it was given, and does
// what "-print TEXT", "-sleep MILLISECONDS" and "-exit CODE" among it say.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "native/windows/system_headers.h"

int main() {
  int count = 0;
  wchar_t** words = ::CommandLineToArgvW(::GetCommandLineW(), &count);
  std::filesystem::path record = words[0];
  record += ".started";
  const auto utf8 = [](const wchar_t* word) {
    const std::u8string text = std::filesystem::path(word).u8string();
    return std::string(text.begin(), text.end());
  };
  {
    std::filesystem::path unfinished = record;
    unfinished += ".new";
    std::ofstream file(unfinished, std::ios::binary);
    for (int index = 1; index < count; ++index) file << utf8(words[index]) << '\n';
    file.close();
    std::error_code failed;
    std::filesystem::rename(unfinished, record, failed);
  }
  int code = 0;
  for (int index = 1; index + 1 < count; ++index) {
    const std::string word = utf8(words[index]);
    const std::string next = utf8(words[index + 1]);
    if (word == "-print") std::cout << next << std::endl;
    if (word == "-sleep") ::Sleep(static_cast<DWORD>(std::stoul(next)));
    if (word == "-exit") code = std::stoi(next);
  }
  return code;
}
