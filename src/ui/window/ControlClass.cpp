#include "ui/window/ControlClass.h"

namespace tb {

namespace {

template <typename Entry>
const Entry* FindIn(const std::vector<Entry>& entries, const Text& lowerName) {
    for (const Entry& entry : entries) {
        if (LowerCase(TextView(entry.Name)) == lowerName) return &entry;
    }
    return nullptr;
}

}  // namespace

const PropertyEntry* ControlClass::FindProperty(TextView name) const {
    const Text lowerName = LowerCase(name);
    for (const ControlClass* table = this; table != nullptr; table = table->m_Base) {
        if (const PropertyEntry* entry = FindIn(table->m_Properties, lowerName)) return entry;
    }
    return nullptr;
}

const MethodEntry* ControlClass::FindMethod(TextView name) const {
    const Text lowerName = LowerCase(name);
    for (const ControlClass* table = this; table != nullptr; table = table->m_Base) {
        if (const MethodEntry* entry = FindIn(table->m_Methods, lowerName)) return entry;
    }
    return nullptr;
}

}  // namespace tb
