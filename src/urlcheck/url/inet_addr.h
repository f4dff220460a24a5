// IPv4 addresses in all the written forms that browsers take.
#pragma once

#include <cstdint>
#include <optional>

#include "base/text.h"

namespace tb {

// An address, first part in the highest byte.
using IPv4 = std::uint32_t;

// One to four parts joined by points, each decimal, octal (leading 0) or hexadecimal (leading 0x). All parts but the
// last are one byte; the last fills the rest. The first white space (bytes 09 to 0D and 20) ends the address, whatever
// stands behind it, as in the system's own function. Nothing for any other text: white space or nothing where a part is
// due, a part beyond its range, and for 255.255.255.255 in every form, whose value stands for "no address".
std::optional<IPv4> inet_addr(TextView text);

// Four decimal parts.
Text inet_ntoa(IPv4 address);

}  // namespace tb
