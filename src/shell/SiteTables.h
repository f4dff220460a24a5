// What the reference data fills beside the globals: the countries, and the white list if there is one.
#pragma once

#include "refdata/Reference.h"

namespace tb {

class SiteTables : private GeoIPHost {
public:
    // `app` outlives the tables.
    explicit SiteTables(App& app) : Countries(*this), m_App(app) {}

    GeoIP Countries;
    // Null until a reference load brings one, and after the exit has dropped it.
    std::unique_ptr<WhiteListDB> WhiteList;

    Reference::Tables ForLoad() { return {Countries, WhiteList}; }

private:
    xmlINI& Settings() const {
        if (!m_App.Settings) throw Error(ErrorNumber::ObjectNotSet);
        return *m_App.Settings;
    }
    Text EvilWords() override { return Settings().GlobalsFindString("EVILWORDS"); }
    Text HomeCountry() override { return Settings().GetXMLString("Main", "Country", ""); }

    App& m_App;
};

}  // namespace tb
