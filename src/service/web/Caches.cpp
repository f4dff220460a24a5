#include "service/web/Caches.h"

#include "sitedb/codec/Encryption.h"

namespace tb {

DocumentCache::DocumentCache(const std::filesystem::path& folder) : m_Store(folder, ServiceStore::Opening::Existing) {}

std::shared_ptr<const StoredDocument> DocumentCache::Find(const Text& name) {
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

UpdateCache::UpdateCache(const std::filesystem::path& folder) : m_Store(folder, ServiceStore::Opening::Existing) {}

// Every publication has a number of its own, and what it brings or takes away comes with it.
void UpdateCache::Follow() {
    const std::int64_t number = Updates(m_Store).LastNumber();
    if (number == m_Number) return;
    m_Latest.clear();
    m_Files.clear();
    m_Number = number;
}

std::shared_ptr<const UpdateCache::Shown> UpdateCache::Latest(const Text& test) {
    const std::lock_guard lock(m_Mutex);
    Follow();
    if (const auto held = m_Latest.find(test); held != m_Latest.end()) return held->second;
    auto update = Updates(m_Store).Latest(test);
    // Names that nobody published are not remembered: there may be any number of them.
    if (!update) return nullptr;
    Text framed = EncryptStringChk(update->Manifest);
    return m_Latest[test] = std::make_shared<const Shown>(Shown{std::move(*update), std::move(framed)});
}

std::shared_ptr<const Text> UpdateCache::File(std::int64_t number, const Text& name) {
    const std::lock_guard lock(m_Mutex);
    Follow();
    if (const auto held = m_Files.find({number, name}); held != m_Files.end()) return held->second;
    auto content = Updates(m_Store).File(number, name);
    if (!content) return nullptr;
    return m_Files[{number, name}] = std::make_shared<const Text>(std::move(*content));
}

}  // namespace tb
