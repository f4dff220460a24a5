#include "sitedb/OverridesFile.h"

#include <algorithm>

#include "components/tbXML/Document.h"

namespace tb {

namespace {

constexpr TextView FirstLineBegin = "<SiteOverrides Date='";
constexpr TextView FirstLineEnd = "' Version='1.0'>";
constexpr TextView LastLine = "</SiteOverrides>";
constexpr TextView Indent = "  ";
constexpr TextView SiteBegin = "<Site>";
constexpr TextView SiteEnd = "</Site>";
constexpr TextView LineEnd = "\r\n";

// The lines of a text of which each has its end; none of any other text.
std::vector<TextView> WholeLines(TextView content) {
    std::vector<TextView> lines;
    for (size_t end; (end = content.find(LineEnd)) != TextView::npos; content.remove_prefix(end + LineEnd.size())) {
        lines.push_back(content.substr(0, end));
    }
    if (!content.empty()) lines.clear();
    return lines;
}

// What stands between the two, or nothing when they are not there.
std::optional<TextView> Between(TextView begin, TextView line, TextView end) {
    if (!line.starts_with(begin)) return std::nullopt;
    line.remove_prefix(begin.size());
    if (!line.ends_with(end)) return std::nullopt;
    return line.substr(0, line.size() - end.size());
}

// The URLs of a file as it was written here.
std::optional<std::vector<Text>> ReadWritten(TextView content) {
    const std::vector<TextView> lines = WholeLines(content);
    if (lines.size() < 2 || lines.back() != LastLine || !Between(FirstLineBegin, lines.front(), FirstLineEnd)) {
        return std::nullopt;
    }
    const Text begin = Text(Indent) + Text(SiteBegin);
    std::vector<Text> urls;
    for (size_t number = 1; number + 1 < lines.size(); ++number) {
        const std::optional<TextView> url = Between(begin, lines[number], SiteEnd);
        if (!url) return std::nullopt;
        urls.emplace_back(*url);
    }
    return urls;
}

// Where an element begins from `index` on: behind a tag, or first on its line. Inside of a URL the tag begins none.
size_t FindSite(TextView content, size_t index) {
    for (;; ++index) {
        index = content.find(SiteBegin, index);
        if (index == TextView::npos) return content.size();
        const size_t before = content.substr(0, index).find_last_not_of(" \t");
        if (before == TextView::npos || content[before] == '\n' || content[before] == '>') return index;
    }
}

// What a person means who wrote XML; the text as it stands where that is none.
Text SiteText(TextView text) {
    return TrapOr(
        Text(text),
        [&] {
            Document site;
            site.LoadXML(Text(SiteBegin) + Text(text) + Text(SiteEnd));
            return site.Root()->Count() == 0 ? site.Root()->Body() : Text(text);
        },
        [](const RuntimeError&) { /* a "<" in the URL, most likely */ });
}

void ReadSites(TextView content, OverridesFile& file) {
    for (size_t begin = FindSite(content, 0); begin < content.size();) {
        const size_t next = FindSite(content, begin + SiteBegin.size());
        const TextView rest = content.substr(begin + SiteBegin.size(), next - begin - SiteBegin.size());
        // The last end of that line: one before it belongs to the URL.
        const size_t end = rest.find(SiteEnd);
        if (end == TextView::npos) {
            ++file.Lost;
        } else {
            file.URLs.push_back(SiteText(rest.substr(0, rest.substr(0, rest.find('\n', end)).rfind(SiteEnd))));
        }
        begin = next;
    }
}

}  // namespace

Text OverridesFile::Written(const std::vector<Text>& urls, const Text& date) {
    Text content = Text(FirstLineBegin) + date + Text(FirstLineEnd) + Text(LineEnd);
    for (const Text& url : urls) {
        content += Indent;
        content += SiteBegin;
        content += ReplaceAll(ReplaceAll(url, "\r", "%0d"), "\n", "%0a");
        content += SiteEnd;
        content += LineEnd;
    }
    return content + Text(LastLine) + Text(LineEnd);
}

OverridesFile OverridesFile::Read(TextView content) {
    OverridesFile file;
    if (auto urls = ReadWritten(content)) {
        file.URLs = *std::move(urls);
        return file;
    }
    try {
        Document document;
        document.LoadXML(content);
        for (const ElementPtr& site : document) file.URLs.push_back(site->Body());
    } catch (const RuntimeError& error) {
        file.Defect = error;
        ReadSites(content, file);
        if (file.URLs.empty()) throw;
    }
    return file;
}

}  // namespace tb
