#include "submissions/win32/MessageStream.h"

#include <algorithm>

#include "base/errors.h"

namespace tb {

namespace {

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

}  // namespace tb
