// The hidden window of the notification-area icon: it shows the icon and its menu, tells what the user does with them,
// and holds the text box of the browser channel. What the menu's items do is its owner's business.
#pragma once

#include <functional>

#include "platform/TrayIcon.h"
#include "ui/window/Form.h"
#include "ui/window/Menu.h"
#include "ui/window/TextBox.h"
#include "urlcheck/BrowserChannel.h"

namespace tb {

struct WindowsVersion {
    // 2 is the NT family, 1 the older one.
    std::int32_t Platform = 2;
    std::int32_t Major = 0;
    std::int32_t Minor = 0;
};

class frmSysTray : public Form, private TrayIconListener {
public:
    struct Environment {
        TrayIcon& Icon;
        WindowText& Windows;
        WindowsVersion Version;
        std::shared_ptr<const BrowserChannel> Channel;
        // The first field of a request was no reply window; `line` is for the log. It ends the process. If it returns,
        // the request counts as dealt with.
        std::function<void(const Text& line)> Broken;
    };

    // Its caption and the class names that the window system was given are how clients find it. It puts the icon into
    // the notification area when it is loaded and takes it away when it is unloaded; whether there is a notification
    // area makes no difference to anything else. Closing the window from outside does nothing.
    frmSysTray(Forms& forms, Environment environment);
    ~frmSysTray() override;

    // Buttons: 1 left, 2 right. The left button's release is its "down"; its press raises nothing.
    Event<std::int32_t> SysTrayMouseDown;
    Event<std::int32_t> SysTrayMouseUp;
    Event<> SysTrayMouseMove;
    // Also raised, with 1, by the wake-up that another instance sends through the channel.
    Event<std::int32_t> SysTrayDoubleClick;
    // Index and key of the chosen item.
    Event<std::int32_t, const Text&> MenuClick;
    Event<> BalloonShow;
    Event<> BalloonHide;
    Event<> BalloonTimeout;
    Event<> BalloonClicked;

    // Shows a balloon at the icon for `timeout` milliseconds. Text up to 255 characters, title up to 63. Does nothing
    // where the system has no balloons.
    void ShowBalloonTip(const Text& text, const Text& title, std::uint32_t flags, std::uint32_t timeout);
    // Up to 127 characters, 63 where the system has no balloons; read up to its first NUL.
    Text Tooltip() const;
    void SetTooltip(const Text& text);
    // An icon of the system, the window's own at first.
    IconNumber IconHandle() const { return m_Record.Icon; }
    void SetIconHandle(IconNumber icon);

    // Appends an item, "-" for a separator, and returns its index. A default item becomes DefaultMenuIndex.
    std::int32_t AddMenuItem(const Text& caption, const Text& key, bool isDefault = false);
    // Gives the first item with exactly that key another caption and returns its index; -1 when there is none. A
    // default item becomes DefaultMenuIndex.
    std::int32_t ChangeMenuItem(const Text& caption, const Text& key, bool isDefault = false);
    // Nothing happens for an index that does not exist.
    void EnableMenuItem(std::int32_t index, bool enabled);
    void RemoveMenuItem(std::int32_t index);
    // -1 for none.
    std::int32_t DefaultMenuIndex() const { return m_DefaultMenuIndex; }
    void SetDefaultMenuIndex(std::int32_t index) { m_DefaultMenuIndex = index; }
    // The item at an index, null when there is none.
    Menu* MenuItem(std::int32_t index) const;
    // Shows the menu at the mouse; MenuClick is raised before it returns. The result tells whether the window became
    // the foreground window, without which the menu does not close on a click elsewhere.
    bool ShowMenu();

    // True where the notify icon's wide record is used, and where there are balloons.
    bool IsWide() const { return m_Record.IsWide; }
    bool HasBalloons() const { return m_Record.HasBalloons; }

    TextBox& txtBHOMessage;
    Menu& mnuPopup;

private:
    void Loaded();
    void Unloaded();
    void AddIcon();
    void Modify(std::uint32_t flags);
    void BHOMessageChanged();
    Menu& AddElement(std::int32_t index);
    std::int32_t NextIndex() const;

    void TrayMessage(std::uint32_t message) override;
    void TaskbarCreated() override;

    Environment m_Environment;
    NotifyIconRecord m_Record;
    bool m_FirstItemInUse = false;
    bool m_IconWanted = false;
    std::int32_t m_DefaultMenuIndex = -1;
};

}  // namespace tb
