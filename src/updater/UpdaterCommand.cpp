#include "updater/UpdaterCommand.h"

#include "refdata/manifest/UpdateManifest.h"

namespace tb {

namespace {

// Takes the last word off `line`.
TextView TakeLastWord(TextView& line) {
    line = Trim(line);
    const size_t blank = line.find_last_of(" \t");
    const size_t begin = blank == TextView::npos ? 0 : blank + 1;
    const TextView word = line.substr(begin);
    line = line.substr(0, begin);
    return word;
}

bool IsUpdater(TextView lastWord) {
    const Text word = RemoveAll(lastWord, "\"");
    return ("\\" + UpperCase(word)).ends_with("\\" + UpperCase(UpdaterName));
}

bool IsProgram(TextView word) {
    return IsPlainFileName(word) && UpperCase(word).ends_with(".EXE") && UpperCase(word) != UpperCase(UpdaterName);
}

}  // namespace

std::optional<UpdaterCommand> ReadUpdaterCommand(TextView line, const UpdaterCommand& byHand) {
    const TextView product = TakeLastWord(line);
    if (IsUpdater(product)) return byHand;
    const TextView program = TakeLastWord(line);
    if (Trim(line).empty() || !IsPlainFileName(product) || !IsProgram(program)) return std::nullopt;
    return UpdaterCommand{Text(program), Text(product)};
}

}  // namespace tb
