// The program's side of the face of tbSender.dll, which turns it back into senders. The program lives on without the
// file: then each operation ends in an error text that says so.
#pragma once

#include "components/tbSender/Sender.h"

namespace tb {

class SenderLibrary {
public:
    // All of it must last until the last sender has gone and no operation runs.
    struct Parts {
        // The address of tbSender_Face; null when it is not there. Asked by the first operation, and by the next ones
        // until it is there; then it stays.
        std::function<void*()> FindEntry;
        Text UserAgent;
        // True once the exit is asked for. May be empty.
        std::function<bool()> IsCancelled;
    };

    explicit SenderLibrary(Parts parts);

    // Senders keep the contract of tbSender (components/tbSender/tbSender.h): they may be used and destroyed by
    // handlers that run while one of their operations waits, and they raise nothing. Without the component, IsOnline
    // answers True, so that the operations come to tell what is missing.
    std::unique_ptr<Sender> MakeSender() const;

private:
    class Link;
    class FacedSender;

    std::shared_ptr<Link> m_Link;
};

}  // namespace tb
