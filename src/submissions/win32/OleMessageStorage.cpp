#include "submissions/win32/OleMessageStorage.h"

#include "platform/win32/ComPointer.h"
#include "platform/win32/Win32Text.h"
#include "submissions/win32/MessageStream.h"

namespace tb {

namespace {

// Characters of a class identifier in braces, with the NUL behind it.
constexpr int ClassIdLength = 39;

}  // namespace

Text OleMessageStorage::ClassIdText() {
    STATSTG about{};
    if (FAILED(Storage().Stat(&about, STATFLAG_NONAME))) return {};
    wchar_t text[ClassIdLength] = L"";
    StringFromGUID2(about.clsid, text, ClassIdLength);
    return FromSystem(text);
}

std::optional<Text> OleMessageStorage::Stream(const Text& name) {
    ComPointer<IStream> stream;
    const HRESULT result =
        Storage().OpenStream(ToSystem(name).c_str(), nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, 0, stream.Receive());
    if (FAILED(result) || !stream) return std::nullopt;
    return ReadStream(*stream.Get(), LargestMail + 1);
}

}  // namespace tb
