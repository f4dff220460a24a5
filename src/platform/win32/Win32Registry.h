// The registry of Windows, in the view of this program's own word size.
#pragma once

#include "platform/Registry.h"

namespace tb {

class Win32Registry : public Registry {
public:
    bool KeyExists(RegistryRoot root, const Text& section) override;
    bool CreateKey(RegistryRoot root, const Text& section) override;
    bool DeleteKey(RegistryRoot root, const Text& section) override;
    // Texts with names of environment variables come as they are stored.
    std::optional<Text> ReadText(RegistryRoot root, const Text& section, const Text& name) override;
    bool WriteText(RegistryRoot root, const Text& section, const Text& name, const Text& value) override;
    bool DeleteValue(RegistryRoot root, const Text& section, const Text& name) override;
    std::vector<Text> ValueNames(RegistryRoot root, const Text& section) override;
    std::vector<Text> SectionNames(RegistryRoot root, const Text& section) override;
};

}  // namespace tb
