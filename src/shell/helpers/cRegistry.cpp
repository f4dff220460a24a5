#include "shell/helpers/cRegistry.h"

#include "base/errors.h"

namespace tb {

namespace {

constexpr const char* Source = ".cRegistry";
constexpr std::int32_t RegistryFailure = static_cast<std::int32_t>(0x80040000U + 26001);

Text RootName(RegistryRoot root) {
    switch (root) {
    case RegistryRoot::ClassesRoot: return "HKEY_CLASSES_ROOT";
    case RegistryRoot::CurrentUser: return "HKEY_CURRENT_USER";
    case RegistryRoot::LocalMachine: break;
    }
    return "HKEY_LOCAL_MACHINE";
}

[[noreturn]] void Fail(const Text& description) { throw RuntimeError(RegistryFailure, description, Source); }

}  // namespace

void cRegistry::Value(const Text& value) {
    if (m_Registry.WriteText(ClassKey, SectionKey, ValueKey, value)) return;
    Fail("Failed to set registry value Key: '" + RootName(ClassKey) + "',Section: '" + SectionKey + "',Key: '" +
         ValueKey + "' to value: '" + value);
}

Text cRegistry::ValueEx(RegistryRoot root, const Text& section, const Text& name, const Text& otherwise) const {
    return m_Registry.ReadText(root, section, name).value_or(otherwise);
}

void cRegistry::CreateKey() {
    if (m_Registry.CreateKey(ClassKey, SectionKey)) return;
    Fail("Failed to create registry Key: '" + RootName(ClassKey) + "',Section: '" + SectionKey);
}

void cRegistry::DeleteKey() {
    if (m_Registry.DeleteKey(ClassKey, SectionKey)) return;
    Fail("Failed to delete registry Key: '" + RootName(ClassKey) + "',Section: '" + SectionKey + "',Key: '" + ValueKey);
}

void cRegistry::DeleteValue() {
    if (m_Registry.DeleteValue(ClassKey, SectionKey, ValueKey)) return;
    Fail("Failed to open key '" + RootName(ClassKey) + "' for delete access");
}

void cRegistry::CreateEXEAssociation(const Text& executable, const Text& className, const Text& description,
                                     const Text& extension) {
    ClassKey = RegistryRoot::ClassesRoot;
    Put(extension, className);
    Put(className, description);
    CreateAdditionalEXEAssociations(className, "open", "\"" + executable + "\" \"%1\"");
}

void cRegistry::CreateAdditionalEXEAssociations(const Text& className, const Text& verb, const Text& commandLine) {
    ClassKey = RegistryRoot::ClassesRoot;
    Put(className + "\\shell\\" + verb + "\\command", commandLine);
}

void cRegistry::Put(const Text& section, const Text& value) {
    SectionKey = section;
    ValueKey.clear();
    CreateKey();
    Value(value);
}

}  // namespace tb
