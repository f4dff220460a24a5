#include "service/web/SiteTexts.h"

#include <algorithm>

#include "service/web/FrameBuilder.h"

namespace tb {

namespace {

// Line 1 of a reply.
constexpr const char* StartAnew = "1";
constexpr const char* OnTop = "0";

void AppendLine(Text& lines, char sign, const Site& site) {
    lines += sign;
    for (const Text* field : {&site.Url, &site.Category, &site.Validated}) {
        lines += '\t';
        lines += *field;
    }
    lines += '\n';
}

Text Head(const Text& stamp, const char* mode) { return stamp + "\n" + mode + "\n"; }

}  // namespace

ChangeText ReadChangeText(Database& database) {
    ChangeText text;
    Transaction view(database, Transaction::Kind::Read);
    SiteHistory history(database);
    text.Publications = history.Recorded();
    auto publication = text.Publications.begin();
    const auto beginUpTo = [&](std::int64_t change) {
        for (; publication != text.Publications.end() && publication->LastChange <= change; ++publication) {
            text.Begins[publication->Stamp] = text.Lines.size();
        }
    };
    history.ForEachChange([&](const Change& change) {
        beginUpTo(change.Number - 1);
        AppendLine(text.Lines, change.IsAdded ? '+' : '-', change.Entry);
    });
    beginUpTo(text.Publications.back().LastChange);
    std::reverse(text.Publications.begin(), text.Publications.end());
    return text;
}

Text FramedChanges(const ChangeText& changes, size_t begin) {
    FrameBuilder frame;
    frame.Append(Head(changes.Latest().Stamp, OnTop));
    frame.Append(TextView(changes.Lines).substr(begin));
    return frame.Finish();
}

Text FramedNothing(const Text& stamp) {
    FrameBuilder frame;
    frame.Append(stamp + "\n");
    return frame.Finish();
}

WholeList FramedWholeList(Database& database, const std::atomic<bool>& stop) {
    Transaction view(database, Transaction::Kind::Read);
    SiteHistory history(database);
    WholeList whole;
    const Publication latest = history.Latest();
    whole.Stamp = latest.Stamp;
    if (latest.IsNone()) return whole;
    FrameBuilder frame;
    frame.Append(Head(whole.Stamp, StartAnew));
    Text line;
    history.ForEachSite([&](const Site& site) {
        line.clear();
        AppendLine(line, '+', site);
        frame.Append(line);
        return !stop;
    });
    if (stop) return {};
    whole.Framed = frame.Finish();
    return whole;
}

}  // namespace tb
