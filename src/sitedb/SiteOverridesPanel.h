// The decisions of the panel that shows and changes the user's overrides, without its window: the window hands clicks
// in and shows what stands here afterwards.
// Thread: the user-interface thread.
#pragma once

#include <vector>

#include "platform/Dialogs.h"
#include "sitedb/OverDB.h"

namespace tb {

// How the panel speaks to the user. Buttons and answers are those of platform/Dialogs.h.
class SiteOverridesDialogs {
public:
    virtual ~SiteOverridesDialogs() = default;
    // In the program's own dress.
    virtual std::int32_t ShowMessage(const Text& prompt, std::int32_t buttons) = 0;
    // The system's plain box.
    virtual std::int32_t ShowSystemMessage(const Text& prompt, std::int32_t buttons) = 0;
};

// Scheme and host of a URL: "http://bank.example" of "http://bank.example/a/b". Error 9 for a URL without a host.
Text SiteRootOf(const Text& url);

class SiteOverridesPanel {
public:
    // All three must outlive the panel.
    SiteOverridesPanel(OverDB& overrides, SiteOverridesDialogs& dialogs, LogSink& log)
        : m_Overrides(overrides), m_Dialogs(dialogs), m_Log(log) {}

    // What the window shows.
    struct Control {
        Text Caption;
        bool Enabled = false;
    };
    static constexpr int NoRow = -1;
    std::vector<Text> ListSites;
    int Selected = NoRow;
    bool ListEnabled = true;
    // Each stands for a button and the label beside it. The label's caption can be set while the button is disabled.
    Control Change;
    Control Remove;

    // Shows all overrides and selects the first. Everything else works without it too. Called once. A failure is one
    // line of level 0.
    void Setup() noexcept;
    // A click into the list.
    void Select(int row) noexcept;
    // Brings the two controls in line with the selected row. A failure is one line of level 0; the controls then stay
    // as far as they were set.
    void MakeActions() noexcept;

    // Adds an override and its row, on disk too; one that is covered already is refused with a message.
    void AddSite(const Text& URL);
    // Widens the selected override to its whole site, or drops it when the site is covered already, if the user agrees.
    void cmdChange();
    // Removes the selected override if the user agrees.
    void cmdRemove();

private:
    bool HasSelection() const { return Selected >= 0 && static_cast<size_t>(Selected) < ListSites.size(); }
    const Text& SelectedUrl() const { return ListSites[static_cast<size_t>(Selected)]; }
    void DisableActions();
    void DropSelectedRow();

    OverDB& m_Overrides;
    SiteOverridesDialogs& m_Dialogs;
    LogSink& m_Log;
};

}  // namespace tb
