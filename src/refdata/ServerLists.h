// Server elements: lists of the servers of one web service, as components/tbSender/Sender.h takes them.
#pragma once

#include <cstdint>
#include <vector>

#include "refdata/ServiceAccess.h"

namespace tb {

// An element "ELEMENT" with the attribute `Name`: one server `Single`, unless it is empty, then the servers 1 to
// `Count` of `Template`, unless that is empty, with the number in the place of every `Placeholder`. Each has the WEIGHT
// 100 / Count and is ACTIVE. Error 11 when a server is to be made and Count is 0.
ElementPtr MakeServerElement(std::int16_t Count, const Text& Name, const Text& Template, const Text& Single,
                             const Text& Placeholder);

// The servers that every copy of the program knows by itself: ten of the deployment's template.
ElementPtr BuiltInServers(const App& app);

class ServerLists {
public:
    explicit ServerLists(ServiceAccess access) : m_Access(std::move(access)) {}

    // The base URLs of the active servers (ACTIVE is exactly "Y") of the element `Name` in the global `Section`, in
    // random order; `Default` alone without such an element; one empty text when there is nothing to be had. True when
    // the first one is not empty. A missing global is one line of level 0.
    bool MakeServersArray(const Text& Section, const Text& Name, const Text& Default,
                          std::vector<Text>& Result) noexcept;

    // False when the system knows that it has no network.
    bool IsOnline() noexcept;

private:
    void Shuffle(std::vector<Text>& servers) const;

    ServiceAccess m_Access;
};

}  // namespace tb
