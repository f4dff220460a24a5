// What was dropped on the program, taken apart: the first format that is known decides, and every mail and every URL in
// it goes to the intake.
#pragma once

#include "submissions/DropData.h"
#include "submissions/SubmissionIntake.h"

namespace tb {

class DropReader {
public:
    // The numbers of the two formats that have none of their own.
    struct Formats {
        ClipboardFormat InternetMessage;
        ClipboardFormat FileGroupDescriptor;
    };

    // Both outlive the object.
    DropReader(const SubmissionHost& host, SubmissionIntake& intake, const Formats& formats)
        : m_Host(host), m_Intake(intake), m_Formats(formats) {}

    // Takes a mail, stored messages or a URL; a message says when it is none of them. After a failure, which a message
    // with the stop icon tells, what was queued up to there stays queued.
    void Read(DropData& dropped) noexcept;
    // How many stored messages the object holds; 0 after a failure, which a message tells.
    std::int32_t GetMessageCount(NativeData* native) noexcept;

private:
    void ProcessDataObject(NativeData* native, DropData& dropped) noexcept;
    void GetMessage(NativeData* native, std::int32_t index, Text& headers, Text& body) noexcept;
    NativeData* iDataObjectFromData(DropData& dropped) noexcept;
    void ShowNotUnderstood() const;

    const SubmissionHost& m_Host;
    SubmissionIntake& m_Intake;
    const Formats m_Formats;
};

}  // namespace tb
