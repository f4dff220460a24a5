// What is decided about a request by its head alone.
#pragma once

#include <httplib.h>

#include <optional>

#include "service/web/Page.h"

namespace tb {

const Page* FindPage(const Pages& pages, const Text& path);

// A reply that turns the request down: an unknown page (404), a method that the page does not take (405, with the
// header "Allow" in `allow`), a body without a proper length (400, 411), too long for the page (413), or in a form that
// no client of ours sends (415). Nothing for a request that its page may answer.
std::optional<Reply> Refuse(const Pages& pages, const httplib::Request& request, Text& allow);

// True when the request announces a body.
bool HasBody(const httplib::Request& request);

}  // namespace tb
