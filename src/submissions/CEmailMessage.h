// One Internet message, taken apart into its header block, its body and a fixed set of header fields. Nothing is
// decoded and folded header lines are not joined: a field holds its first line.
#pragma once

#include <cstdint>
#include <utility>

#include "base/text.h"

namespace tb {

class CEmailMessage {
public:
    // Takes `text` apart at its first empty line (CR LF CR LF). False without one; the object then stays as it was. A
    // field that the headers do not name keeps its value; of one that they name twice the last occurrence counts. Names
    // are known in any case, with no blank before the colon; values come without blanks around them.
    bool CreateFromText(const Text& text);

    // The text given to CreateFromText, as it was.
    const Text& CombineMessage() const { return m_MessageText; }

    // What stands before and behind the first empty line, and the whole.
    void Headers(Text value) { m_Headers = std::move(value); }
    const Text& Headers() const { return m_Headers; }
    void MessageBody(Text value) { m_MessageBody = std::move(value); }
    const Text& MessageBody() const { return m_MessageBody; }
    void MessageText(Text value) { m_MessageText = std::move(value); }
    const Text& MessageText() const { return m_MessageText; }

    // The fields.
    void Encrypted(Text value) { m_Encrypted = std::move(value); }
    const Text& Encrypted() const { return m_Encrypted; }
    void Comments(Text value) { m_Comments = std::move(value); }
    const Text& Comments() const { return m_Comments; }
    void Keywords(Text value) { m_Keywords = std::move(value); }
    const Text& Keywords() const { return m_Keywords; }
    void References(Text value) { m_References = std::move(value); }
    const Text& References() const { return m_References; }
    void InReplyTo(Text value) { m_InReplyTo = std::move(value); }
    const Text& InReplyTo() const { return m_InReplyTo; }
    void BCC(Text value) { m_BCC = std::move(value); }
    const Text& BCC() const { return m_BCC; }
    void CC(Text value) { m_CC = std::move(value); }
    const Text& CC() const { return m_CC; }
    void Sender(Text value) { m_Sender = std::move(value); }
    const Text& Sender() const { return m_Sender; }
    void ReplyTo(Text value) { m_ReplyTo = std::move(value); }
    const Text& ReplyTo() const { return m_ReplyTo; }
    void Subject(Text value) { m_Subject = std::move(value); }
    const Text& Subject() const { return m_Subject; }
    void From(Text value) { m_From = std::move(value); }
    const Text& From() const { return m_From; }
    void MessageTo(Text value) { m_MessageTo = std::move(value); }
    const Text& MessageTo() const { return m_MessageTo; }
    void MessageID(Text value) { m_MessageID = std::move(value); }
    const Text& MessageID() const { return m_MessageID; }
    void SendDate(Text value) { m_SendDate = std::move(value); }
    const Text& SendDate() const { return m_SendDate; }
    void Received(Text value) { m_Received = std::move(value); }
    const Text& Received() const { return m_Received; }
    void ReturnPath(Text value) { m_ReturnPath = std::move(value); }
    const Text& ReturnPath() const { return m_ReturnPath; }

    // Characters of MessageText.
    std::int32_t SIZE() const;

private:
    void ReadHeaderLine(TextView line);

    Text m_ReturnPath;
    Text m_Received;
    Text m_SendDate;
    Text m_MessageID;
    Text m_MessageTo;
    Text m_From;
    Text m_Subject;
    Text m_ReplyTo;
    Text m_Sender;
    Text m_CC;
    Text m_BCC;
    Text m_InReplyTo;
    Text m_References;
    Text m_Keywords;
    Text m_Comments;
    Text m_Encrypted;
    Text m_MessageText;
    Text m_MessageBody;
    Text m_Headers;
};

}  // namespace tb
