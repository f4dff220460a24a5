// Between the code page of Text (windows-1252) and Unicode, for the edges where names arrive wide.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "base/text.h"

namespace tb {

// Characters that the code page has not become "?".
Text FromWide(std::u16string_view wide);

// Every byte has a character; the five codes without a letter become control characters of the same number.
std::u16string ToWide(TextView text);

// A path for a line or a message.
Text PathText(const std::filesystem::path& path);

// A path from text of the code page.
std::filesystem::path TextPath(TextView text);

}  // namespace tb
