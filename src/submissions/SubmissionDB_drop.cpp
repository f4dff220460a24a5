#include <algorithm>

#include "base/errors.h"
#include "shell/helpers/GeneralHelpers.h"
#include "submissions/Blanks.h"
#include "submissions/SubmissionDB.h"

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
    std::optional<Text> bytes;
    Trap([&] { bytes = storage.Stream(name); }, [](const RuntimeError&) { /* the next kind of body is tried */ });
    return bytes;
}

Text UpToNul(const std::optional<Text>& bytes) { return bytes ? bytes->substr(0, bytes->find('\0')) : Text(); }

Text MessageBody(MessageStorage& storage) {
    if (const auto html = OpenStream(storage, HtmlBody)) return UpToNul(html);
    // As it is, NULs too: it stays compressed.
    if (auto rtf = OpenStream(storage, CompressedRtfBody)) return *std::move(rtf);
    return UpToNul(OpenStream(storage, PlainBody));
}

}  // namespace

void SubmissionDB::DoDrop(DropData& dropped) noexcept {
    const auto held = weak_from_this().lock();
    Trap(
        [&] {
            if (dropped.Has(cfInternetMessage)) {
                Text headers;
                Text body;
                // A block of memory is longer than the mail in it.
                SplitMail(UpToNul(dropped.Bytes(cfInternetMessage)), headers, body);
                SubmitEvilEmail(headers, body);
            } else if (dropped.Has(cfFileGroupDescriptor)) {
                if (NativeData* native = iDataObjectFromData(dropped)) ProcessDataObject(native, dropped);
            } else if (dropped.Has(PlainTextFormat)) {
                SubmitEvilURL(Text(TrimBlanks(dropped.PlainText())));
            } else {
                ShowNotUnderstood();
            }
        },
        DropFailure("Error DragDrop OLEDragDrop: "));
}

NativeData* SubmissionDB::iDataObjectFromData(DropData& dropped) noexcept {
    NativeData* native = nullptr;
    Trap([&] { native = dropped.Native(); }, DropFailure("Error iDataObjectFromData: "));
    return native;
}

void SubmissionDB::ShowNotUnderstood() const {
    ShowMessage(Program(), "This is not a URL or Email message that " + Program().Product.ProductName + " understands.",
                MessageButtons::Information);
}

void SubmissionDB::ProcessDataObject(NativeData* native, DropData& dropped) noexcept {
    Trap(
        [&] {
            const std::int32_t count = GetMessageCount(native);
            for (std::int32_t index = 0; index < count; ++index) {
                Text headers;
                Text body;
                GetMessage(native, index, headers, body);
                if (!headers.empty()) {
                    SubmitEvilEmail(headers, body);
                } else if (!body.empty()) {
                    ShowMessage(Program(),
                                "You submitted a forwarded Email message that " + Program().Product.ProductName +
                                    " does not support.\r\nPlease submit the original message.",
                                MessageButtons::Information);
                } else {
                    // A dragged Internet shortcut is one of these.
                    const Text text = dropped.Has(PlainTextFormat) ? dropped.PlainText() : Text();
                    if (text.find("://") != Text::npos) {
                        SubmitEvilURL(Text(TrimBlanks(text)));
                    } else {
                        ShowNotUnderstood();
                    }
                }
            }
        },
        DropFailure("Error Process Data Object: "));
}

std::int32_t SubmissionDB::GetMessageCount(NativeData* native) noexcept {
    std::int32_t result = 0;
    Trap(
        [&] {
            if (native == nullptr) throw Error(ErrorNumber::ObjectNotSet);
            const Text bytes = native->DescriptorBytes();
            if (bytes.size() < CountSize) return;
            std::uint32_t count = 0;
            for (size_t index = CountSize; index-- > 0;) count = count << 8 | static_cast<std::uint8_t>(bytes[index]);
            // No more than there are descriptors, whatever the count says; one may be cut short.
            const size_t described = std::max<size_t>((bytes.size() - CountSize) / DescriptorSize, 1);
            const auto told = static_cast<std::int32_t>(count);
            result = told < 0 || static_cast<size_t>(told) < described ? told : static_cast<std::int32_t>(described);
        },
        DropFailure("Error Get Message Count: "));
    return result;
}

void SubmissionDB::GetMessage(NativeData* native, std::int32_t index, Text& headers, Text& body) noexcept {
    Trap(
        [&] {
            headers.clear();
            body.clear();
            const std::unique_ptr<MessageStorage> storage = native->Storage(index);
            if (!storage || storage->ClassIdText() != MessageClass) return;
            headers = UpToNul(OpenStream(*storage, TransportHeaders));
            body = MessageBody(*storage);
        },
        DropFailure("Error Get Message: "));
}

}  // namespace tb
