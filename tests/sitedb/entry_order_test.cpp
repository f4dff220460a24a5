#include <gtest/gtest.h>

#include <random>

#include "base/numbers.h"
#include "sitedb/ListOfSites.h"
#include "sitedb/SnapshotFile.h"

namespace tb {
namespace {

// The list as it was designed, without an index: scrambled domains, case ignored, in 1024 chains that grow at the tail,
// each with its records.
class PlainModel {
public:
    void Add(const Text& url, const Text& domain, const Text& rest) {
        Chain& chain = ChainOf(domain);
        auto found = Find(chain, KeyOf(domain));
        if (found == chain.end()) found = chain.insert(found, {KeyOf(domain), {}});
        if (Find(found->second, url) == found->second.end()) found->second.emplace_back(url, url + rest);
    }
    void Delete(const Text& url, const Text& domain) {
        Chain& chain = ChainOf(domain);
        const auto found = Find(chain, KeyOf(domain));
        if (found == chain.end()) return;
        const auto member = Find(found->second, url);
        if (member != found->second.end()) found->second.erase(member);
        if (found->second.empty()) chain.erase(found);
    }
    Lines Records() const {
        Lines records;
        for (const Chain& chain : m_Buckets) {
            for (const auto& [key, list] : chain) {
                for (const auto& [url, record] : list) records.push_back(record);
            }
        }
        return records;
    }

private:
    using List = std::vector<std::pair<Text, Text>>;
    using Chain = std::vector<std::pair<Text, List>>;

    static Text KeyOf(const Text& domain) { return UpperCase(ScrambleByLength(domain)); }
    Chain& ChainOf(const Text& domain) {
        return m_Buckets[static_cast<size_t>(HashSlots::HashOfKey(KeyOf(domain)) % 1024)];
    }
    template <typename Pairs>
    static typename Pairs::iterator Find(Pairs& pairs, const Text& first) {
        return std::find_if(pairs.begin(), pairs.end(), [&](const auto& member) { return member.first == first; });
    }

    std::vector<Chain> m_Buckets = std::vector<Chain>(1024);
};

Lines RecordsOf(Files& files, const FakeFiles::Path& path) {
    const auto file = files.OpenForReading(path);
    SnapshotReader reader(*file);
    Lines records;
    for (std::int32_t left = reader.ReadHeader().EntryCount; left > 0; --left) {
        records.push_back(UnscrambleByLength(reader.NextEntry()));
    }
    return records;
}

// Domains that differ in a letter's case have one key where the scrambled letter is a letter too. Few domains with many
// paths make lists long, many make chains; long records make the room of removed ones worth giving back.
TEST(EntryOrder, StaysThatOfListsInAHashTable) {
    std::mt19937 random(3);
    std::vector<std::pair<Text, Text>> domains;  // as they stand in a URL, and decoded
    const Text base = "evil.example";
    const auto add = [&](size_t index, char letter) {
        const auto with = [&](const Text& text) { return base.substr(0, index) + text + base.substr(index + 1); };
        domains.emplace_back(with("%" + ToHex(static_cast<std::uint8_t>(letter))), with(Text(1, letter)));
    };
    for (size_t index = 0; index < base.size(); ++index) add(index, UpperCase(base[index]));
    // Of these four one is scrambled to a letter beyond ASCII whose other case another is scrambled to.
    for (const size_t index : {0U, 5U, 10U}) {
        for (const char letter : TextView("\x81\xA1\xC1\xE1")) add(index, letter);
    }
    const size_t odd = domains.size();
    for (int number = 0; number < 300; ++number)
        domains.emplace_back("h" + std::to_string(number), "h" + std::to_string(number));
    ListOfSites rig;
    PlainModel model;
    for (int round = 100; round < 140; ++round) {
        Text text = "202611210" + std::to_string(round) + "\n0";
        for (int line = 0; line < 300; ++line) {
            const bool few = random() % 2 == 0;
            const auto& [written, domain] = domains[random() % (few ? odd : domains.size())];
            const Text url = "http://" + LowerCase(written) + "/" + std::to_string(random() % (few ? 60 : 2));
            const Text validated(random() % 4000, 'v');
            const bool adds = random() % 5 < (round % 20 < 10 ? 4 : 0);
            text += Text("\n") + (adds ? "+" : "-") + "\t" + url + "\t2\t" + validated;
            if (adds) {
                model.Add(url, domain, "\t2\t" + validated);
            } else {
                model.Delete(url, domain);
            }
        }
        rig.Update(text);
        ASSERT_EQ(RecordsOf(rig.Storage, ListOfSites::File(rig.DB->LastTimestamp())), model.Records()) << round;
        ASSERT_EQ(rig.DB->LiveCount(), static_cast<std::int32_t>(model.Records().size()));
    }
}

}  // namespace
}  // namespace tb
