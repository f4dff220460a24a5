// What people have handed in, whole and for good, with what was decided about it.
#pragma once

#include <functional>
#include <optional>

#include "service/store/Database.h"
#include "service/store/Stamp.h"

namespace tb {

// An identifier travels as "01-000345": two decimal numbers around a "-", the first below 100, each within 16 bits.
Text SubmissionIdText(std::int64_t number);
// Back, also without the leading zeros; nothing for a text that is no identifier of ours.
std::optional<std::int64_t> SubmissionNumber(TextView id);

// By the ids of the reference tables, "Pending" and "Undefined" unless set.
struct Judgement {
    std::int64_t Status = 1;
    std::int64_t Disposition = 1;
};
inline constexpr std::int64_t LastStatus = 5;
inline constexpr std::int64_t LastDisposition = 2;

struct Submission {
    enum class Kind { Email, Url };

    Kind What = Kind::Email;
    // The client's identifier.
    Text Client;
    std::int64_t Category = 0;
    std::int64_t Confidence = 0;
    // Of a mail.
    Text From;
    Text Subject;
    // All headers of a mail, without the empty line behind them; of a URL, how the user's program keeps it.
    Text Head;
    // The body of a mail; the URL as it is visited.
    Text Content;
    // UTC.
    Date Received;
};

// Every operation raises a StoreError, and nothing is changed then.
class Submissions {
public:
    // What fits the identifiers.
    static constexpr std::int64_t Most = 99 * 32768 - 1;

    // The database must outlive the object.
    explicit Submissions(Database& database) : m_Database(database) {}

    struct Taken {
        std::int64_t Number = 0;
        // It was there before, under that number: a mail with the same body, byte for byte, whatever its headers; the
        // same URL. Nothing is stored then.
        bool IsRepeat = false;
    };
    Taken Add(const Submission& submission);

    std::optional<Submission> Find(std::int64_t number);
    std::optional<Judgement> JudgementOf(std::int64_t number);
    // False when there is no such submission.
    bool Judge(std::int64_t number, const Judgement& judgement);
    // In the order of arrival; of mails without head and content.
    void ForEach(const std::function<void(std::int64_t number, const Submission&, const Judgement&)>& visit);
    std::int64_t Count();

private:
    Database& m_Database;
};

}  // namespace tb
