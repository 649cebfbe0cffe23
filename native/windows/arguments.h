// Arguments as one text, which programs of this system cut themselves.
#pragma once

#include <string>

namespace kelvaron {

/// An argument so that CommandLineToArgvW, and the start of every C program, reads it back as one:
/// in quotes where it is empty or holds a blank, a tab or a quote; a quote behind a backslash, and
/// backslashes in front of a quote doubled.
std::wstring quoted(const std::wstring& argument);

}  // namespace kelvaron
