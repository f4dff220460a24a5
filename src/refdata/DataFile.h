// The data files "defaults.bin" and "reference.bin": one frame around one XML document, whose root carries the
// attribute Version. Formats: docs/formats/defaults.md and docs/formats/reference.md.
#pragma once

#include <functional>
#include <optional>

#include "base/errors.h"
#include "refdata/ServiceAccess.h"

namespace tb {

// The text in the frame at `Path`; empty when there is none. A file that cannot be read and one that is no frame are
// each one line of level 0; a wrong checksum is none. `Failure` is the error of a file that cannot be read, else stays.
Text OpenDefaultsFile(const ServiceAccess& access, const std::filesystem::path& Path,
                      RuntimeError* Failure = nullptr) noexcept;

// The root of the document; an error of the parser for a text that is none.
ElementPtr DocumentRoot(const Text& plain);

// Settings that belong to nobody, for a load that is only tried.
xmlINI ThrowAwaySettings(const App& app);

// The error of a document that is well-formed and cannot be used.
RuntimeError Defect(const Text& description);

// Older than what any server has, local time.
Date OldestDate();

// One of the two, and its lines.
struct DataFile {
    // In the data folder.
    Text Name;
    Text FormatError;
    Text VersionError;
};

// What reading one has come to.
struct LoadedFile {
    // The document's root, or null behind one of the lines.
    ElementPtr Root;
    // After the line of the format: what kept the file from being read, number 0 when it can be read and is no frame.
    std::optional<RuntimeError> FormatFailure;
};

// Reads the file. While its version lies below `MinVersion`, compared as texts, it is deleted and `retrieve` is to
// bring another, twice at most; an empty `MinVersion` takes any. Raises an error of the parser for a text that is no
// document.
LoadedFile LoadDataFile(const ServiceAccess& access, const DataFile& file, const Text& MinVersion,
                        const std::function<void()>& retrieve);

}  // namespace tb
