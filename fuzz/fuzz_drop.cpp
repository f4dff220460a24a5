// What is dropped on the program, and what is sent of it: no input breaks the way from the drop to the service, and a
// mail that was queued is posted whole. The first byte chooses the format, debug mode, and whether the body is as long
// as those that mail programs store (pictures in Base64, compressed RTF); a stored message's streams are joined by
// "\x01", the descriptor before them.
#include <cstdlib>

#include "base/errors.h"
#include "sitedb/codec/Base64.h"
#include "submissions/CEmailMessage.h"
#include "submissions/SubmissionRig.h"
#include "urlcheck/url/UrlDecode.h"

namespace {

using tb::Text;

void Require(bool condition) {
    if (!condition) std::abort();
}

// Beyond what the fuzzer makes by itself.
constexpr std::size_t LongBody = 200000;

Text Repeated(const Text& text) {
    Text longer = text;
    while (!text.empty() && longer.size() < LongBody) longer += text;
    return longer;
}

tb::FakeDrop Dropped(const tb::SubmissionDB& db, char kind, const Text& content) {
    tb::FakeDrop drop;
    if (kind % 3 == 0) {
        drop.Formats[db.cfInternetMessage] = content;
    } else if (kind % 3 == 1) {
        drop.Formats[tb::PlainTextFormat] = content;
    } else {
        static constexpr const char* streams[] = {"__substg1.0_007D001E", "__substg1.0_1013001E",
                                                  "__substg1.0_10090102", "__substg1.0_1000001E"};
        const std::vector<Text> parts = tb::Split(content, '\x01');
        drop.Formats[db.cfFileGroupDescriptor] = "";
        drop.Messages.resize(1);
        for (size_t index = 0; index < parts.size(); ++index) {
            if (index == 0) drop.Descriptor = parts[0];
            // An empty one is not there: the next kind of body is taken.
            const bool isStream = index > 0 && index <= std::size(streams) && !parts[index].empty();
            if (isStream) drop.Messages[0].Streams[streams[index - 1]] = parts[index];
        }
    }
    return drop;
}

// The field of a post.
Text Field(const Text& post, const Text& name) {
    const size_t start = post.find("&" + name + "=");
    Require(start != Text::npos);
    const size_t value = start + name.size() + 2;
    return tb::UrlDecode(post.substr(value, post.find('&', value) - value));
}

// The post says what the queue file says.
void Compare(const Text& queued, const Text& post) {
    const tb::QueueText read = tb::ReadQueueText(queued);
    if (post.substr(0, 7) == "TRN=EML") {
        Require(Field(post, "Header") + "\r\n\r\n" + tb::Base64Decode(Field(post, "Body64")) == read.Content);
    } else {
        Require(Field(post, "Main_URL") == read.Key);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    tb::SubmissionRig rig;
    if ((data[0] & 0x80) != 0) rig.SetDebug();
    rig.Set("ConfirmSubmission", "0");
    Text content(reinterpret_cast<const char*>(data) + 1, size - 1);
    // Of a stored message it is the last stream.
    if ((data[0] & 0x40) != 0) content += Repeated(content.substr(content.rfind('\x01') + 1));
    tb::FakeDrop drop = Dropped(*rig.DB, static_cast<char>(data[0] & 0x3F), content);
    rig.DB->DoDrop(drop);
    std::vector<Text> queued;
    for (const auto& [path, file] : rig.System.Files.Contents) {
        if (path.parent_path() == rig.DB->Queue().Folder()) queued.push_back(file);
    }
    rig.Web.Replies = {{"SubmitEmail.aspx", "1-1"}, {"SubmitURL.aspx", "1-2"}};
    rig.DB->ProcessSubmissions();
    Require(rig.Queue().empty());
    Require(rig.Web.Requests.size() == queued.size());
    for (size_t index = 0; index < queued.size() && queued.size() < 2; ++index) {
        Compare(queued[index], rig.Web.Requests[index].Body);
    }
    // The list on the disk reads back as it is in memory.
    const tb::Lines stored = rig.Stored();
    rig.Start();
    Require(rig.Stored() == stored);
    return 0;
}
