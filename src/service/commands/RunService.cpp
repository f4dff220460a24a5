#include <optional>

#include "commandline/Options.h"
#include "service/commands/ServiceCommands.h"

namespace tb {

namespace {

struct ServiceCommand {
    const char* Name;
    const char* Forms;
    const char* Does;
    void (*Run)(const std::filesystem::path&, const Words&);
};

constexpr ServiceCommand Commands[] = {
    {"init", "",
     "makes the folder and a store in it, from which clients learn nothing before a list is imported; one that is\n"
     "there stays as it is",
     InitCommand},
    {"serve", "[--port 8765] [--listen ADDR]...",
     "answers clients until SIGTERM or SIGINT; port 0 takes a free one. Listens on 127.0.0.1 to 127.0.0.10 unless told",
     ServeCommand},
    {"sites import", "FILE",
     "adds or changes the sites of the lines \"URL TAB category TAB validated\"; a URL without a scheme stands for\n"
     "http and https",
     ImportSitesCommand},
    {"sites remove", "URL", "takes a site off the list, without a scheme both", RemoveSiteCommand},
    {"publish defaults", "FILE.xml", "the defaults that clients start with from now on", PublishDefaultsCommand},
    {"publish reference", "FILE.xml", "the reference tables that clients start with from now on",
     PublishReferenceCommand},
    {"publish update",
     "DIR --version N [--sign PREFIX.pem] [--test NAME]\n"
     "DIR --manifest FILE [--key PREFIX.pub] [--test NAME]",
     "the .exe, .dll, .ocx and .chm files in DIR as version number N, above all before; --sign signs it. Or a\n"
     "manifest of \"tbtool manifest\", with FILE.sig of \"tbtool sign\" if it is there, which --key checks. --test:\n"
     "only for clients whose setting TestVersion is NAME",
     PublishUpdateCommand},
    {"submissions list", "", "\"ID TAB kind TAB status TAB disposition TAB received TAB subject or URL\"",
     ListSubmissionsCommand},
    {"submissions show", "[--fields] ID",
     "an e-mail as it came in, or the fields of a URL; with --fields those of an e-mail. On a terminal, and in all\n"
     "fields, what is no printable ASCII stands as \\xHH",
     ShowSubmissionCommand},
    {"submissions judge", "ID STATUS DISPOSITION [--publish]",
     "status 0 to 5, disposition 0 to 2; --publish puts the URL, or all http and https URLs of the e-mail, on the list",
     JudgeSubmissionCommand},
    {"status", "", "what is published, and what has come in", StatusCommand},
};

}  // namespace

int RunService(Words words, const Text& version) {
    CommandLine line{"tbservice", version, "--data DIR ", {}};
    std::optional<Text> folder;
    if (!words.empty() && words.front() == "--data") {
        folder = words.size() > 1 ? words[1] : Text();
        words.erase(words.begin(), words.begin() + (words.size() > 1 ? 2 : 1));
    }
    for (const ServiceCommand& command : Commands) {
        line.Commands.push_back({command.Name, command.Forms, command.Does, [&](const Words& rest) {
                                     if (!folder) throw UsageError("--data DIR comes before the command");
                                     if (folder->empty()) throw UsageError("the folder behind --data is empty");
                                     command.Run(*folder, rest);
                                 }});
    }
    return RunCommandLine(line, words);
}

}  // namespace tb
