#include "components/tbSender/ServerList.h"

#include <algorithm>

#include "base/errors.h"
#include "base/numbers.h"

namespace tb {

namespace {

// Beyond it a weight says no more, and sums of such weights stay exact enough.
constexpr double HighestWeight = 1e9;

struct Candidate {
    Text Address;
    double Weight = 0;
};

double WeightOf(const Element& server) {
    const double weight = TrapOr(
        0.0, [&] { return ToDouble(server.FindAttributeValue("WEIGHT")); }, [](const RuntimeError&) { /* a spare */ });
    return std::clamp(weight, 0.0, HighestWeight);
}

bool IsVisible(char one) { return one > ' ' && one < '\x7f'; }

bool IsHostCharacter(char one) {
    const char lower = LowerCase(one);
    return (lower >= 'a' && lower <= 'z') || (one >= '0' && one <= '9') ||
           TextView("-._:[]").find(one) != TextView::npos;
}

// Behind "http://" or "https://"; npos for any other beginning.
size_t HostStart(TextView address) {
    for (const TextView scheme : {"http://", "https://"}) {
        if (LowerCase(Left(address, scheme.size())) == scheme) return scheme.size();
    }
    return TextView::npos;
}

bool IsUsable(TextView address) {
    if (HostStart(address) == TextView::npos || !std::all_of(address.begin(), address.end(), IsVisible)) return false;
    if (address.find_first_of("?#") != TextView::npos) return false;
    const Text host = HostOf(address);
    return !host.empty() && std::all_of(host.begin(), host.end(), IsHostCharacter);
}

// By weight; when no weight is left, all alike. `random` is from 0 to below 1.
size_t Draw(const std::vector<Candidate>& candidates, double random) {
    double sum = 0;
    for (const Candidate& candidate : candidates) sum += candidate.Weight;
    const bool isEven = sum <= 0;
    if (isEven) sum = static_cast<double>(candidates.size());
    double left = random * sum;
    // Rounding may carry it past the end: then it is the last one that has a weight.
    size_t drawn = 0;
    for (size_t index = 0; index < candidates.size(); ++index) {
        const double weight = isEven ? 1 : candidates[index].Weight;
        if (weight <= 0) continue;
        drawn = index;
        if (left < weight) break;
        left -= weight;
    }
    return drawn;
}

}  // namespace

std::vector<Text> DrawServers(const ElementPtr& server, Random& random) {
    std::vector<Candidate> candidates;
    if (server == nullptr) return {};
    for (const ElementPtr& child : *server) {
        if (LowerCase(child->Name()) != "server" || child->FindAttributeValue("ACTIVE") != "Y") continue;
        const TextView address = Trim(child->Body());
        if (IsUsable(address)) candidates.push_back({Text(WithoutTrailingSlashes(address)), WeightOf(*child)});
    }
    std::vector<Text> order;
    while (!candidates.empty()) {
        const size_t drawn = Draw(candidates, random.Next());
        order.push_back(std::move(candidates[drawn].Address));
        candidates.erase(candidates.begin() + static_cast<std::ptrdiff_t>(drawn));
    }
    return order;
}

Text JoinAddress(TextView base, TextView page) {
    while (page.starts_with("/")) page.remove_prefix(1);
    Text address(base);
    address += '/';
    address += PercentEncoded(page, "\"#<>\\^`{|}");
    return address;
}

// Behind one of the two schemes, where UrlAuthority would take any.
Text HostOf(TextView address) {
    const TextView behind = address.substr(HostStart(address));
    return Text(behind.substr(0, behind.find('/')));
}

Text PercentEncoded(TextView text, TextView others) {
    Text encoded;
    for (const char one : text) {
        if (IsVisible(one) && others.find(one) == TextView::npos) {
            encoded += one;
        } else {
            encoded += '%';
            encoded += ToHex(static_cast<unsigned char>(one), 2);
        }
    }
    return encoded;
}

}  // namespace tb
