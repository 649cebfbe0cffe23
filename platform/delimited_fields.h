// Text of fields parted by commas and line ends, as the files of the program's folder hold it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kelvaron {

/// The first `count` fields of a text; fewer where it ends sooner. Blanks in front of a field are
/// skipped. A field that begins with a double quote runs to the next one (commas and line ends
/// included), any other to the next comma or line end. An empty line is an empty field. A line ends
/// in CR LF, CR or LF.
std::vector<std::string> readFields(std::string_view text, std::size_t count);

}  // namespace kelvaron
