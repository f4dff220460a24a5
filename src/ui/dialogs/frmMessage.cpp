#include "ui/dialogs/frmMessage.h"

#include <algorithm>

#include "ui/dialogs/DialogWindow.h"

namespace tb {

namespace {

// The design, in twips. Above all of it is room for the caption of the skin, beside the area of the buttons for its
// border.
constexpr TwipSize DesignSize{5145, 1965};
constexpr TwipRect IconPlace{180, 615, 480, 480};
constexpr TwipRect LabelPlace{120, 660, 4905, 195};
constexpr TwipRect ButtonsPlace{45, 1320, 5055, 585};
constexpr TwipSize ButtonSize{1170, 375};
constexpr std::int32_t FixedDialog = 3;

// By an icon's code, the number of the program's icon.
constexpr std::pair<std::int32_t, std::int32_t> Icons[] = {{MessageButtons::Critical, 121},
                                                           {MessageButtons::Question, 122},
                                                           {MessageButtons::Exclamation, 123},
                                                           {MessageButtons::Information, 124}};
// Of the system's metrics: the border of a window, the frame of a dialog.
constexpr std::int32_t BorderMetric = 5;
constexpr std::int32_t FrameMetric = 7;
constexpr std::int32_t LetterC = 'C';

}  // namespace

frmMessage::frmMessage(Forms& forms, App& app, LogSink& log)
    : Form(forms, "frmMessage"),
      lblMessage(Add<Label>("lblMessage")),
      picIcon(Add<PictureBox>("picIcon")),
      picButtons(Add<PictureBox>("picButtons")),
      cmdButton(Add<CommandButton>("cmdButton", 0, &picButtons)),
      tbSkin1(AddWith<tbSkin>("tbSkin1", app, log)),
      m_App(app),
      m_Log(log) {
    PlaceControls();
    LoadEvent.Connect([this] { Loaded(); });
    tbSkin1.ColorsEvent.Connect([this] { TakeColor(GroundColor(*this, tbSkin1, m_App)); });
    UnloadEvent.Connect([this](bool&) { m_Open.reset(); });
    QueryUnloadEvent.Connect([this](bool& cancel, UnloadMode mode) { Closing(cancel, mode); });
    KeyDownEvent.Connect([this](const KeyPress& key, bool& handled) { KeyDown(key, handled); });
    cmdButton.ClickEvent.Connect([this] { Press(1); });
}

void frmMessage::PlaceControls() {
    SetBorderStyle(FixedDialog);
    Move(0, 0, DesignSize.Width, DesignSize.Height);
    // What a site or a server brought along is shown as it is.
    lblMessage.SetUseMnemonic(false);
    lblMessage.Move(LabelPlace.Left, LabelPlace.Top, LabelPlace.Width, LabelPlace.Height);
    picIcon.Move(IconPlace.Left, IconPlace.Top, IconPlace.Width, IconPlace.Height);
    picButtons.Move(ButtonsPlace.Left, ButtonsPlace.Top, ButtonsPlace.Width, ButtonsPlace.Height);
    cmdButton.Move(0, 0, ButtonSize.Width, ButtonSize.Height);
}

void frmMessage::Loaded() {
    m_Open.emplace(m_App);
    if (m_App.AppBackColor == 0) m_App.AppBackColor = SystemColors::ButtonFace.Bits();
    TakeColor(m_App.AppBackColor);
    tbSkin1.DressWindow();
    // The design is that of the room inside the frame, which the skin takes away.
    if (BorderStyle() != 0) Move(Left(), Top(), Width(), 2 * Height() - ScaleHeight());
    TakeColor(GroundColor(*this, tbSkin1, m_App));
    ShowTitle();
}

void frmMessage::TakeColor(Color color) {
    for (VisualControl* const part : std::initializer_list<VisualControl*>{this, &lblMessage, &picIcon, &picButtons}) {
        part->SetBackColor(color);
    }
    for (std::int32_t index = 0; Control* const button = Find("cmdButton", index); ++index) {
        static_cast<CommandButton&>(*button).SetBackColor(color);
    }
}

std::int32_t frmMessage::MsgBox(const Message& message) {
    const MessageFlags flags = ReadMessageFlags(message.Buttons);
    ButtonText(flags.Captions);
    ButtonsUnload(flags.Unload);
    MessageTitle(message.Title);
    MessageIcon(flags.Icon);
    ButtonDefault(flags.Default);
    TopMost(flags.TopMost);
    ButtonEvent.Connect([this, file = message.HelpFile, topic = message.Context](std::int32_t) {
        StartHelp(m_App, m_Log, topic, file);
    });
    ShowMessage(message.Prompt);
    return m_SelectedButton > 0 ? flags.Answers[static_cast<size_t>(m_SelectedButton) - 1] : 0;
}

void frmMessage::MessageTitle(const Text& title) {
    m_Title = title;
    if (IsLoaded()) ShowTitle();
}

void frmMessage::ShowTitle() {
    SetCaption(m_Title);
    tbSkin1.SetCaption(m_Title);
}

void frmMessage::ShowMessage(const Text& prompt) {
    const auto alive = KeepAlive();
    m_Prompt = prompt;
    m_SelectedButton = 0;
    Form* const behind = WindowBehind(*this);
    Load();
    SetOwner(behind);
    ShowIcon();
    LayOut(prompt);
    if (m_TopMost) SetTopMost(true);
    m_App.System.Dialogs.SoundMessage(m_Icon);
    Show();
    FocusDefault();
    if (!SetForeground()) Flash();
    ShowModal();
}

void frmMessage::FocusDefault() {
    const auto wanted = static_cast<size_t>(std::max(m_ButtonDefault, 1)) - 1;
    CommandButton& button = Button(wanted < m_ButtonText.size() ? wanted : 0);
    // A skin may have disabled it.
    if (button.Enabled()) button.SetFocus();
}

void frmMessage::ShowIcon() {
    const auto known =
        std::find_if(std::begin(Icons), std::end(Icons), [this](const auto& icon) { return icon.first == m_Icon; });
    picIcon.SetVisible(known != std::end(Icons));
    if (!picIcon.Visible()) return;
    picIcon.SetPicture(Family().Decode(m_App.System.Resources.Icon(known->second)));
}

void frmMessage::LayOut(const Text& prompt) {
    const std::vector<Screen> screens = Family().Screens();
    const Screen& screen = ScreenAt(screens, Family().Pointer());
    const Twips inner = std::max(ScaleHeight(), picButtons.Top() + picButtons.Height());
    const MessageDesign design{{ScaleWidth(), inner}, {Width() - ScaleWidth(), Height() - ScaleHeight()},
                               picIcon.Bounds(),      lblMessage.Bounds(),
                               picButtons.Bounds(),   {cmdButton.Width(), cmdButton.Height()}};
    const TwipScale scale = Family().Scale();
    Machine& machine = m_App.System.Machine;
    const MessageSurroundings around{scale.ToTwips(machine.Metric(BorderMetric) + machine.Metric(FrameMetric)),
                                     screen.Room.Height};
    const MessageLayout layout = LayOutMessage(
        design, around, prompt, picIcon.Visible(), m_ButtonText.size(),
        [this](const Text& text, Twips width) { return Family().MeasureText(text, lblMessage.Font(), width); });
    const TwipPoint place = InTheMiddle(screen.Whole, layout.Window);
    Move(place.X, place.Y, layout.Window.Width, layout.Window.Height);
    // The middle of the whole screen may lie under a bar of the system's.
    KeepOnScreen();
    tbSkin1.FitWindow();
    lblMessage.Move(layout.Label.Left, layout.Label.Top, layout.Label.Width, layout.Label.Height);
    lblMessage.SetCaption(layout.Prompt);
    picButtons.Move(layout.Buttons.Left, layout.Buttons.Top, layout.Buttons.Width, layout.Buttons.Height);
    PlaceButtons(layout.Row);
}

void frmMessage::PlaceButtons(const std::vector<TwipRect>& row) {
    const std::int32_t escape = Escape();
    for (size_t index = 0; index < row.size(); ++index) {
        CommandButton& button = Button(index);
        const auto number = static_cast<std::int32_t>(index) + 1;
        button.SetCaption(m_ButtonText[index]);
        button.Move(row[index].Left, row[index].Top, row[index].Width, row[index].Height);
        button.SetDefault(number == m_ButtonDefault);
        button.SetCancel(number == escape);
        button.SetVisible(true);
    }
    // Of a row before that was longer.
    for (auto index = static_cast<std::int32_t>(row.size()); Control* const left = Find("cmdButton", index); ++index) {
        static_cast<CommandButton&>(*left).SetVisible(false);
    }
}

CommandButton& frmMessage::Button(size_t index) {
    const auto number = static_cast<std::int32_t>(index);
    if (Control* const found = Find("cmdButton", number)) return static_cast<CommandButton&>(*found);
    auto& button = Add<CommandButton>("cmdButton", number, &picButtons);
    button.SetBackColor(cmdButton.BackColor());
    button.SetForeColor(cmdButton.ForeColor());
    button.SetFont(cmdButton.Font());
    button.ClickEvent.Connect([this, number] { Press(number + 1); });
    return button;
}

void frmMessage::Press(std::int32_t number) {
    m_SelectedButton = number;
    if (number == 0 || Unloads(static_cast<size_t>(number) - 1)) {
        Hide();
    } else {
        ButtonEvent.Raise(number);
    }
}

void frmMessage::Closing(bool& cancel, UnloadMode mode) {
    if (mode != UnloadMode::User || !Visible()) return;
    cancel = true;
    Press(Escape());
}

void frmMessage::KeyDown(const KeyPress& key, bool& handled) {
    if (key.Key != LetterC || !key.Control || key.Alt) return;
    handled = true;
    m_App.System.Clipboard.SetText(hWnd(), MessageAsText(m_Title, m_Prompt, m_ButtonText));
}

}  // namespace tb
