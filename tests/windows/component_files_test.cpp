// The files tbSender.dll and tbXML.dll as they are built, from outside.
#include <gtest/gtest.h>

#include "components/tbSender/tbSenderFace.h"
#include "components/tbXML/Document.h"
#include "fakes/Raised.h"
#include "platform/win32/ComponentLibrary.h"
#include "windows/ProgramProcess.h"
#include "windows/ScratchFolder.h"

namespace tb {
namespace {

TEST(ComponentFiles, ALibraryGivesFunctionsOrNull) {
    const ScratchFolder folder;
    ComponentLibrary library(folder.Path() / tbSenderFace::File);
    EXPECT_EQ(library.Function(tbSenderFace::Entry), nullptr);
    std::filesystem::copy_file(BuiltProgram(tbSenderFace::File), library.File());
    EXPECT_NE(library.Function(tbSenderFace::Entry), nullptr) << "once it is there";
    EXPECT_EQ(library.Function("another"), nullptr);
    EXPECT_EQ(ComponentLibrary(tbSenderFace::File).Function(tbSenderFace::Entry), nullptr) << "no full path";
}

TEST(ComponentFiles, ErrorsOfDocumentsAreRaisedOnThisSide) {
    EXPECT_NE(GetModuleHandleA("tbXML.dll"), nullptr);
    Document document;
    document.LoadXML("<a/>");
    EXPECT_EQ(Raised([&] { document.LoadXML("<a>\n</b>"); }), XmlErrorNumber);
    EXPECT_EQ(document.Root()->XML(), "<a></a>\r\n");
    EXPECT_EQ(Raised([&] { document.Root()->Attribute(1); }), static_cast<std::int32_t>(ErrorNumber::Subscript));
}

// Two manifests, the compiler's and ours, would be none to the system.
TEST(ProgramFiles, HoldOneManifestAndLibrariesNone) {
    const auto manifests = [](const char* name) {
        const auto count = [](HMODULE, LPCSTR, LPSTR, LONG_PTR total) -> BOOL {
            ++*reinterpret_cast<int*>(total);
            return TRUE;
        };
        const HMODULE file = LoadLibraryExW(BuiltProgram(name).c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
        int total = file == nullptr ? -1 : 0;
        EnumResourceNamesA(file, RT_MANIFEST, count, reinterpret_cast<LONG_PTR>(&total));
        FreeLibrary(file);
        return total;
    };
    for (const char* program : {"Trawlbeam.exe", "tbUpdater.exe", "tbprobe.exe", "components_test.exe"})
        EXPECT_EQ(manifests(program), 1) << program;
    EXPECT_EQ(manifests("tbXML.dll"), 0);
}

}  // namespace
}  // namespace tb
