#include "submissions/CEmailMessage.h"

#include "base/numbers.h"
#include "submissions/Blanks.h"

namespace tb {

namespace {

constexpr TextView LineEnd = "\r\n";
constexpr TextView EmptyLine = "\r\n\r\n";

}  // namespace

bool CEmailMessage::CreateFromText(const Text& text) {
    const size_t end = text.find(EmptyLine);
    if (end == Text::npos) return false;
    m_Headers = text.substr(0, end);
    m_MessageBody = text.substr(end + EmptyLine.size());
    m_MessageText = text;
    const TextView headers = m_Headers;
    for (size_t start = 0; start < headers.size();) {
        const size_t lineEnd = headers.find(LineEnd, start);
        if (lineEnd == TextView::npos) {
            ReadHeaderLine(headers.substr(start));
            break;
        }
        ReadHeaderLine(headers.substr(start, lineEnd - start));
        start = lineEnd + LineEnd.size();
    }
    return true;
}

void CEmailMessage::ReadHeaderLine(TextView line) {
    static constexpr struct {
        TextView Name;
        Text CEmailMessage::*Field;
    } fields[] = {{"return-path", &CEmailMessage::m_ReturnPath},
                  {"received", &CEmailMessage::m_Received},
                  {"date", &CEmailMessage::m_SendDate},
                  {"message-id", &CEmailMessage::m_MessageID},
                  {"to", &CEmailMessage::m_MessageTo},
                  {"from", &CEmailMessage::m_From},
                  {"subject", &CEmailMessage::m_Subject},
                  {"reply-to", &CEmailMessage::m_ReplyTo},
                  {"sender", &CEmailMessage::m_Sender},
                  {"cc", &CEmailMessage::m_CC},
                  {"bcc", &CEmailMessage::m_BCC},
                  {"in-reply-to", &CEmailMessage::m_InReplyTo},
                  {"references", &CEmailMessage::m_References},
                  {"keywords", &CEmailMessage::m_Keywords},
                  {"comments", &CEmailMessage::m_Comments},
                  {"encrypted", &CEmailMessage::m_Encrypted}};
    const size_t colon = line.find(':');
    if (colon == TextView::npos) return;
    const Text name = LowerCase(line.substr(0, colon));
    for (const auto& [known, field] : fields) {
        if (name == known) this->*field = TrimBlanks(line.substr(colon + 1));
    }
}

std::int32_t CEmailMessage::SIZE() const { return NarrowToInt32(static_cast<std::int64_t>(m_MessageText.size())); }

}  // namespace tb
