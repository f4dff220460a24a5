#include "submissions/SubmissionDB.h"

namespace tb {

SubmissionDB::SubmissionDB(const Parts& parts)
    : cfFileContents(parts.Formats.Register("FileContents")),
      cfFileGroupDescriptor(parts.Formats.Register("FileGroupDescriptor")),
      cfInternetMessage(parts.Formats.Register("Internet Message (rfc822/rfc1522)")),
      m_Host(parts.Service, LogMessage),
      m_Queue(m_Host.Files(), m_Host.Program().Path() / "Data"),
      m_Store(m_Host),
      m_Intake(m_Host, m_Store, m_Queue, parts.Qualifiers),
      m_Reader(m_Host, m_Intake, {cfInternetMessage, cfFileGroupDescriptor}),
      m_Poster(m_Host, m_Store, m_Queue, RedisplaySubmissions) {}

void SubmissionDB::Setup() noexcept {
    m_Queue.ClearLeftovers();
    m_Store.Setup();
}

void SubmissionDB::HandIn(DropData& dropped) {
    const auto held = shared_from_this();
    DoDrop(dropped);
    AskForRun();
}

void SubmissionDB::HandInURL(const Text& text) {
    const auto held = shared_from_this();
    SubmitEvilURL(text);
    AskForRun();
}

// The questions served messages: whoever listens may be about to go.
void SubmissionDB::AskForRun() const {
    if (m_Host.Program().Settings) RunWanted.Raise();
}

void SubmissionDB::DoDrop(DropData& dropped) noexcept {
    const auto held = weak_from_this().lock();
    m_Reader.Read(dropped);
}

void SubmissionDB::SubmitEvilURL(const Text& text) noexcept {
    const auto held = weak_from_this().lock();
    m_Intake.SubmitEvilURL(text);
}

void SubmissionDB::ProcessSubmissions() noexcept {
    const auto held = weak_from_this().lock();
    m_Poster.ProcessSubmissions();
}

}  // namespace tb
