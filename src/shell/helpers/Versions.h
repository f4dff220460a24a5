// Version numbers, and dates as web servers write them.
#pragma once

#include "base/date.h"
#include "shell/helpers/App.h"

namespace tb {

// "major.minor.revision" of the running program.
inline Text GetAppVersion(const App& app) { return app.Product.Version; }

// True when version `a` is newer than `b`, or, with `orEqual`, the same. Versions are up to three numbers joined by
// points; a missing or empty one counts as 0, a fourth is ignored. The first two count as one number, first * 65536 +
// second, so 1.65536 is 2.0. Raises 13 for a part that is no number and 6 for a first part from 32768 on.
bool IsVersionNewerThan(TextView a, TextView b, bool orEqual);

// The moment of a Last-Modified header, "Wdy, DD Mon YYYY HH:MM:SS" by fixed columns. The zone is not converted: the
// figures are taken as they stand. Raises 13 for a text of another form.
Date ParseHttpDate(TextView text);

}  // namespace tb
