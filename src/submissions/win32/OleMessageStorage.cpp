#include "submissions/win32/OleMessageStorage.h"

#include <algorithm>

#include "base/errors.h"
#include "platform/win32/ComPointer.h"
#include "platform/win32/Win32Text.h"

namespace tb {

namespace {

// Characters of a class identifier in braces, with the NUL behind it.
constexpr int ClassIdLength = 39;

constexpr size_t PieceSize = 65536;

}  // namespace

Text ReadStream(IStream& stream, size_t limit) {
    Text bytes;
    Text piece(PieceSize, '\0');
    while (bytes.size() < limit) {
        const auto wanted = static_cast<ULONG>(std::min(PieceSize, limit - bytes.size()));
        ULONG read = 0;
        const HRESULT result = stream.Read(piece.data(), wanted, &read);
        if (FAILED(result) || read > wanted) throw Error(ErrorNumber::DeviceIO);
        if (read == 0) break;
        bytes.append(piece, 0, read);
    }
    return bytes;
}

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
