#include <algorithm>

#include "service/web/ServicePages.h"

namespace tb {

namespace {

constexpr size_t NewsShown = 10;

Text Escaped(TextView text) {
    Text result;
    for (const char character : text) {
        switch (character) {
        case '<': result += "&lt;"; break;
        case '>': result += "&gt;"; break;
        case '&': result += "&amp;"; break;
        case '"': result += "&quot;"; break;
        default: result += character;
        }
    }
    return result;
}

Text Row(const std::vector<Text>& cells, const char* tag = "td") {
    Text row = "<tr>";
    for (const Text& cell : cells) row += Text("<") + tag + ">" + Escaped(cell) + "</" + tag + ">";
    return row + "</tr>\n";
}

// "2026-11-21 09:31 UTC"
Text Readable(const Text& stamp) {
    return stamp.substr(0, 4) + "-" + stamp.substr(4, 2) + "-" + stamp.substr(6, 2) + " " + stamp.substr(8, 2) + ":" +
           stamp.substr(10, 2) + " UTC";
}

Reply HtmlReply(const Text& title, const Text& content) {
    const Text html =
        "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n"
        "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>" TRAWLBEAM_PRODUCT_NAME
        " - " +
        title + "</title>\n</head>\n<body>\n<h1>" + title + "</h1>\n" + content + "</body>\n</html>\n";
    return {200, "text/html; charset=windows-1252", std::make_shared<const Text>(html), {}};
}

constexpr const char* NoList = "<p>No list of sites is published yet.</p>\n";

Reply ShowStart() {
    return HtmlReply(
        "Web service",
        "<p>This is the web service of " TRAWLBEAM_PRODUCT_NAME
        ", a program that warns of malicious sites. It keeps the program's list, takes what people submit, "
        "and has these pages:</p>\n"
        "<ul>\n<li><a href=\"/show1.aspx\">Main</a>: how many sites are listed</li>\n"
        "<li><a href=\"/show2.aspx\">News</a>: the latest changes</li>\n"
        "<li><a href=\"/show3.aspx\">Statistics</a>: what came and went</li>\n</ul>\n");
}

Reply ShowList(SiteFeed& feed) {
    const Publication latest = feed.Changes()->Latest();
    if (latest.IsNone()) return HtmlReply("Main", NoList);
    const char* sites = latest.Sites == 1 ? " malicious site is" : " malicious sites are";
    return HtmlReply("Main", "<p>" + std::to_string(latest.Sites) + sites +
                                 " listed.</p>\n<p>Last change: " + Readable(latest.Stamp) + "</p>\n");
}

// Nothing when there are no rows.
Text Table(const std::vector<Text>& head, const Text& rows) {
    return rows.empty() ? rows : "<table border=1>\n" + Row(head, "th") + rows + "</table>\n";
}

Reply ShowNews(SiteFeed& feed, DocumentCache& documents) {
    const auto changes = feed.Changes();
    Text publications;
    const size_t shown = std::min(NewsShown, changes->Publications.size());
    for (size_t index = 0; index < shown; ++index) {
        const Publication& publication = changes->Publications[index];
        if (publication.IsNone()) break;
        publications +=
            Row({Readable(publication.Stamp), std::to_string(publication.Added), std::to_string(publication.Removed)});
    }
    Text files;
    for (const TextView name : {DefaultsFile, ReferenceFile}) {
        const auto document = documents.Find(Text(name));
        if (document) files += Row({Text(name), document->Version, FormatDateTime(document->Modified) + " UTC"});
    }
    return HtmlReply("News", (publications.empty() ? NoList : Table({"List of", "New", "Gone"}, publications)) +
                                 Table({"File", "Version", "Published"}, files));
}

Reply ShowStatistics(SiteFeed& feed) {
    const auto changes = feed.Changes();
    if (changes->Latest().IsNone()) return HtmlReply("Statistics", NoList);
    // The oldest one is there for its stamp; its own changes are not on record.
    const Publication& oldest = changes->Publications.back();
    std::int64_t added = 0;
    std::int64_t removed = 0;
    for (const Publication& publication : changes->Publications) {
        if (publication.LastChange == oldest.LastChange) break;
        added += publication.Added;
        removed += publication.Removed;
    }
    return HtmlReply("Statistics",
                     "<table border=1>\n" + Row({"Sites", std::to_string(changes->Latest().Sites)}) +
                         Row({"On record since", oldest.IsNone() ? "the beginning" : Readable(oldest.Stamp)}) +
                         Row({"Publications since", std::to_string(changes->Publications.size() - 1)}) +
                         Row({"Sites that came", std::to_string(added)}) +
                         Row({"Sites that went", std::to_string(removed)}) + "</table>\n");
}

}  // namespace

void AddShowPages(Pages& pages, SiteFeed& feed, DocumentCache& documents) {
    const auto add = [&](const char* path, std::function<Reply(const Question&)> answer) {
        pages.push_back({path, true, false, 0, std::move(answer)});
    };
    add("/", [](const Question&) { return ShowStart(); });
    add("/show1.aspx", [&feed](const Question&) { return ShowList(feed); });
    add("/show2.aspx", [&feed, &documents](const Question&) { return ShowNews(feed, documents); });
    add("/show3.aspx", [&feed](const Question&) { return ShowStatistics(feed); });
}

}  // namespace tb
