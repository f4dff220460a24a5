// The reference data: categories, statuses, dispositions, countries, address ranges, evil words and the white list.
// They lie in Data\reference.bin and become globals of the settings and tables of the site databases.
#pragma once

#include <optional>

#include "refdata/DataFile.h"
#include "sitedb/GeoIP.h"
#include "sitedb/WhiteListDB.h"

namespace tb {

class Reference {
public:
    static constexpr const char* FileName = "reference.bin";

    // What a load fills beside the globals. Both outlive the object.
    struct Tables {
        // Takes each country once: a second load into the same one fails there.
        GeoIP& Countries;
        // Replaced by a load that has a white list, kept by one that has none.
        std::unique_ptr<WhiteListDB>& WhiteList;
    };

    Reference(ServiceAccess access, Tables tables) : m_Access(std::move(access)), m_Tables(tables) {}

    // Loads the document `plain` for nobody. Raises what keeps it from being loaded to its end, a defective address
    // table too.
    static void Check(const App& app, const Text& plain);

    // Fetches the file from the service "ReferenceSVR" if it has a later one; True when it did. Without servers in the
    // defaults data that is one line of level 0.
    bool RetrieveReference() noexcept;

    // Reads the file into the globals REFERENCEVERSION, CATEGORIES, SUBMISSIONS, DISPOSITIONS and EVILWORDS, each in
    // place of one that is there, then into the tables. False, behind one or two lines of level 0, when something that
    // must be there is missing or defective; what was read before it stays. `MinVersion`: see LoadDataFile.
    bool LoadReference(const Text& MinVersion) noexcept;

    // The step of the start: a missing file is fetched or, when that fails, written from the built-in document, with
    // dates older than any server's; then it is loaded. A disk that does not take the built-in document is one line,
    // and the document is loaded all the same. True, which stops the start, only when the categories, the submissions'
    // statuses or the dispositions are not there afterwards; a message tells the user. See DataGuard for the file
    // before it.
    bool LoadReferenceData() noexcept;

    // The file is the built-in document as LoadReferenceData writes it, told by its date. Raises what asking for the
    // date raises.
    bool IsBuiltIn() const;

private:
    // Loads what `read` gives. The error that made it fail, number 0 for a file that is no frame or of a version that
    // is too low; nothing when it did not fail. The lines are written.
    std::optional<RuntimeError> Load(const std::function<LoadedFile()>& read) noexcept;
    LoadedFile ReadFile(const Text& name, const Text& MinVersion);
    // False, behind a line, when the file is not there afterwards.
    bool WriteBuiltIn() noexcept;
    bool HasTables() const;
    void WriteLine(const char* what, const RuntimeError& error) const;

    ServiceAccess m_Access;
    Tables m_Tables;
};

}  // namespace tb
