#include "submissions/forms/frmSubmissions.h"

namespace tb {

namespace {

// All in twips, but for the timer's milliseconds.
constexpr Twips Margin = 120;
constexpr TwipSize DropArea{4560, 1500};
constexpr Twips LineHeight = 240;
constexpr TwipSize ButtonSize{1515, 375};
constexpr std::int32_t RefreshInterval = 2000;
constexpr std::int32_t FixedSingle = 1;

}  // namespace

frmSubmissions::frmSubmissions(Forms& forms, Parts parts)
    : Form(forms, "frmSubmissions"),
      picDrop(Add<PictureBox>("picDrop")),
      lblDrop(Add<Label>("lblDrop", NoIndex, &picDrop)),
      lblStatus(Add<Label>("lblStatus")),
      LEDStat(Add<Label>("LEDStat")),
      cmdUpdateStatus(Add<CommandButton>("cmdUpdateStatus")),
      tmRefresh(Add<Timer>("tmRefresh")),
      m_Parts(std::move(parts)),
      m_Update(std::make_shared<StatusUpdate>(m_Parts.Store, m_Parts.Service, m_Parts.Activities,
                                              static_cast<StatusView&>(*this))) {
    PlaceControls();
    tmRefresh.SetInterval(RefreshInterval);
    tmRefresh.SetEnabled(true);
    LoadEvent.Connect([this] { Loaded(); });
    UnloadEvent.Connect([this](bool&) { m_Registration.reset(); });
    tmRefresh.TimerEvent.Connect([this] { RefreshDisplay(); });
    // It may run longer than the window lives.
    cmdUpdateStatus.ClickEvent.Connect([this] { std::shared_ptr<StatusUpdate>(m_Update)->cmdUpdateStatus(); });
}

frmSubmissions::~frmSubmissions() { m_Update->Detach(); }

void frmSubmissions::PlaceControls() {
    SetCaption(m_Parts.Service.Program.Product.ProductName + " - Submissions");
    SetBorderStyle(FixedSingle);
    picDrop.SetBorderStyle(1);
    picDrop.Move(Margin, Margin, DropArea.Width, DropArea.Height);
    lblDrop.SetCaption("Drop a suspicious message or web address here");
    lblDrop.Move(Margin, (DropArea.Height - LineHeight) / 2, DropArea.Width - 2 * Margin, LineHeight);
    lblStatus.Move(Margin, picDrop.Top() + DropArea.Height + Margin, DropArea.Width, LineHeight);
    LEDStat.Move(Margin, lblStatus.Top() + LineHeight + Margin, DropArea.Width - ButtonSize.Width - Margin, LineHeight);
    LEDStat.SetVisible(false);
    cmdUpdateStatus.SetCaption("&Update Status");
    cmdUpdateStatus.Move(Margin + DropArea.Width - ButtonSize.Width, LEDStat.Top(), ButtonSize.Width,
                         ButtonSize.Height);
}

void frmSubmissions::Loaded() {
    const Twips width = DropArea.Width + 2 * Margin;
    const Twips height = cmdUpdateStatus.Top() + ButtonSize.Height + Margin;
    const Twips framedWidth = Width() + width - ScaleWidth();
    const Twips framedHeight = Height() + height - ScaleHeight();
    const TwipSize screen = Family().ScreenSize();
    Move((screen.Width - framedWidth) / 2, (screen.Height - framedHeight) / 2, framedWidth, framedHeight);
    const std::weak_ptr<Control> weak = weak_from_this();
    m_Registration = m_Parts.Targets.Register(hWnd(), [weak](DropData& dropped) {
        if (const auto self = weak.lock()) static_cast<frmSubmissions&>(*self).Dropped(dropped);
    });
    RefreshDisplay();
}

void frmSubmissions::Dropped(DropData& dropped) {
    m_Parts.Store->HandIn(dropped);
    RefreshDisplay();
}

void frmSubmissions::RefreshDisplay() noexcept {
    Trap(
        [&] {
            const size_t waiting = m_Parts.Store->Queue().Count();
            lblStatus.SetCaption("Waiting: " + std::to_string(waiting) +
                                 "   Recorded: " + std::to_string(m_Parts.Store->Count()));
        },
        [](const RuntimeError&) { /* the next look may succeed */ });
}

void frmSubmissions::ShowLamp(std::int32_t state, std::int32_t, std::int32_t, const Text& caption) {
    LEDStat.SetCaption(caption);
    LEDStat.SetVisible(state == 0);
}

}  // namespace tb
