// Takes submissions and tells what became of them. Clients wait for it only a moment each, so that they get an answer
// before they give up, whatever else works on the store.
// Threads: any.
#pragma once

#include <mutex>

#include "service/store/ServiceStore.h"
#include "service/store/Submissions.h"

namespace tb {

class SubmissionBox {
public:
    // Raises a StoreError when the store cannot be opened.
    explicit SubmissionBox(const std::filesystem::path& folder);

    // The submission is on the disk when this returns. Raises a StoreError when it was not stored: the disk is full, or
    // others kept the store busy too long.
    Submissions::Taken Take(const Submission& submission);

    // A line "identifier=status,disposition" and a line feed for each of the identifiers that is known, once each, in
    // order. Raises a StoreError when the store cannot be read.
    Text StatusLines(const std::vector<TextView>& ids);

private:
    std::unique_lock<std::timed_mutex> Turn();

    std::timed_mutex m_Mutex;
    ServiceStore m_Store;
};

}  // namespace tb
