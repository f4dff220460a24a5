#include "operator/SiteList.h"

#include "operator/Options.h"

namespace tb {

void ForEachSiteLine(Files& files, const Text& path,
                     const std::function<void(size_t number, const std::vector<Text>& fields)>& take) {
    const Text content = ReadInputFile(files, path, "a list of sites");
    size_t number = 0;
    for (TextView line : SplitViews(content, '\n')) {
        ++number;
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        if (line.empty()) continue;
        const std::vector<Text> fields = Split(line, '\t');
        if (fields.size() != 3) {
            throw InputError(path + ", line " + std::to_string(number) + ": " + std::to_string(fields.size()) +
                             " fields where URL, category and validated are expected: " + Quoted(line));
        }
        take(number, fields);
    }
}

void AddSiteList(EvilDB& evilDB, Files& files, const Text& path) {
    ForEachSiteLine(files, path,
                    [&](size_t, const std::vector<Text>& fields) { evilDB.AddToDB(fields[0], fields[1], fields[2]); });
}

}  // namespace tb
