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
    bool IgnoreCase() const { return m_IgnoreCase; }
    // Keys that differ only in the case of letters become one, upper-cased. Error 1001 unless the table is empty.
    void IgnoreCase(bool ignore) {
        if (Count() != 0) throw RuntimeError(1001, "The Hash Table isn't empty");
        m_IgnoreCase = ignore;
    }

    bool Exists(const Text& key) const { return Find(Folded(key)) != 0; }

    // Error 457 when the key is present; its value stays.
    void Add(const Text& key, Value value) {
        const Text folded = Folded(key);
        if (Find(folded) != 0) throw Error(ErrorNumber::DuplicateKey);
        Create(folded, std::move(value));
    }

    // The value, or the empty value when the key is absent.
    Value Item(const Text& key) const {
        const std::int32_t slot = Find(Folded(key));
        return slot == 0 ? Value() : At(slot).Held;
    }
    // Stores, creating the key if needed.
    void Item(const Text& key, Value value) {
        const Text folded = Folded(key);
        if (const std::int32_t slot = Find(folded); slot != 0) {
            m_Items[static_cast<size_t>(slot)].Held = std::move(value);
        } else {
            Create(folded, std::move(value));
        }
    }

    // Error 5 when the key is absent. The value lives on until the slot is used again.
    void Remove(const Text& key) {
        const Text folded = Folded(key);
        const std::int32_t slot = Find(folded);
        if (slot == 0) throw Error(ErrorNumber::InvalidCall);
        m_Slots.Remove(slot, KeyHash(folded));
    }
    void RemoveAll() {
        std::vector<KeyAndValue>().swap(m_Items);
        m_Slots.RemoveAll();
    }

    std::int32_t Count() const { return m_Slots.ItemCount(); }
    size_t SlotCount() const { return m_Slots.SlotCount(); }

    // All keys, as compared, in walk order: buckets upward, within a bucket in the order of first insertion as long as
    // none was removed.
    std::vector<Text> Keys() const {
        std::vector<Text> keys;
        keys.reserve(static_cast<size_t>(Count()));
        m_Slots.Walk([&](std::int32_t slot) { keys.push_back(At(slot).Key); });
        return keys;
    }

    // All values in walk order. Unlike Keys, error 9 on an empty table.
    std::vector<Value> Values() const {
        if (Count() == 0) throw Error(ErrorNumber::Subscript);
        std::vector<Value> values;
        values.reserve(static_cast<size_t>(Count()));
        m_Slots.Walk([&](std::int32_t slot) { values.push_back(At(slot).Held); });
        return values;
    }

private:
    struct KeyAndValue {
        Text Key;
        Value Held{};
    };

    Text Folded(const Text& key) const { return m_IgnoreCase ? UpperCase(key) : key; }
    const KeyAndValue& At(std::int32_t slot) const { return m_Items[static_cast<size_t>(slot)]; }
    std::int32_t Find(const Text& folded) const {
        return m_Slots.Find(KeyHash(folded), [&](std::int32_t slot) { return At(slot).Key == folded; });
    }
    void Create(const Text& folded, Value value) {
        // Room first, for the case that the slots have to grow by one more.
        if (m_Items.size() <= m_Slots.SlotCount()) m_Items.resize(m_Slots.SlotCount() + 1);
        m_Items[static_cast<size_t>(m_Slots.Create(KeyHash(folded)))] = {folded, std::move(value)};
    }

    HashSlots m_Slots;
    std::vector<KeyAndValue> m_Items;  // by slot
    bool m_IgnoreCase = false;
};

}  // namespace tb
