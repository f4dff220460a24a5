#include "urlcheck/tray/frmSysTray.h"

#include <utility>

#include "components/tbBHBridge/ChannelNames.h"

namespace tb {

namespace {

constexpr std::uint32_t NotifyIconVersion = 3;
// Characters without the closing NUL.
constexpr size_t LongestTip = 127;
constexpr size_t LongestTipWithoutBalloons = 63;
constexpr size_t LongestInfo = 255;
constexpr size_t LongestInfoTitle = 63;

constexpr std::int32_t LeftButton = 1;
constexpr std::int32_t RightButton = 2;

bool IsNtFamily(const WindowsVersion& version) { return version.Platform == 2; }

bool KnowsBalloons(const WindowsVersion& version) {
    if (IsNtFamily(version)) return version.Major >= 5;
    return version.Major == 4 && version.Minor == 90;
}

Text Cut(const Text& text, size_t longest) { return Text(Left(text, longest)); }

}  // namespace

frmSysTray::frmSysTray(Forms& forms, Environment environment)
    : Form(forms, "frmSysTray"),
      txtBHOMessage(Add<TextBox>("txtBHOMessage")),
      mnuPopup(Add<Menu>("mnuPopup")),
      m_Environment(std::move(environment)) {
    m_Record.IsWide = IsNtFamily(m_Environment.Version);
    m_Record.HasBalloons = KnowsBalloons(m_Environment.Version);
    SetCaption(ChannelCaption);
    txtBHOMessage.SetVisible(false);
    AddElement(0).SetVisible(false);
    LoadEvent.Connect([this] { Loaded(); });
    // The channel lives as long as the program.
    QueryUnloadEvent.Connect([](bool& cancel, UnloadMode mode) { cancel = cancel || mode == UnloadMode::User; });
    UnloadEvent.Connect([this](bool&) { Unloaded(); });
    txtBHOMessage.ChangeEvent.Connect([this] { BHOMessageChanged(); });
}

frmSysTray::~frmSysTray() { Unloaded(); }

void frmSysTray::Loaded() {
    m_Record.Window = hWnd();
    if (m_Record.Icon == 0) m_Record.Icon = WindowIcon();
    m_Environment.Icon.Listen(m_Record.Window, *this);
    m_IconWanted = true;
    AddIcon();
}

void frmSysTray::Unloaded() {
    if (!m_IconWanted) return;
    m_IconWanted = false;
    m_Record.Flags = 0;
    m_Environment.Icon.Notify(NotifyIconCall::Delete, m_Record);
    m_Environment.Icon.StopListening();
}

void frmSysTray::AddIcon() {
    m_Record.Flags = NotifyIconFlag::Message | NotifyIconFlag::Icon | NotifyIconFlag::Tip;
    m_Environment.Icon.Notify(NotifyIconCall::Add, m_Record);
    if (!m_Record.HasBalloons) return;
    m_Record.Version = NotifyIconVersion;
    m_Environment.Icon.Notify(NotifyIconCall::SetVersion, m_Record);
}

void frmSysTray::Modify(std::uint32_t flags) {
    if (!m_IconWanted) return;
    m_Record.Flags = flags;
    m_Environment.Icon.Notify(NotifyIconCall::Modify, m_Record);
}

void frmSysTray::TaskbarCreated() { AddIcon(); }

void frmSysTray::TrayMessage(std::uint32_t message) {
    // What follows may end the program, and with it this form.
    const auto alive = KeepAlive();
    switch (message) {
    case 512: return SysTrayMouseMove.Raise();
    case 514: return SysTrayMouseDown.Raise(LeftButton);
    case 515: return SysTrayDoubleClick.Raise(LeftButton);
    case 516: return SysTrayMouseDown.Raise(RightButton);
    case 517: return SysTrayMouseUp.Raise(RightButton);
    case 518: return SysTrayDoubleClick.Raise(RightButton);
    case 1026: return BalloonShow.Raise();
    case 1027: return BalloonHide.Raise();
    case 1028: return BalloonTimeout.Raise();
    case 1029: return BalloonClicked.Raise();
    default: return;
    }
}

void frmSysTray::ShowBalloonTip(const Text& text, const Text& title, std::uint32_t flags, std::uint32_t timeout) {
    if (!m_Record.HasBalloons) return;
    m_Record.Info = Cut(text, LongestInfo);
    m_Record.InfoTitle = Cut(title, LongestInfoTitle);
    m_Record.InfoFlags = flags;
    m_Record.Timeout = timeout;
    Modify(NotifyIconFlag::Info);
}

Text frmSysTray::Tooltip() const { return m_Record.Tip.substr(0, m_Record.Tip.find('\0')); }

void frmSysTray::SetTooltip(const Text& text) {
    const Text tip = Cut(text, m_Record.HasBalloons ? LongestTip : LongestTipWithoutBalloons);
    if (!m_Record.IsWide && tip == m_Record.Tip) return;
    m_Record.Tip = tip;
    Modify(NotifyIconFlag::Tip);
}

void frmSysTray::SetIconHandle(IconNumber icon) {
    if (icon == m_Record.Icon) return;
    m_Record.Icon = icon;
    Modify(NotifyIconFlag::Icon);
}

void frmSysTray::BHOMessageChanged() {
    const Text line = txtBHOMessage.GetText();
    // The change that the clearing below makes.
    if (line.empty()) return;
    const std::shared_ptr<const BrowserChannel> channel = m_Environment.Channel;
    try {
        const ChannelResult result = channel->Handle(line);
        switch (result.What) {
        case ChannelResult::Kind::Nothing: break;
        case ChannelResult::Kind::WakeUp: SysTrayDoubleClick.Raise(LeftButton); break;
        case ChannelResult::Kind::Reply: m_Environment.Windows.SendText(result.ReplyWindow, result.Text); break;
        case ChannelResult::Kind::Broken: m_Environment.Broken(result.Text); break;
        }
    } catch (...) {
        txtBHOMessage.SetText("");
        throw;
    }
    txtBHOMessage.SetText("");
}

}  // namespace tb
