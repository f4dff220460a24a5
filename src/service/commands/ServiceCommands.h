// The commands of the web service's program. Each works on the store in `folder`, may be run while the service runs on
// it, and does all of its work or none. `words` are those behind the command's name. Each raises a UsageError for a
// wrong command line, an InputError or a StoreError.
#pragma once

#include <filesystem>

#include "commandline/CommandLine.h"

namespace tb {

// Makes the store, unless there is one.
void InitCommand(const std::filesystem::path& folder, const Words& words);

// Answers clients until the process is asked to end (SIGTERM, SIGINT). Only on a store that is there: one that was made
// for a mistyped folder would have nothing to say.
void ServeCommand(const std::filesystem::path& folder, const Words& words);

void ImportSitesCommand(const std::filesystem::path& folder, const Words& words);
void RemoveSiteCommand(const std::filesystem::path& folder, const Words& words);

void PublishDefaultsCommand(const std::filesystem::path& folder, const Words& words);
void PublishReferenceCommand(const std::filesystem::path& folder, const Words& words);
// A new version of the program, for everybody or as a test version.
void PublishUpdateCommand(const std::filesystem::path& folder, const Words& words);

// Prints a line for each: identifier, kind, status, disposition, moment, and subject or URL, with tabs between them.
void ListSubmissionsCommand(const std::filesystem::path& folder, const Words& words);
// Prints a mail byte for byte as its parts were posted, though Visible on a terminal, or the fields of a URL.
void ShowSubmissionCommand(const std::filesystem::path& folder, const Words& words);
// Publishes the submission's URLs first, if asked to, then keeps the judgement: after an end in between it can be given
// again.
void JudgeSubmissionCommand(const std::filesystem::path& folder, const Words& words);

void StatusCommand(const std::filesystem::path& folder, const Words& words);

// The whole program: its exit status, as RunCommandLine tells it. `words` are those behind the program's name.
int RunService(Words words, const Text& version);

}  // namespace tb
