#include <cstdio>

#include "base/errors.h"
#include "commandline/Options.h"
#include "commandline/StandardStreams.h"
#include "service/commands/ServiceCommands.h"
#include "service/mail/MailTexts.h"
#include "service/mail/UrlScan.h"
#include "service/store/ServiceStore.h"
#include "service/store/SiteHistory.h"
#include "service/store/Submissions.h"
#include "urlcheck/url/NormalizeIP.h"

namespace tb {

namespace {

constexpr const char* KindNames[] = {"EMAIL", "URL"};

Text NameOf(const Submission& submission) { return KindNames[static_cast<size_t>(submission.What)]; }

// On one line, whatever somebody has sent.
Text Readable(const Text& text) { return Quoted(text, text.size()); }

std::int64_t ReadId(const Text& id) {
    const auto number = SubmissionNumber(id);
    if (!number) throw InputError(Quoted(id) + " is no identifier of a submission");
    return *number;
}

Submission Require(Submissions& submissions, std::int64_t number) {
    auto submission = submissions.Find(number);
    if (!submission) throw InputError("there is no submission " + SubmissionIdText(number));
    return std::move(*submission);
}

std::int64_t ReadDigit(const Text& word, const char* what, std::int64_t last) {
    const std::int64_t value = word.size() == 1 ? word[0] - '0' : -1;
    if (value < 0 || value > last) throw UsageError(Text(what) + " is a number from 0 to " + std::to_string(last));
    return value;
}

void PrintFields(std::int64_t number, const Submission& submission, const Judgement& judgement) {
    const bool isUrl = submission.What == Submission::Kind::Url;
    std::printf("id: %s\nkind: %s\nreceived: %s UTC\nclient: %s\ncategory: %lld\nconfidence: %lld\n",
                SubmissionIdText(number).c_str(), NameOf(submission).c_str(),
                FormatDateTime(submission.Received).c_str(), Readable(submission.Client).c_str(),
                static_cast<long long>(submission.Category), static_cast<long long>(submission.Confidence));
    std::printf("status: %lld\ndisposition: %lld\n", static_cast<long long>(judgement.Status),
                static_cast<long long>(judgement.Disposition));
    if (isUrl) {
        std::printf("URL: %s\nmain URL: %s\n", Readable(submission.Content).c_str(), Readable(submission.Head).c_str());
    } else {
        std::printf("from: %s\nsubject: %s\n", Readable(submission.From).c_str(), Readable(submission.Subject).c_str());
    }
}

std::vector<Text> UrlsOf(const Submission& submission) {
    if (submission.What == Submission::Kind::Url) {
        Text url = submission.Content;
        return {NormalizeIP(url)};
    }
    Text texts;
    for (const Text& text : MailTexts(submission.Head, submission.Content)) texts += text + "\n";
    return UrlsIn(texts);
}

// Those that clients could hold; the others are named on standard error.
std::vector<Site> SitesIn(const Submission& submission) {
    std::vector<Site> sites;
    const Text category = std::to_string(submission.Category);
    for (const Text& url : UrlsOf(submission)) {
        try {
            for (Site& site : SitesOf(url, category, FormatDate(SystemUtcNow()))) sites.push_back(std::move(site));
        } catch (const RuntimeError& error) {
            WriteStandardError("tbservice", "passed over: " + error.Description);
        }
    }
    return sites;
}

void Publish(Database& store, std::int64_t number, const Submission& submission) {
    const std::vector<Site> sites = SitesIn(submission);
    if (sites.empty()) throw InputError("submission " + SubmissionIdText(number) + " has no URL to publish");
    SiteHistory history(store);
    history.Import(sites);
    for (const Site& site : sites) {
        std::printf("published %s in category %s\n", Readable(site.Url).c_str(), site.Category.c_str());
    }
    const Publication latest = history.Latest();
    std::printf("%lld sites as of %s\n", static_cast<long long>(latest.Sites), latest.Stamp.c_str());
}

}  // namespace

void ListSubmissionsCommand(const std::filesystem::path& folder, const Words& words) {
    if (!words.empty()) throw UsageError("unexpected " + words.front());
    ServiceStore store(folder, ServiceStore::Opening::Existing);
    Submissions(store).ForEach([](std::int64_t number, const Submission& submission, const Judgement& judgement) {
        const bool isUrl = submission.What == Submission::Kind::Url;
        std::printf("%s\t%s\t%lld\t%lld\t%s\t%s\n", SubmissionIdText(number).c_str(), NameOf(submission).c_str(),
                    static_cast<long long>(judgement.Status), static_cast<long long>(judgement.Disposition),
                    FormatDateTime(submission.Received).c_str(),
                    Readable(isUrl ? submission.Content : submission.Subject).c_str());
    });
}

void ShowSubmissionCommand(const std::filesystem::path& folder, const Words& words) {
    const Options options(words, {}, {"--fields"});
    if (options.Words().size() != 1) throw UsageError("submissions show takes one identifier");
    const std::int64_t number = ReadId(options.Words().front());
    ServiceStore store(folder, ServiceStore::Opening::Existing);
    Submissions submissions(store);
    const Submission submission = Require(submissions, number);
    if (submission.What == Submission::Kind::Url || options.Has("--fields")) {
        return PrintFields(number, submission, submissions.JudgementOf(number).value_or(Judgement()));
    }
    WriteStandardOutput(submission.Head + "\r\n\r\n" + submission.Content);
}

void JudgeSubmissionCommand(const std::filesystem::path& folder, const Words& words) {
    const Options options(words, {}, {"--publish"});
    if (options.Words().size() != 3) {
        throw UsageError("submissions judge takes an identifier, a status and a disposition");
    }
    const Judgement judgement{ReadDigit(options.Words()[1], "a status", LastStatus),
                              ReadDigit(options.Words()[2], "a disposition", LastDisposition)};
    const std::int64_t number = ReadId(options.Words()[0]);
    ServiceStore store(folder, ServiceStore::Opening::Existing);
    Submissions submissions(store);
    const Submission submission = Require(submissions, number);
    if (options.Has("--publish")) Publish(store, number, submission);
    submissions.Judge(number, judgement);
    std::printf("%s has status %lld and disposition %lld\n", SubmissionIdText(number).c_str(),
                static_cast<long long>(judgement.Status), static_cast<long long>(judgement.Disposition));
}

}  // namespace tb
