#include "commandline/Options.h"
#include "commandline/StandardStreams.h"
#include "operator/Commands.h"
#include "operator/LastLine.h"
#include "sitedb/codec/Encryption.h"

namespace tb {

void FrameCommand(const std::vector<Text>& words) {
    if (!words.empty()) throw UsageError("unexpected " + words.front());
    const Text plain = ReadStandardInput();
    if (plain.empty()) throw InputError("nothing on standard input, and a frame cannot be empty");
    WriteStandardOutput(EncryptStringChk(plain));
    FlushStandardOutput();
}

void UnframeCommand(const std::vector<Text>& words) {
    if (!words.empty()) throw UsageError("unexpected " + words.front());
    LastLine log;
    Text plain;
    if (!ChkEncryptString(ReadStandardInput(), plain, log)) {
        throw InputError("no intact frame on standard input: " + log.Or("the checksum is wrong"));
    }
    WriteStandardOutput(plain);
    FlushStandardOutput();
}

}  // namespace tb
