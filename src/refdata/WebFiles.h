// Data files that are kept current with a copy on web servers.
#pragma once

#include <optional>

#include "refdata/ServiceAccess.h"

namespace tb {

class WebFiles {
public:
    explicit WebFiles(ServiceAccess access) : m_Access(std::move(access)) {}

    // Puts the servers' `Page` in the place of the data file `File` when the servers have a later one and it comes as a
    // whole frame (docs/formats/frame.md) that the DataGuard admits. True only then; in all other cases the file stays
    // as it is. Without a server element nothing is asked. What fails is one line of level 0.
    bool GetFileFromWebService(const ElementPtr& Server, const Text& Page, const Text& File) noexcept;

    // The date of the servers' copy of `File`, in the figures that they send; nothing when no server tells one, error
    // 13 when it cannot be read.
    std::optional<Date> ServerDate(Sender& sender, const ElementPtr& Server, const Text& File) const;
    // A sender under the client's key.
    std::unique_ptr<Sender> MakeSender() const;
    // The servers' copy of that date is worth fetching: it is later than the last change of the data file `File`, and
    // was not refused. A file that is missing is older than any date.
    bool IsWanted(const Date& date, const Text& File) const;

private:
    bool Fetch(const ElementPtr& Server, const Text& Page, const Text& File) const;
    bool Refuse(const Text& line) const;

    ServiceAccess m_Access;
};

}  // namespace tb
