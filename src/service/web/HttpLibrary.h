// The HTTP library, included in this one place.
#pragma once

#include <httplib.h>
