#include "sitedb/BuiltInCategories.h"

#include "base/errors.h"

namespace tb {

Text BuiltInCategoryName(TextView id) {
    if (id == "1") return "General";
    if (id == "2") return "Banking or Credit Card Spoof";
    throw Error(ErrorNumber::ObjectNotSet);
}

}  // namespace tb
