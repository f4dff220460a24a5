// The operator's tool: judges requests, frames data files, handles snapshots and signs updates from a command line.
#include "commandline/CommandLine.h"
#include "operator/Commands.h"

namespace {

std::vector<tb::Command> Commands() {
    return {
        {"check", "(--list FILE | --snapshot FILE) [--overrides FILE] [--reference FILE] [--stats]",
         "judges request lines on standard input, one reply a line; \"Allow\" changes\n"
         "memory only; --reference takes a reference document, plain or framed",
         tb::CheckCommand},
        {"score", "--reference FILE [--home COUNTRY]",
         "scores lines \"URL TAB addresses\" on standard input: \"score TAB country\"", tb::ScoreCommand},
        {"frame", "", "puts the checked, scrambled frame around standard input", tb::FrameCommand},
        {"unframe", "", "takes the text out of a frame", tb::UnframeCommand},
        {"snapshot save", "--list FILE --stamp YYYYMMDDHHMM --out DIR",
         "writes the lines \"URL TAB category TAB validated\" of FILE as a snapshot", tb::SnapshotSaveCommand},
        {"snapshot show", "FILE", "prints a snapshot: stamp, count and fingerprint, then its entries",
         tb::SnapshotShowCommand},
        {"keygen", "--out PREFIX",
         "makes a pair of keys for program updates: PREFIX.pem, to be kept secret,\n"
         "and PREFIX.pub, whose line is the deployment's TRAWLBEAM_UPDATE_KEY",
         tb::KeygenCommand},
        {"manifest", "DIR --version N --out FILE",
         "writes the update manifest of the program files in DIR, not below it", tb::ManifestCommand},
        {"sign", "--key PREFIX.pem FILE DIR",
         "puts the hashes of DIR's files into the manifest FILE, signs it: FILE.sig", tb::SignCommand},
    };
}

}  // namespace

int main(int argc, char** argv) {
    return tb::RunCommandLine({"tbtool", TRAWLBEAM_VERSION, "", Commands()}, {argv + 1, argv + argc});
}
