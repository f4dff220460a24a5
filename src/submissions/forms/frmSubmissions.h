// The window on which messages and web addresses are dropped, with the number of submissions and a button that asks
// what became of them.
#pragma once

#include "submissions/DropTargets.h"
#include "submissions/StatusUpdate.h"
#include "ui/window/CommandButton.h"
#include "ui/window/Form.h"
#include "ui/window/Label.h"
#include "ui/window/PictureBox.h"
#include "ui/window/Timer.h"

namespace tb {

// Made with std::make_shared. Closing it unloads it; it can be shown again.
class frmSubmissions : public Form, private StatusView {
public:
    // All that is referred to outlives the window.
    struct Parts {
        std::shared_ptr<SubmissionDB> Store;
        ServiceAccess Service;
        tb::Activities& Activities;
        DropTargets& Targets;
        std::function<void()> PlayClickSound;
    };

    frmSubmissions(Forms& forms, Parts parts);
    ~frmSubmissions() override;

    // Shows how many submissions wait and how many there are. Called when the list changes; the window looks itself
    // every two seconds. What stands there stays when the queue cannot be listed.
    void RefreshDisplay() noexcept override;

    PictureBox& picDrop;
    Label& lblDrop;
    Label& lblStatus;
    Label& LEDStat;
    CommandButton& cmdUpdateStatus;
    Timer& tmRefresh;

private:
    void PlaceControls();
    void Loaded();
    void Dropped(DropData& dropped);

    void ShowLamp(std::int32_t state, std::int32_t blinkType, std::int32_t colour, const Text& caption) override;
    void ShowWaitCursor(bool wait) override { SetMousePointer(wait ? 11 : 0); }
    void PlayClickSound() override { m_Parts.PlayClickSound(); }

    Parts m_Parts;
    std::shared_ptr<StatusUpdate> m_Update;
    // While the window is loaded.
    std::unique_ptr<DropRegistration> m_Registration;
};

}  // namespace tb
