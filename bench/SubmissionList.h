// The program as the list of submissions sees it: the list on the disk, all else in memory.
#pragma once

#include "fakes/FakePlatform.h"
#include "fakes/FakeSender.h"
#include "fakes/RecordedLog.h"
#include "submissions/SubmissionDB.h"

namespace tb {

class SubmissionList {
public:
    // A list of so many submissions, saved, in the folder, which is empty before.
    SubmissionList(Files& disk, const std::filesystem::path& folder, int count) : m_Process(folder), m_Disk(disk) {
        std::filesystem::create_directories(folder / "Data");
        SubmissionQueue(disk, folder / "Data").MakeFolders();
        DB = MakeDB();
        DB->Setup();
        for (int index = 0; index < count; ++index) Add(*DB);
        DB->Save(false);
    }
    std::shared_ptr<SubmissionDB> MakeDB() {
        return std::make_shared<SubmissionDB>(
            SubmissionDB::Parts{{m_Program, m_Log, m_Web.Factory()}, m_Formats, m_Dialog});
    }
    void Add(SubmissionDB& db) {
        const Text number = std::to_string(m_Added++);
        db.Add("URL", "http://www.evil" + number + ".example/login", "1-" + std::to_string(m_Added % 32000), 1,
               m_System.Clock.Now(), "http://www.evil" + number + ".example/login");
        m_System.Random.Value = m_Added % 9973 / 10000.0;
    }

    std::shared_ptr<SubmissionDB> DB;

private:
    struct NoFormats : ClipboardFormats {
        ClipboardFormat Register(const Text&) override { return 0; }
    };
    struct NoDialog : QualifiersView {
        WindowExtent Extent(const QualifiersDialog&) override { return {}; }
        void ShowModal(QualifiersDialog&, const WindowPosition&) override {}
    };
    struct Here : FakeProcesses {
        explicit Here(std::filesystem::path folder) : Folder(std::move(folder)) {}
        std::filesystem::path Executable() override { return Folder / "Trawlbeam.exe"; }
        std::filesystem::path Folder;
    };

    FakeSystem m_System;
    Here m_Process;
    Files& m_Disk;
    App m_Program{Platform{m_System.Clock, m_System.Random, m_System.Pump, m_Disk, m_System.Dialogs, m_System.Resources,
                           m_Process, m_System.Shell, m_System.Versions, m_System.Registry, m_System.Machine,
                           m_System.WindowText, m_System.Clipboard},
                  TestDeployment()};
    RecordedLog m_Log;
    FakeWeb m_Web;
    NoFormats m_Formats;
    NoDialog m_Dialog;
    int m_Added = 0;
};

}  // namespace tb
