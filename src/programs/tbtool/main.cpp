// The operator's tool: judges requests, frames data files, handles snapshots and signs updates from a command line.
#include <cstdio>

#include "base/errors.h"
#include "operator/Commands.h"
#include "operator/Options.h"

namespace {

constexpr const char* Usage = R"(usage: tbtool COMMAND
  check (--list FILE | --snapshot FILE) [--overrides FILE] [--reference FILE] [--stats]
      judges request lines on standard input, one reply a line; "Allow" changes
      memory only; --reference takes a reference document, plain or framed
  score --reference FILE [--home COUNTRY]
      scores lines "URL TAB addresses" on standard input: "score TAB country"
  frame      puts the checked, scrambled frame around standard input
  unframe    takes the text out of a frame
  snapshot save --list FILE --stamp YYYYMMDDHHMM --out DIR
      writes the lines "URL TAB category TAB validated" of FILE as a snapshot
  snapshot show FILE
      prints a snapshot: stamp, count and fingerprint, then its entries
  keygen --out PREFIX
      makes a pair of keys for program updates: PREFIX.pem, to be kept secret,
      and PREFIX.pub, whose line is the deployment's TRAWLBEAM_UPDATE_KEY
  manifest DIR --version N --out FILE
      writes the update manifest of the program files in DIR, not below it
  sign --key PREFIX.pem FILE DIR
      puts the hashes of DIR's files into the manifest FILE, signs it: FILE.sig
Exit status: 0 done, 1 broken input or a failure, 2 wrong command line.
)";

struct Command {
    const char* Name;
    void (*Run)(const std::vector<tb::Text>&);
};

constexpr Command Commands[] = {
    {"check", tb::CheckCommand},
    {"score", tb::ScoreCommand},
    {"frame", tb::FrameCommand},
    {"unframe", tb::UnframeCommand},
    {"snapshot save", tb::SnapshotSaveCommand},
    {"snapshot show", tb::SnapshotShowCommand},
    {"keygen", tb::KeygenCommand},
    {"manifest", tb::ManifestCommand},
    {"sign", tb::SignCommand},
};

void Run(std::vector<tb::Text> words) {
    if (words.empty()) throw tb::UsageError("no command");
    tb::Text name = words.front();
    words.erase(words.begin());
    if (name == "snapshot" && !words.empty()) {
        name += " " + words.front();
        words.erase(words.begin());
    }
    for (const Command& command : Commands) {
        if (name == command.Name) return command.Run(words);
    }
    throw tb::UsageError("unknown command " + name);
}

}  // namespace

int main(int argc, char** argv) {
    try {
        Run({argv + 1, argv + argc});
        return 0;
    } catch (const tb::UsageError& error) {
        std::fprintf(stderr, "tbtool: %s\n%s", error.what(), Usage);
        return 2;
    } catch (const tb::RuntimeError& error) {
        std::fprintf(stderr, "tbtool: %s\n", error.Description.c_str());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "tbtool: %s\n", error.what());
    }
    return 1;
}
