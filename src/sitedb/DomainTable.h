// The entries of the site list by their domain: a table whose keys are scrambled domains, folded to upper case in that
// form, and whose values are lists of scrambled entries in the order of adding. It is walked in the order of a
// HashTable that was filled and emptied the same way. Keys are not stored: each follows from the entries of its list.
#pragma once

#include <array>

#include "sitedb/EntryLists.h"
#include "sitedb/EvilDB_record.h"
#include "sitedb/HashSlots.h"

namespace tb {

// The key of a domain. Raises error 9 for an empty one and for one with a negative bucket (see HashSlots), error 6 from
// 32768 characters on. Different domains can have one key.
class DomainKey {
public:
    // Views the domain, which must outlive it.
    explicit DomainKey(TextView domain) : m_Domain(domain), m_Folded(Folded(domain, m_Memory)), m_Place(m_Folded) {}
    DomainKey(const DomainKey&) = delete;
    DomainKey& operator=(const DomainKey&) = delete;

    bool IsKeyOf(TextView domain) const { return domain == m_Domain || DomainKey(domain).m_Folded == m_Folded; }
    const SlotPlace& Place() const { return m_Place; }

private:
    static TextView Folded(TextView domain, ShortMemory& memory);

    TextView m_Domain;
    ShortMemory m_Memory;
    TextView m_Folded;
    SlotPlace m_Place;
};

class DomainTable {
public:
    using Position = EntryLists::Position;
    // The list of a key, and an entry of it; 0 each when there is none.
    struct Place {
        std::int32_t Slot = 0;
        Position Entry = 0;
    };

    // Where a stored URL is, or would be.
    Place Find(const DomainKey& key, TextView url) const;
    // The first entry of a key's list, or 0, and the one behind an entry, 0 at the end.
    Position First(const DomainKey& key) const { return FirstOf(Find(key, {}).Slot); }
    Position Next(Position entry, Position first) const { return m_Entries.Next(entry, first); }
    TextView Scrambled(Position entry) const { return m_Entries.Bytes(entry); }

    // Appends the scrambled entry of a URL that is not there to the list of a key; `slot` is what Find says. Raises
    // error 7 when there is no room; nothing has changed then.
    void Add(const DomainKey& key, std::int32_t slot, TextView url, TextView scrambled);
    // Takes out what Find has found. True when it was the last entry of its list: the key is gone, too.
    bool Remove(const DomainKey& key, const Place& found);
    void RemoveAll();
    // Gives the room of removed entries back once they take more than those that are left. Entries move.
    void PackIfSparse();

    std::int32_t Count() const { return m_Slots.ItemCount(); }
    // Entries of all lists.
    std::int64_t EntryCount() const { return m_EntryCount; }

    // Runs `visit(scrambled)` for all entries, in walk order of the keys and in list order inside a key.
    template <typename Visit>
    void Walk(Visit visit) const {
        // Lists that have changed lie anywhere in memory: each is asked for some steps before its turn.
        std::array<Position, 8> asked{};
        size_t step = 0;
        const auto exchange = [&](Position first) {
            Position& place = asked[step++ % asked.size()];
            m_Entries.Walk(place, visit);
            place = first;
        };
        m_Slots.Walk([&](std::int32_t slot) {
            m_Entries.AskFor(FirstOf(slot));
            exchange(FirstOf(slot));
        });
        for (size_t left = 0; left < asked.size(); ++left) exchange(0);
    }

private:
    // A slot's number is where its list begins. With this bit on top the list is a long one: the URLs of its entries
    // are in m_Urls.
    static constexpr std::uint32_t Indexed = EntryLists::End;

    bool IsIndexed(std::int32_t slot) const { return (m_Slots.Number(slot) & Indexed) != 0; }
    Position FirstOf(std::int32_t slot) const { return m_Slots.Number(slot) & ~Indexed; }
    // The list of a slot begins elsewhere now.
    void BeginAt(std::int32_t slot, Position first) { m_Slots.Number(slot, first | (m_Slots.Number(slot) & Indexed)); }
    Position FindInList(std::int32_t slot, TextView url) const;
    bool HasUrl(Position entry, TextView url) const { return Record(Scrambled(entry)).Url() == url; }
    std::uint32_t UrlHash(Position entry) const { return HashIndex::HashOf(Record(Scrambled(entry)).Url()); }
    void IndexIfLong(std::int32_t slot);

    HashSlots m_Slots;
    EntryLists m_Entries;
    HashIndex m_Urls;
    std::int64_t m_EntryCount = 0;
};

}  // namespace tb
