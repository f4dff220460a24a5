#include "platform/Files.h"

namespace tb {

Text ReadWholeFile(Files& files, const std::filesystem::path& path) {
    const std::unique_ptr<FileReader> reader = files.OpenForReading(path);
    Text content;
    // One byte more than the size, so that the read that finds the end needs no further room. A pipe tells no size.
    content.resize(reader->Size() + 1);
    size_t filled = 0;
    while (const size_t count = reader->Read(content.data() + filled, content.size() - filled)) {
        filled += count;
        if (filled == content.size()) content.resize(filled * 2);
    }
    content.resize(filled);
    return content;
}

}  // namespace tb
