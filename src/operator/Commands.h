// The commands of the operator's tool. Each takes the words behind its name, reads standard input and writes standard
// output as the usage text tells, and raises a UsageError or an InputError.
#pragma once

#include <vector>

#include "base/text.h"

namespace tb {

// Judges request lines as the browser channel does: one reply a line.
void CheckCommand(const std::vector<Text>& words);

// Scores lines of a URL and its addresses by reference data: one score and country a line.
void ScoreCommand(const std::vector<Text>& words);

// Puts a frame around standard input; takes the text out of one.
void FrameCommand(const std::vector<Text>& words);
void UnframeCommand(const std::vector<Text>& words);

// Writes a list as a snapshot file; prints a snapshot file.
void SnapshotSaveCommand(const std::vector<Text>& words);
void SnapshotShowCommand(const std::vector<Text>& words);

// Makes a pair of keys for program updates; writes the manifest of a staged folder; signs one.
void KeygenCommand(const std::vector<Text>& words);
void ManifestCommand(const std::vector<Text>& words);
void SignCommand(const std::vector<Text>& words);

}  // namespace tb
