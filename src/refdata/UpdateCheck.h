// Whether a check for program updates may run, and the whole of one: the data files, then the program.
// The program makes one object for all who check, because only one check runs at a time.
#pragma once

#include "refdata/cUpdate.h"

namespace tb {

class UpdateCheck {
public:
    explicit UpdateCheck(ServiceAccess access) : m_Access(std::move(access)) {}

    // False while a check runs, while updates wait for the updater, less than a day after the last check unless the
    // installation is defective, and without a network. `Message` is the reason for the user, empty where there is none
    // to tell: mostly for a check by hand. What fails is one line of level 0, and False.
    bool CanUpdate(bool Manual, Text& Message) noexcept;

    // Fetches newer data files, then lets `Updater` check the program; its result, 0 after an error.
    std::int16_t CheckForUpdates(cUpdate& Updater, bool Manual) noexcept;

private:
    bool IsDue(Text& lastChecked) const;

    ServiceAccess m_Access;
    bool m_InProgress = false;
};

}  // namespace tb
