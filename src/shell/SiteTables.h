// What the reference data fills beside the globals: the countries, and the white list if there is one.
#pragma once

#include "refdata/Reference.h"

namespace tb {

class SiteTables : private GeoIPHost {
public:
    // `app` outlives the tables.
    explicit SiteTables(App& app) : m_App(app) {}

    // Never null.
    std::unique_ptr<GeoIP> Countries = MakeCountries();
    // Null until a reference load brings one, and after the exit has dropped it.
    std::unique_ptr<WhiteListDB> WhiteList;

    // Empty ones: a load takes each country once, so that what comes later needs a table of its own.
    std::unique_ptr<GeoIP> MakeCountries() {
        GeoIPHost& host = *this;
        return std::make_unique<GeoIP>(host);
    }
    Reference::Tables ForLoad() { return {*Countries, WhiteList}; }

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
