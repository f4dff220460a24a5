// Manifests of program updates and their signatures, as a server may send them: what can be read at all names plain
// files and numbers in their range, what is signed is one line for each of them, and a check writes nowhere but into
// the folder of updates.
#include <algorithm>
#include <cstdlib>

#include "components/tbXML/XmlParser.h"
#include "fakes/FakePlatform.h"
#include "fakes/FakeSender.h"
#include "fakes/RecordedLog.h"
#include "refdata/cUpdate.h"
#include "refdata/manifest/SignedManifest.h"

namespace {

void Require(bool condition) {
    if (!condition) std::abort();
}

// Errors that a text of others may raise.
void Expected(const tb::RuntimeError& error) {
    Require(error.Number != static_cast<std::int32_t>(tb::ErrorNumber::Internal));
}

void ReadManifest(const tb::Text& text) {
    tb::Trap(
        [&] {
            const tb::ElementPtr manifest = tb::ParseXml(text);
            if (!manifest) return;
            const tb::Text lines = tb::SignedText(*manifest);
            Require(tb::ManifestNumber(*manifest) >= 0 && tb::TotalDownloadSize(*manifest) >= 0);
            std::ptrdiff_t files = 0;
            for (const tb::ElementPtr& child : *manifest) {
                if (!tb::TakesPart(*child)) continue;
                ++files;
                const tb::UpdateFile file = tb::ReadFileElement(*child, {});
                Require(file.SIZE >= 0 && std::filesystem::path(file.FILE).filename() == file.FILE);
                Require(tb::IsFileHash(file.SHA256) && lines.find(file.SHA256) != tb::Text::npos);
            }
            Require(std::count(lines.begin(), lines.end(), '\n') == files + 2);
        },
        Expected);
}

void ReadSignature(const tb::Text& text) {
    const tb::Text bytes = tb::ReadP256Text(text);
    Require(bytes.empty() ||
            (bytes.size() == tb::Signatures::P256Size && tb::ReadP256Text(tb::P256Text(bytes)) == bytes));
}

void Check(const tb::Text& text) {
    tb::FakeSystem system;
    tb::App program{system, tb::TestDeployment()};
    program.Settings =
        std::make_shared<tb::xmlINI>(tb::xmlINI::Surroundings{system.Files, system.Clock, system.Dialogs, {}, ""});
    program.Settings->ReplaceGlobals("SERVERS", tb::ParseXml("<S><E NAME='UpdatesSVR'/><E NAME='GetUpdatesSVR'/></S>"));
    program.Settings->LoadINI("/app/Trawlbeam.ini");
    program.Components = std::make_shared<tb::ComponentList>();
    tb::RecordedLog log;
    tb::FakeWeb web;
    web.Replies["updates.xml"] = text;
    tb::cUpdate(tb::ServiceAccess{program, log, web.Factory()}, [] { return false; }).DoCheckForUpdates(false);
    for (const auto& [path, content] : system.Files.Contents) {
        const tb::Text place = path.lexically_normal().string();
        Require(place == "/app/Trawlbeam.ini" || place.starts_with("/app/Updates/"));
    }
    Require(system.Files.OpenCount() == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const tb::Text text(reinterpret_cast<const char*>(data), size);
    ReadManifest(text);
    ReadSignature(text);
    Check(text);
    return 0;
}
