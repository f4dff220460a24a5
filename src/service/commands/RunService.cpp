#include <cstdio>

#include "base/errors.h"
#include "operator/Options.h"
#include "service/commands/ServiceCommands.h"

namespace tb {

namespace {

constexpr const char* Usage = R"(usage: tbservice --data DIR COMMAND
  serve [--port 8765] [--listen ADDR]...
      answers clients until SIGTERM or SIGINT; port 0 takes a free one. Listens on 127.0.0.1 to 127.0.0.10 unless told
  sites import FILE
      adds or changes the sites of the lines "URL TAB category TAB validated"; without a scheme a URL stands for both
  sites remove URL
  publish defaults FILE.xml
  publish reference FILE.xml
  publish update DIR --version N [--sign PREFIX.pem] [--test NAME]
  publish update DIR --manifest FILE [--key PREFIX.pub] [--test NAME]
      the .exe, .dll, .ocx and .chm files in DIR as version number N, above all before; --sign signs it. Or a manifest
      of "tbtool manifest", with FILE.sig of "tbtool sign" if it is there, which --key checks. --test: only for clients
      whose setting TestVersion is NAME
  submissions list
      "ID TAB kind TAB status TAB disposition TAB received TAB subject or URL"
  submissions show [--fields] ID
      an e-mail as it came in, or the fields of a URL; with --fields those of an e-mail
  submissions judge ID STATUS DISPOSITION [--publish]
      status 0 to 5, disposition 0 to 2; --publish puts the URL, or all http and https URLs of the e-mail, on the list
  status
Exit status: 0 done, 1 broken input or a failure, 2 wrong command line.
)";

struct Command {
    const char* Name;
    void (*Run)(const std::filesystem::path&, const Words&);
};

constexpr Command Commands[] = {
    {"serve", ServeCommand},
    {"sites import", ImportSitesCommand},
    {"sites remove", RemoveSiteCommand},
    {"publish defaults", PublishDefaultsCommand},
    {"publish reference", PublishReferenceCommand},
    {"publish update", PublishUpdateCommand},
    {"submissions list", ListSubmissionsCommand},
    {"submissions show", ShowSubmissionCommand},
    {"submissions judge", JudgeSubmissionCommand},
    {"status", StatusCommand},
};

// Removes the first word and returns it.
Text Take(Words& words, const char* what) {
    if (words.empty()) throw UsageError(Text("no ") + what);
    Text word = words.front();
    words.erase(words.begin());
    return word;
}

void Run(Words words) {
    if (Take(words, "command") != "--data") throw UsageError("--data DIR comes first");
    const std::filesystem::path folder = Take(words, "folder behind --data");
    if (folder.empty()) throw UsageError("the folder behind --data is empty");
    Text name = Take(words, "command");
    if (name == "sites" || name == "publish" || name == "submissions") {
        name += " " + Take(words, "second word of the command");
    }
    for (const Command& command : Commands) {
        if (name == command.Name) return command.Run(folder, words);
    }
    throw UsageError("unknown command " + name);
}

}  // namespace

int RunService(Words words) {
    try {
        Run(std::move(words));
        return 0;
    } catch (const UsageError& error) {
        std::fprintf(stderr, "tbservice: %s\n%s", error.what(), Usage);
        return 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "tbservice: %s\n", error.what());
    }
    return 1;
}

}  // namespace tb
