// The system's registry, text values only. Sections are paths below a root, parts joined by "\".
#pragma once

#include <optional>
#include <vector>

#include "base/text.h"

namespace tb {

enum class RegistryRoot { ClassesRoot, CurrentUser, LocalMachine };

class Registry {
public:
    virtual ~Registry() = default;
    virtual bool KeyExists(RegistryRoot root, const Text& section) = 0;
    // False when the key can neither be opened nor made.
    virtual bool CreateKey(RegistryRoot root, const Text& section) = 0;
    // False when the key is not there, has keys below it, or the user has no right.
    virtual bool DeleteKey(RegistryRoot root, const Text& section) = 0;
    // The empty name is the key's default value. Nothing when there is no such value or it is no text.
    virtual std::optional<Text> ReadText(RegistryRoot root, const Text& section, const Text& name) = 0;
    // Makes the key if needed. False when it cannot be written.
    virtual bool WriteText(RegistryRoot root, const Text& section, const Text& name, const Text& value) = 0;
    // False when the key cannot be opened for writing; a value that is not there counts as deleted.
    virtual bool DeleteValue(RegistryRoot root, const Text& section, const Text& name) = 0;
    virtual std::vector<Text> ValueNames(RegistryRoot root, const Text& section) = 0;
    // Names of the keys directly below.
    virtual std::vector<Text> SectionNames(RegistryRoot root, const Text& section) = 0;
};

}  // namespace tb
