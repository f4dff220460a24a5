#include "service/web/SiteTexts.h"

#include <algorithm>

#include "base/numbers.h"
#include "sitedb/codec/Encryption.h"
#include "sitedb/codec/cCRC32.h"

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

// Room for the longest checksum and the letter behind it; what is not needed of it goes at the end.
constexpr size_t HeadRoom = 9;
constexpr size_t PieceSize = 65536;

// A frame (docs/formats/frame.md) made piece by piece, so that a long text need not be there as a whole beside it.
class FrameBuilder {
public:
    void Append(TextView plain) {
        m_Pending += plain;
        if (m_Pending.size() >= PieceSize) Seal();
    }
    // The frame of everything appended, which must be something. Nothing may follow.
    Text Finish() {
        Seal();
        m_Frame.replace(0, HeadRoom, ToHex(static_cast<std::uint32_t>(m_Check)) + 'G');
        return std::move(m_Frame);
    }

private:
    void Seal() {
        if (m_Pending.empty()) return;
        const Text& key = GetScrambleKey();
        const Text piece = XorWithScrambleKey(m_Pending, key, static_cast<std::int16_t>(m_Scrambled % key.size()));
        m_Check = cCRC32().GetStringCrc32(piece, m_Check);
        m_Scrambled += piece.size();
        m_Frame += piece;
        m_Pending.clear();
    }

    Text m_Pending;
    Text m_Frame = Text(HeadRoom, ' ');
    size_t m_Scrambled = 0;
    std::int32_t m_Check = 0;
};

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
