// The databases of the program, as its controller holds them: null before its Setup, and after the exit, which can come
// while one of them is at work. So each operation that uses one holds it for as long as it runs.
#pragma once

#include <memory>

#include "sitedb/OverDB.h"
#include "submissions/SubmissionDB.h"
#include "urlcheck/UrlVerdict.h"

namespace tb {

struct Databases {
    std::shared_ptr<EvilDB> m_EvilDB;
    std::shared_ptr<OverDB> m_OverDB;
    std::shared_ptr<SubmissionDB> oSubmissionDB;
    // Over the list, for the channel. It stays when the list goes.
    std::shared_ptr<UrlVerdict> Verdict;
};

}  // namespace tb
