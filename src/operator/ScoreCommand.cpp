#include <cstdio>

#include "base/errors.h"
#include "commandline/Options.h"
#include "commandline/StandardStreams.h"
#include "operator/Commands.h"
#include "operator/ReferenceFile.h"
#include "platform/posix/PosixFiles.h"

namespace tb {

namespace {

// The output line for one input line; an empty one behind a note on stderr when the reference data has no score for it.
Text Score(const GeoIP& geo, const Text& line, size_t number) {
    const std::vector<Text> fields = Split(line, '\t');
    double score = 0;
    Text country;
    try {
        geo.ScoreURL(fields.empty() ? Text() : fields[0], fields.size() > 1 ? fields[1] : Text(), score, country);
    } catch (const RuntimeError& error) {
        std::fprintf(stderr, "tbtool: line %zu: no score: %s\n", number, error.Description.c_str());
        return {};
    }
    char digits[32];
    std::snprintf(digits, sizeof digits, "%.4f", score);
    return Text(digits) + "\t" + country;
}

}  // namespace

void ScoreCommand(const std::vector<Text>& words) {
    const Options options(words, {"--reference", "--home"});
    if (!options.Words().empty()) throw UsageError("unexpected " + options.Words().front());
    PosixFiles files;
    ReferenceFile reference(files, options.Require("--reference"));
    if (options.Has("--home")) reference.Home = options.Require("--home");
    GeoIP geo(reference);
    reference.Fill(geo);
    size_t number = 0;
    TextView line;
    for (LineReader lines(0); lines.Next(line);) WriteStandardOutput(Score(geo, Text(line), ++number) + "\n");
    FlushStandardOutput();
}

}  // namespace tb
