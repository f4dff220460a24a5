#include "service/store/Submissions.h"

#include <cstdio>

#include "base/errors.h"
#include "base/numbers.h"
#include "sitedb/codec/cCRC32.h"

namespace tb {

namespace {

constexpr std::int64_t SecondNumbers = 32768;
constexpr size_t MostDigits = 6;

std::optional<std::int64_t> DigitsOf(TextView digits) {
    const bool isNumber =
        !digits.empty() && digits.size() <= MostDigits && digits.find_first_not_of("0123456789") == TextView::npos;
    return isNumber ? std::optional<std::int64_t>(ToInt32(digits)) : std::nullopt;
}

// Narrows the search for repeats; what it finds is compared as a whole.
std::int64_t CheckOf(TextView content) { return cCRC32().GetStringCrc32(content, 0); }

Submission SubmissionOf(Statement& row) {
    Submission submission;
    submission.What = row.Number(1) == 0 ? Submission::Kind::Email : Submission::Kind::Url;
    submission.Received = Date(row.Number(2));
    submission.Category = row.Number(3);
    submission.Confidence = row.Number(4);
    submission.Client = row.Bytes(5);
    submission.From = row.Bytes(6);
    submission.Subject = row.Bytes(7);
    submission.Head = row.Bytes(8);
    submission.Content = row.Bytes(9);
    return submission;
}

}  // namespace

Text SubmissionIdText(std::int64_t number) {
    const std::int64_t first = 1 + number / SecondNumbers;
    const std::int64_t second = number % SecondNumbers;
    char text[48];
    std::snprintf(text, sizeof text, "%02lld-%06lld", static_cast<long long>(first), static_cast<long long>(second));
    return text;
}

std::optional<std::int64_t> SubmissionNumber(TextView id) {
    const size_t middle = id.find('-');
    if (middle == TextView::npos) return std::nullopt;
    const auto first = DigitsOf(id.substr(0, middle));
    const auto second = DigitsOf(id.substr(middle + 1));
    if (!first || !second || *first < 1 || *second >= SecondNumbers) return std::nullopt;
    const std::int64_t number = (*first - 1) * SecondNumbers + *second;
    return number >= 1 && number <= Submissions::Most ? std::optional(number) : std::nullopt;
}

Submissions::Taken Submissions::Add(const Submission& submission) {
    const std::int64_t kind = submission.What == Submission::Kind::Email ? 0 : 1;
    const std::int64_t check = CheckOf(submission.Content);
    Transaction transaction(m_Database, Transaction::Kind::Write);
    Statement earlier =
        m_Database.Prepare("SELECT number FROM submissions WHERE kind = ?1 AND content_check = ?2 AND content = ?3");
    earlier.Bind(1, kind).Bind(2, check).Bind(3, submission.Content);
    if (earlier.Step()) return {earlier.Number(0), true};
    const std::int64_t number = m_Database.Ask("SELECT ifnull(max(number), 0) + 1 FROM submissions");
    if (number > Most) throw StoreError("no identifier is left for submissions");
    m_Database.Prepare("INSERT INTO submissions VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13)")
        .Bind(1, number)
        .Bind(2, kind)
        .Bind(3, submission.Received.Seconds())
        .Bind(4, Judgement().Status)
        .Bind(5, Judgement().Disposition)
        .Bind(6, submission.Category)
        .Bind(7, submission.Confidence)
        .Bind(8, submission.Client)
        .Bind(9, submission.From)
        .Bind(10, submission.Subject)
        .Bind(11, check)
        .Bind(12, submission.Head)
        .Bind(13, submission.Content)
        .Run();
    transaction.Commit();
    return {number, false};
}

std::optional<Submission> Submissions::Find(std::int64_t number) {
    Statement row = m_Database.Prepare(
        "SELECT number, kind, received, category, confidence, client, sender, subject, head, content "
        "FROM submissions WHERE number = ?1");
    row.Bind(1, number);
    if (!row.Step()) return std::nullopt;
    return SubmissionOf(row);
}

std::optional<Judgement> Submissions::JudgementOf(std::int64_t number) {
    Statement row = m_Database.Prepare("SELECT status, disposition FROM submissions WHERE number = ?1");
    row.Bind(1, number);
    if (!row.Step()) return std::nullopt;
    return Judgement{row.Number(0), row.Number(1)};
}

bool Submissions::Judge(std::int64_t number, const Judgement& judgement) {
    Statement change =
        m_Database.Prepare("UPDATE submissions SET status = ?2, disposition = ?3 WHERE number = ?1 RETURNING number");
    change.Bind(1, number).Bind(2, judgement.Status).Bind(3, judgement.Disposition);
    bool isThere = false;
    while (change.Step()) isThere = true;
    return isThere;
}

void Submissions::ForEach(const std::function<void(std::int64_t number, const Submission&, const Judgement&)>& visit) {
    Statement row = m_Database.Prepare(
        "SELECT number, kind, received, category, confidence, client, sender, subject, iif(kind, head, x''), "
        "iif(kind, content, x''), status, disposition FROM submissions ORDER BY number");
    while (row.Step()) visit(row.Number(0), SubmissionOf(row), {row.Number(10), row.Number(11)});
}

std::int64_t Submissions::Count() { return m_Database.Ask("SELECT count(*) FROM submissions"); }

}  // namespace tb
