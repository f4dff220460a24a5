// What the user hands in, mail by mail and URL by URL: refuses repeats and what is no submission, asks for the
// qualifiers, and queues. A failure is a message with the stop icon.
#pragma once

#include <optional>

#include "submissions/DropData.h"
#include "submissions/QualifiersDialog.h"
#include "submissions/QueueFile.h"
#include "submissions/SubmissionQueue.h"
#include "submissions/SubmissionStore.h"

namespace tb {

class SubmissionIntake {
public:
    // All of it outlives the object. Takes the categories of the reference data, as each dialog does again.
    SubmissionIntake(const SubmissionHost& host, SubmissionStore& store, SubmissionQueue& queue,
                     QualifiersView& qualifiers);

    // A mail by its headers, with or without line ends behind them, and its body.
    void SubmitEvilEmail(Text headers, const Text& body) noexcept;
    // A URL; outside debug mode one that begins with "http".
    void SubmitEvilURL(const Text& text) noexcept;

private:
    void SubmitLine(Text line, const SubmissionQualifiers& said, std::vector<Text>& repeated);
    // What the user says in the dialog; nothing when he cancels.
    std::optional<SubmissionQualifiers> GetSubmissionQualifiers(const Text& caption) noexcept;
    void Enqueue(const Text& extension, const Text& content);

    const SubmissionHost& m_Host;
    SubmissionStore& m_Store;
    SubmissionQueue& m_Queue;
    QualifiersView& m_Qualifiers;
    ElementPtr m_Categories;
};

}  // namespace tb
