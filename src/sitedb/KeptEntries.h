// What an update would leave of the list, told before it is taken and without a second list.
#pragma once

#include "sitedb/DomainTable.h"

namespace tb {

// How many entries would be there after the changes of a reply: of those held, or of none of them with `anew`, which
// empties the list first. Exact when that is fewer than `enough`, else at least that.
std::int64_t CountKept(const DomainTable& held, bool anew, TextView changes, std::int64_t enough);

}  // namespace tb
