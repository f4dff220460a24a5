// A client of the list: it applies update replies as the program does, and fails the test where the program would have
// refused a line.
#pragma once

#include <gtest/gtest.h>

#include <map>

#include "fakes/RecordedLog.h"
#include "service/store/SiteEntry.h"
#include "service/store/Stamp.h"
#include "sitedb/codec/Encryption.h"

namespace tb {

class ReplayingClient {
public:
    Text Stamp = NoSitesStamp;
    // How often it had to start anew.
    int Restarts = 0;

    // "URL TAB category TAB validated", in the order of adding.
    std::vector<Text> Sites() const {
        std::vector<Text> sites;
        for (const auto& [order, site] : m_Sites) sites.push_back(site);
        return sites;
    }
    void Add(const Text& site) {
        const Text url = Split(site, '\t').front();
        EXPECT_TRUE(m_Orders.emplace(url, m_Next).second) << "a duplicate: " << Quoted(site);
        m_Sites[m_Next++] = site;
    }

    // False when the reply said that there is nothing new.
    bool Apply(TextView reply) {
        if (reply.empty()) return false;
        RecordedLog log;
        Text plain;
        EXPECT_TRUE(ChkEncryptString(reply, plain, log));
        const std::vector<Text> lines = Split(plain, '\n');
        if (lines.size() < 2 || lines[0].size() != 12) {
            ADD_FAILURE() << "a broken reply: " << Quoted(plain);
            return false;
        }
        if (lines[1].empty()) {
            EXPECT_EQ(lines[0], Stamp);
            EXPECT_EQ(lines.size(), 2U);
            return false;
        }
        EXPECT_NE(lines[0], Stamp) << "what it has";
        if (lines[1] == "1") {
            m_Sites.clear();
            m_Orders.clear();
            ++Restarts;
        } else {
            EXPECT_LT(Stamp, lines[0]);
        }
        for (size_t index = 2; index + 1 < lines.size(); ++index) Change(lines[index]);
        Stamp = lines[0];
        return true;
    }

private:
    void Change(const Text& line) {
        const std::vector<Text> fields = Split(line, '\t');
        ASSERT_EQ(fields.size(), 4U) << Quoted(line);
        if (line[0] == '+') return Add(line.substr(2));
        const auto found = m_Orders.find(fields[1]);
        ASSERT_NE(found, m_Orders.end()) << "not there: " << Quoted(line);
        m_Sites.erase(found->second);
        m_Orders.erase(found);
    }

    std::map<int, Text> m_Sites;
    std::map<Text, int> m_Orders;
    int m_Next = 0;
};

}  // namespace tb
