// The string-keyed table of the site databases: non-empty keys to values, walked in a fixed order.
#pragma once

#include "base/errors.h"
#include "sitedb/HashSlots.h"

namespace tb {

// `Value` is what Item gives for an absent key when it is default-constructed; a shared pointer makes the table hold
// objects by reference. Raises: 1001 for an empty key, 9 for a key with a negative bucket (see HashSlots).
template <typename Value>
class HashTable {
public:
    bool IgnoreCase() const { return m_Slots.IgnoreCase(); }
    // Keys that differ only in the case of letters become one, upper-cased. Error 1001 unless the table is empty.
    void IgnoreCase(bool ignore) { m_Slots.IgnoreCase(ignore); }

    bool Exists(const Text& key) const { return m_Slots.Find(key) != 0; }

    // Error 457 when the key is present; its value stays.
    void Add(const Text& key, Value value) {
        bool created = false;
        const std::int32_t slot = m_Slots.FindOrCreate(key, created);
        if (!created) throw Error(ErrorNumber::DuplicateKey);
        Store(slot, std::move(value));
    }

    // The value, or the empty value when the key is absent.
    Value Item(const Text& key) const {
        const std::int32_t slot = m_Slots.Find(key);
        return slot == 0 ? Value() : m_Values[static_cast<size_t>(slot)];
    }
    // Stores, creating the key if needed.
    void Item(const Text& key, Value value) {
        bool created = false;
        const std::int32_t slot = m_Slots.FindOrCreate(key, created);
        Store(slot, std::move(value));
    }

    // Error 5 when the key is absent. The value lives on until the slot is used again.
    void Remove(const Text& key) { m_Slots.Remove(key); }
    void RemoveAll() {
        std::vector<Value>().swap(m_Values);
        m_Slots.RemoveAll();
    }

    std::int32_t Count() const { return m_Slots.ItemCount(); }
    size_t SlotCount() const { return m_Slots.SlotCount(); }

    // All keys, as compared, in walk order: buckets upward, within a bucket in the order of first insertion as long as
    // none was removed.
    std::vector<Text> Keys() const {
        std::vector<Text> keys;
        keys.reserve(static_cast<size_t>(Count()));
        for (const std::int32_t slot : m_Slots.Walk()) keys.push_back(m_Slots.KeyOf(slot));
        return keys;
    }

    // All values in walk order. Unlike Keys, error 9 on an empty table.
    std::vector<Value> Values() const {
        if (Count() == 0) throw Error(ErrorNumber::Subscript);
        std::vector<Value> values;
        values.reserve(static_cast<size_t>(Count()));
        for (const std::int32_t slot : m_Slots.Walk()) values.push_back(m_Values[static_cast<size_t>(slot)]);
        return values;
    }

private:
    void Store(std::int32_t slot, Value value) {
        if (m_Values.size() < m_Slots.SlotCount()) m_Values.resize(m_Slots.SlotCount());
        m_Values[static_cast<size_t>(slot)] = std::move(value);
    }

    HashSlots m_Slots;
    std::vector<Value> m_Values;  // by slot
};

}  // namespace tb
