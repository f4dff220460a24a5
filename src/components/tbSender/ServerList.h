// The servers of a service, in the order in which they are asked, and the addresses on them.
#pragma once

#include "components/tbXML/Element.h"
#include "platform/Random.h"

namespace tb {

// Base addresses of the usable servers of an element, without trailing "/"; tbSender.h tells which and in what order.
// Empty for no element.
std::vector<Text> DrawServers(const ElementPtr& server, Random& random);

// The page below the base address, with exactly one "/" between. Bytes of the page that no address may hold are written
// as %HH, so that no page can end the line that it stands in; what is written so already stays.
Text JoinAddress(TextView base, TextView page);

// Host and port of an address that DrawServers gave.
Text HostOf(TextView address);

// Visible ASCII without `others` as it is, every other byte as %HH.
Text PercentEncoded(TextView text, TextView others);

}  // namespace tb
