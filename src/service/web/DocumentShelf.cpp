#include "service/web/DocumentShelf.h"

namespace tb {

DocumentShelf::DocumentShelf(const std::filesystem::path& folder) : m_Store(folder, ServiceStore::Opening::Existing) {}

std::shared_ptr<const StoredDocument> DocumentShelf::Find(const Text& name) {
    const std::lock_guard lock(m_Mutex);
    Documents documents(m_Store);
    const auto modified = documents.ModifiedOf(name);
    if (!modified) return nullptr;
    std::shared_ptr<const StoredDocument>& held = m_Documents[name];
    if (!held || held->Modified != *modified) {
        auto latest = documents.Find(name);
        held = latest ? std::make_shared<const StoredDocument>(std::move(*latest)) : nullptr;
    }
    return held;
}

}  // namespace tb
