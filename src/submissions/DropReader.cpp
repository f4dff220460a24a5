#include "submissions/DropReader.h"

#include <algorithm>

#include "base/bytes.h"
#include "submissions/Blanks.h"

namespace tb {

namespace {

constexpr TextView EmptyLine = "\r\n\r\n";

constexpr const char* MessageClass = "{00020D0B-0000-0000-C000-000000000046}";
constexpr const char* TransportHeaders = "__substg1.0_007D001E";
constexpr const char* HtmlBody = "__substg1.0_1013001E";
constexpr const char* CompressedRtfBody = "__substg1.0_10090102";
constexpr const char* PlainBody = "__substg1.0_1000001E";

// Bytes of the count and of each descriptor behind it.
constexpr size_t CountSize = 4;
constexpr size_t DescriptorSize = 332;

// The headers up to the first empty line, and what stands behind it without empty lines at its beginning.
void SplitMail(const Text& mail, Text& headers, Text& body) {
    const size_t end = mail.find(EmptyLine);
    headers = mail.substr(0, end);
    if (end == Text::npos) return;
    size_t start = end + EmptyLine.size();
    while (mail.compare(start, EmptyLine.size(), EmptyLine) == 0) start += EmptyLine.size();
    body = mail.substr(start);
}

// The stream's bytes; nothing when it cannot be had, for whatever reason.
std::optional<Text> OpenStream(MessageStorage& storage, const char* name) {
    return TrapOr(
        std::optional<Text>(), [&] { return storage.Stream(name); },
        [](const RuntimeError&) { /* the next kind of body is tried */ });
}

Text UpToNul(const std::optional<Text>& bytes) { return bytes ? bytes->substr(0, bytes->find('\0')) : Text(); }

Text MessageBody(MessageStorage& storage) {
    if (const auto html = OpenStream(storage, HtmlBody)) return UpToNul(html);
    // As it is, NULs too: it stays compressed.
    if (auto rtf = OpenStream(storage, CompressedRtfBody)) return *std::move(rtf);
    return UpToNul(OpenStream(storage, PlainBody));
}

}  // namespace

void DropReader::Read(DropData& dropped) noexcept {
    Trap(
        [&] {
            if (dropped.Has(m_Formats.InternetMessage)) {
                Text headers;
                Text body;
                // A block of memory is longer than the mail in it.
                SplitMail(UpToNul(dropped.Bytes(m_Formats.InternetMessage)), headers, body);
                m_Intake.SubmitEvilEmail(std::move(headers), body);
            } else if (dropped.Has(m_Formats.FileGroupDescriptor)) {
                if (NativeData* native = iDataObjectFromData(dropped)) ProcessDataObject(native, dropped);
            } else if (dropped.Has(PlainTextFormat)) {
                m_Intake.SubmitEvilURL(Text(TrimBlanks(dropped.PlainText())));
            } else {
                ShowNotUnderstood();
            }
        },
        m_Host.DropFailure("Error DragDrop OLEDragDrop: "));
}

NativeData* DropReader::iDataObjectFromData(DropData& dropped) noexcept {
    return TrapOr(
        static_cast<NativeData*>(nullptr), [&] { return dropped.Native(); },
        m_Host.DropFailure("Error iDataObjectFromData: "));
}

void DropReader::ShowNotUnderstood() const {
    m_Host.Inform("This is not a URL or Email message that " + m_Host.Program().Product.ProductName + " understands.");
}

void DropReader::ProcessDataObject(NativeData* native, DropData& dropped) noexcept {
    Trap(
        [&] {
            const std::int32_t count = GetMessageCount(native);
            for (std::int32_t index = 0; index < count; ++index) {
                Text headers;
                Text body;
                GetMessage(native, index, headers, body);
                if (!headers.empty()) {
                    m_Intake.SubmitEvilEmail(std::move(headers), body);
                } else if (!body.empty()) {
                    m_Host.Inform("You submitted a forwarded Email message that " +
                                  m_Host.Program().Product.ProductName +
                                  " does not support.\r\nPlease submit the original message.");
                } else {
                    // A dragged Internet shortcut is one of these.
                    const Text text = dropped.Has(PlainTextFormat) ? dropped.PlainText() : Text();
                    if (text.find("://") != Text::npos) {
                        m_Intake.SubmitEvilURL(Text(TrimBlanks(text)));
                    } else {
                        ShowNotUnderstood();
                    }
                }
            }
        },
        m_Host.DropFailure("Error Process Data Object: "));
}

std::int32_t DropReader::GetMessageCount(NativeData* native) noexcept {
    return TrapOr(
        0,
        [&] {
            if (native == nullptr) throw Error(ErrorNumber::ObjectNotSet);
            const Text bytes = native->DescriptorBytes();
            if (bytes.size() < CountSize) return 0;
            const auto told = static_cast<std::int32_t>(LittleEndian(Left(bytes, CountSize)));
            // No more than there are descriptors, whatever the count says; one may be cut short.
            const size_t described = std::max<size_t>((bytes.size() - CountSize) / DescriptorSize, 1);
            return told < 0 || static_cast<size_t>(told) < described ? told : static_cast<std::int32_t>(described);
        },
        m_Host.DropFailure("Error Get Message Count: "));
}

void DropReader::GetMessage(NativeData* native, std::int32_t index, Text& headers, Text& body) noexcept {
    Trap(
        [&] {
            headers.clear();
            body.clear();
            const std::unique_ptr<MessageStorage> storage = native->Storage(index);
            if (!storage || storage->ClassIdText() != MessageClass) return;
            headers = UpToNul(OpenStream(*storage, TransportHeaders));
            body = MessageBody(*storage);
        },
        m_Host.DropFailure("Error Get Message: "));
}

}  // namespace tb
