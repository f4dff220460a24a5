// Heads of answers, with the date of the servers' copy of a data file: whatever stands in one, the file is fetched or
// it stays, and the date is one that can be written.
#include <cstdlib>

#include "fakes/FakePlatform.h"
#include "fakes/FakeSender.h"
#include "fakes/RecordedLog.h"
#include "refdata/ServerLists.h"
#include "refdata/WebFiles.h"
#include "sitedb/codec/Encryption.h"

namespace {

void Require(bool condition) {
    if (!condition) std::abort();
}

void Fetch(const tb::Text& head) {
    static const tb::Text reply = tb::EncryptStringChk("<BEGIN/>");
    tb::FakeSystem system;
    tb::App program{system, tb::TestDeployment()};
    tb::RecordedLog log;
    tb::FakeWeb web;
    web.Heads["f.bin"] = head;
    web.Replies["f.bin"] = reply;
    tb::WebFiles files({program, log, web.Factory()});
    const tb::ElementPtr server = tb::MakeServerElement(1, "S", "t", "", "");
    const bool fetched = files.GetFileFromWebService(server, "f.bin", "f.bin");
    Require(fetched == (system.Files.Contents["/app/Data/f.bin"] == reply));
    Require(fetched == log.Lines.empty());
    tb::Trap(
        [&] {
            const std::optional<tb::Date> date = files.ServerDate(*files.MakeSender(), server, "f.bin");
            Require(!fetched || tb::ParseDate(tb::FormatDateTime(date.value())) == *date);
        },
        [&](const tb::RuntimeError& error) {
            Require(!fetched && error.Number != static_cast<std::int32_t>(tb::ErrorNumber::Internal));
        });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const tb::Text head(reinterpret_cast<const char*>(data), size);
    Fetch(head);
    Fetch("HTTP/1.1 200 OK\r\nLast-Modified: " + head + "\r\n\r\n");
    return 0;
}
