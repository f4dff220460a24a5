#include "base/errors.h"
#include "base/numbers.h"
#include "service/web/Form.h"
#include "service/web/ServicePages.h"
#include "sitedb/codec/Base64.h"

namespace tb {

namespace {

// A client takes mails of 5 MiB. At the worst all of that is subject, which is posted twice, three characters a byte.
constexpr size_t EmailForm = 32u << 20;
constexpr size_t UrlForm = 64u << 10;
// Some 40,000 identifiers, whose lines are still within what a client takes for a reply.
constexpr size_t StatusForm = 450u << 10;

Text Require(const Form& form, const char* name) {
    auto value = form.Find(name);
    if (!value) throw InputError(Text("The field ") + name + " is missing.");
    return std::move(*value);
}

void RequireKind(const Form& form, TextView kind) {
    if (Require(form, "TRN") != kind) throw InputError("The field TRN must be " + Text(kind) + " here.");
}

std::int64_t RequireNumber(const Form& form, const char* name) {
    const Text value = Require(form, name);
    try {
        return ToInt16(value);
    } catch (const RuntimeError&) {
        throw InputError(Text("The field ") + name + " is no number.");
    }
}

Text RequireBase64(const Form& form, const char* name) {
    const Text value = Require(form, name);
    Text bytes = Base64Decode(value);
    if (Base64Encode(bytes) != value) throw InputError(Text("The field ") + name + " is no Base64.");
    return bytes;
}

Submission ReadCommon(const Form& form) {
    Submission submission;
    submission.Client = Require(form, "Key");
    submission.Category = RequireNumber(form, "Category_ID");
    submission.Confidence = RequireNumber(form, "Confidence_ID");
    submission.Received = SystemUtcNow();
    return submission;
}

Submission ReadEmail(const Form& form) {
    RequireKind(form, "EML");
    Submission email = ReadCommon(form);
    email.From = Require(form, "From");
    email.Subject = Require(form, "Subject");
    email.Head = Require(form, "Header");
    email.Content = RequireBase64(form, "Body64");
    return email;
}

Submission ReadUrl(const Form& form) {
    RequireKind(form, "URL");
    Submission url = ReadCommon(form);
    url.What = Submission::Kind::Url;
    url.Content = Require(form, "Visible_URL");
    url.Head = Require(form, "Main_URL");
    if (url.Content.empty()) throw InputError("The field Visible_URL is empty.");
    return url;
}

// Without a line end: clients show it.
Reply AnswerOf(const Text& text) { return {200, "text/plain", std::make_shared<const Text>(text), {}}; }

Reply Take(SubmissionIntake& submissions, LogSink& log, const Submission& submission) {
    try {
        const auto [number, isRepeat] = submissions.Take(submission);
        const Text id = SubmissionIdText(number);
        if (!isRepeat) return AnswerOf(id + " Thank you for your submission.");
        const char* what = submission.What == Submission::Kind::Email ? "e-mail" : "URL";
        return AnswerOf(Text("-1 Thank you. This ") + what + " is known already, by the number " + id + ".");
    } catch (const RuntimeError& error) {
        log.WriteLog("a submission was not stored: " + error.Description, LogLevel::Always);
        return AnswerOf("Error: the submission cannot be stored at the moment.");
    }
}

}  // namespace

void AddSubmissionPages(Pages& pages, SubmissionIntake& submissions, LogSink& log) {
    const auto add = [&](const char* path, size_t limit, std::function<Reply(const Form&)> answer) {
        pages.push_back({path, false, true, limit, [answer = std::move(answer)](const Question& question) {
                             try {
                                 return answer(Form(question.Body));
                             } catch (const RuntimeError& error) {
                                 // It is no refusal by "-1", upon which a client would delete what somebody handed in.
                                 if (error.Number != InputErrorNumber) throw;
                                 return PlainReply(400, error.Description);
                             }
                         }});
    };
    add("/SubmitEmail.aspx", EmailForm,
        [&submissions, &log](const Form& form) { return Take(submissions, log, ReadEmail(form)); });
    add("/SubmitURL.aspx", UrlForm,
        [&submissions, &log](const Form& form) { return Take(submissions, log, ReadUrl(form)); });
    add("/SubmissionStatus.aspx", StatusForm, [&submissions](const Form& form) {
        RequireKind(form, "UPD");
        return AnswerOf(submissions.StatusLines(SplitViews(Require(form, "SubIds"), ',')));
    });
}

}  // namespace tb
