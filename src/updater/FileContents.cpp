#include "updater/FileContents.h"

namespace tb {

namespace {

constexpr size_t BufferSize = size_t{64} << 10;

// Fills the buffer, but for the end of the file.
TextView ReadPiece(FileReader& reader, Text& buffer) {
    size_t filled = 0;
    while (filled < buffer.size()) {
        const size_t read = reader.Read(buffer.data() + filled, buffer.size() - filled);
        if (read == 0) break;
        filled += read;
    }
    return TextView(buffer).substr(0, filled);
}

}  // namespace

std::optional<std::uint64_t> FileSize(Files& files, const std::filesystem::path& path) {
    if (!files.Exists(path)) return std::nullopt;
    return files.OpenForReading(path)->Size();
}

std::uint64_t CopyContents(Files& files, const std::filesystem::path& from, const std::filesystem::path& to,
                           const std::function<void(size_t)>& moved) {
    std::uint64_t size = 0;
    {
        const std::unique_ptr<FileReader> reader = files.OpenForReading(from);
        const std::unique_ptr<FileWriter> writer = files.OpenForWriting(to);
        Text buffer(BufferSize, '\0');
        for (TextView piece; !(piece = ReadPiece(*reader, buffer)).empty();) {
            writer->Write(piece);
            size += piece.size();
            moved(piece.size());
        }
        writer->Finish();
    }
    files.SetTimes(to, files.Times(from), true);
    return size;
}

bool HaveSameContents(Files& files, const std::filesystem::path& one, const std::filesystem::path& other) {
    if (!files.Exists(one) || !files.Exists(other)) return false;
    const std::unique_ptr<FileReader> first = files.OpenForReading(one);
    const std::unique_ptr<FileReader> second = files.OpenForReading(other);
    if (first->Size() != second->Size()) return false;
    Text firstBuffer(BufferSize, '\0');
    Text secondBuffer(BufferSize, '\0');
    for (;;) {
        const TextView piece = ReadPiece(*first, firstBuffer);
        if (piece != ReadPiece(*second, secondBuffer)) return false;
        if (piece.empty()) return true;
    }
}

}  // namespace tb
