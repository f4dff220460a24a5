#include "service/store/Reports.h"

namespace tb {

void Reports::Add(const std::vector<VersionReport>& reports) {
    Transaction transaction(m_Database, Transaction::Kind::Write);
    Statement add = m_Database.Prepare(
        "INSERT INTO reports(received, client, program, system, browser) VALUES(?1, ?2, ?3, ?4, ?5)");
    for (const VersionReport& report : reports) {
        add.Bind(1, report.Received.Seconds())
            .Bind(2, report.Client)
            .Bind(3, report.Program)
            .Bind(4, report.System)
            .Bind(5, report.Browser)
            .Run();
    }
    m_Database.Prepare("DELETE FROM reports WHERE number <= (SELECT max(number) FROM reports) - ?1")
        .Bind(1, Limit)
        .Run();
    transaction.Commit();
}

std::int64_t Reports::Count() { return m_Database.Ask("SELECT count(*) FROM reports"); }

std::vector<std::pair<Text, std::int64_t>> Reports::ByProgram() {
    std::vector<std::pair<Text, std::int64_t>> counts;
    Statement row =
        m_Database.Prepare("SELECT program, count(*) FROM reports GROUP BY program ORDER BY count(*) DESC, program");
    while (row.Step()) counts.emplace_back(row.Bytes(0), row.Number(1));
    return counts;
}

}  // namespace tb
