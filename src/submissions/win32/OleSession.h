// Drag and drop of the system on the calling thread.
#pragma once

namespace tb {

// The thread needs one before any other object of this room is used, and until the last of them has gone; several may
// live at a time.
class OleSession {
public:
    // Error 51 when the system refuses.
    OleSession();
    OleSession(const OleSession&) = delete;
    OleSession& operator=(const OleSession&) = delete;
    ~OleSession();
};

}  // namespace tb
