// A cursor on the registry: root, section and value name are set once and then worked on.
#pragma once

#include "platform/Registry.h"

namespace tb {

class cRegistry {
public:
    // `registry` must outlive the cursor.
    explicit cRegistry(Registry& registry) : m_Registry(registry) {}

    RegistryRoot ClassKey = RegistryRoot::LocalMachine;
    Text SectionKey;
    Text ValueKey;
    // What Value gives when there is none.
    Text Default;

    // Every value is a text.
    static constexpr std::int32_t ValueType = 1;

    // Reading never fails; writing raises "Failed to set registry value ...".
    Text Value() const { return ValueEx(ClassKey, SectionKey, ValueKey, Default); }
    void Value(const Text& value);
    // The one-call read.
    Text ValueEx(RegistryRoot root, const Text& section, const Text& name, const Text& otherwise) const;

    bool KeyExists() const { return m_Registry.KeyExists(ClassKey, SectionKey); }
    // Raises "Failed to create registry Key ..."; a key that is there is no failure.
    void CreateKey();
    // Raises "Failed to delete registry Key ...".
    void DeleteKey();
    // Raises "Failed to open key ..." when the section cannot be opened for it.
    void DeleteValue();
    std::vector<Text> EnumerateValues() const { return m_Registry.ValueNames(ClassKey, SectionKey); }
    std::vector<Text> EnumerateSections() const { return m_Registry.SectionNames(ClassKey, SectionKey); }

    // Makes `executable` the program of a file extension (".tb"), under a class of its own with a description, and adds
    // a further command ("edit") to that class. Raise as Value and CreateKey.
    void CreateEXEAssociation(const Text& executable, const Text& className, const Text& description,
                              const Text& extension);
    void CreateAdditionalEXEAssociations(const Text& className, const Text& verb, const Text& commandLine);

private:
    void Put(const Text& section, const Text& value);

    Registry& m_Registry;
};

}  // namespace tb
