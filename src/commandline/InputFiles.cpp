#include "commandline/InputFiles.h"

namespace tb {

RuntimeError UnreadableFile(const Text& path, const RuntimeError& error, const char* expected) {
    return InputError(path + ": " + error.Description + "; " + expected + " is expected");
}

Text ReadInputFile(Files& files, const Text& path, const char* expected) {
    try {
        return ReadWholeFile(files, path);
    } catch (const RuntimeError& error) {
        throw UnreadableFile(path, error, expected);
    }
}

void ForEachSiteLine(Files& files, const Text& path,
                     const std::function<void(size_t number, const std::vector<Text>& fields)>& take) {
    const Text content = ReadInputFile(files, path, "a list of sites");
    size_t number = 0;
    for (TextView line : SplitViews(content, '\n')) {
        ++number;
        if (line.ends_with('\r')) line.remove_suffix(1);
        if (line.empty()) continue;
        const std::vector<Text> fields = Split(line, '\t');
        if (fields.size() != 3) {
            throw InputError(path + ", line " + std::to_string(number) + ": " + std::to_string(fields.size()) +
                             " fields where URL, category and validated are expected: " + Quoted(line));
        }
        take(number, fields);
    }
}

}  // namespace tb
