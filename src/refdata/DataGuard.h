// Guards the data files against what a server says, in a deployment that wants it (Deployment::ListGuard): a document
// is tried by the loader that will read it before it takes a file's place, and the file that it replaces is kept beside
// it, for a start that cannot use the new one. Without the guard everything is admitted and nothing is kept.
#pragma once

#include "refdata/ServiceAccess.h"

namespace tb {

class DataGuard {
public:
    // Behind the name of a data file: the one before it.
    static constexpr const char* LastSuffix = ".last";

    explicit DataGuard(ServiceAccess access) : m_Access(std::move(access)) {}

    // The servers' copy of `File` from that date was refused in this run of the program: it need not be fetched again.
    bool WasRefused(const Text& File, const Date& date) const;

    // Whether `plain`, which came out of a whole frame of that date, may take the place of the data file `File`. A
    // refusal is one line of level 0, and remembered.
    bool Admits(const Text& File, const Text& plain, const Date& date) const;

    // Copies `File`, if it can be used, to its name and LastSuffix. A failure is one line of level 0.
    void KeepLast(const Text& File) const noexcept;

    // The name of the file that a start reads for `File`: the one before it when it cannot be used and that one can.
    // That is one line of level 0, and the file's dates become older than any server's, so that the next check fetches
    // another.
    Text FileForStart(const Text& File) const;

private:
    bool IsOn() const { return m_Access.Program.Product.ListGuard; }
    // What is wrong with it; empty when it can be used.
    Text DefectOf(const Text& File, const Text& plain) const noexcept;
    Text DefectOfFrame(const Text& File, const Text& framed) const noexcept;
    Text DefectOnDisk(const Text& File, const Text& Name) const noexcept;
    void MakeOld(const Text& File) const noexcept;

    ServiceAccess m_Access;
};

}  // namespace tb
