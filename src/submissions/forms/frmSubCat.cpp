#include "submissions/forms/frmSubCat.h"

#include <algorithm>

#include "base/numbers.h"
#include "shell/helpers/WindowPosition.h"
#include "ui/dialogs/DialogWindow.h"

namespace tb {

namespace {

// All in twips.
constexpr Twips Margin = 120;
// For the caption of the skin.
constexpr Twips CaptionRoom = 465;
constexpr Twips InnerWidth = 6000;
constexpr Twips TopHeight = 660;
constexpr Twips LineHeight = 240;
constexpr Twips ConfidenceHeight = 345;
constexpr TwipSize ButtonSize{1215, 375};
// From one confidence to the next; a caption needs more than a bare button.
constexpr Twips LabelWidth = 1380;
constexpr Twips CaptionedWidth = 1290;
constexpr Twips BareWidth = 330;

constexpr Twips FrameTopTop = CaptionRoom + Margin;
constexpr Twips BodyTop = FrameTopTop + TopHeight + Margin + LineHeight;
constexpr std::int32_t FixedDialog = 3;
constexpr const char* WindowName = "frmSubCat";

Twips BodyHeight(const QualifiersDialog& dialog) {
    return static_cast<Twips>(dialog.Categories().size()) * QualifiersDialog::RowHeight;
}

}  // namespace

TwipSize frmSubCat::Content(const QualifiersDialog& dialog) {
    return {InnerWidth + 2 * Margin,
            BodyTop + BodyHeight(dialog) + Margin + ConfidenceHeight + Margin + ButtonSize.Height + Margin};
}

WindowExtent frmSubCat::Extent(const App& app, const QualifiersDialog& dialog) {
    const bool isSkinned = app.SkinRoot && app.SkinRoot->FindElementAttribute2("Name", WindowName);
    const FormBorderMetrics border = GetFormBorderMetrics(app, isSkinned ? 0 : FixedDialog);
    const TwipSize content = Content(dialog);
    return {static_cast<double>(content.Width + 2 * border.Width),
            static_cast<double>(content.Height + border.CaptionHeight + 2 * border.Width)};
}

frmSubCat::frmSubCat(Forms& forms, const App& app, LogSink& log, QualifiersDialog& dialog)
    : Form(forms, WindowName),
      FrameTop(Add<PictureBox>("FrameTop")),
      lblTop(Add<Label>("lblTop", NoIndex, &FrameTop)),
      lblCat(Add<Label>("lblCat")),
      picBody(Add<PictureBox>("picBody")),
      picConfidence(Add<PictureBox>("picConfidence")),
      lblConfidence(Add<Label>("lblConfidence", NoIndex, &picConfidence)),
      cmdOK(Add<CommandButton>("cmdOK")),
      cmdCancel(Add<CommandButton>("cmdCancel")),
      cmdHelp(Add<CommandButton>("cmdHelp")),
      tbSkin1(AddWith<tbSkin>("tbSkin1", app, log)),
      m_App(app),
      m_Dialog(dialog) {
    SetCaption(Text(QualifiersDialog::Title));
    SetBorderStyle(FixedDialog);
    PlaceControls();
    AddCategories();
    AddConfidences();
    ConnectButtons();
    LoadEvent.Connect([this] { Loaded(); });
    tbSkin1.ColorsEvent.Connect([this] { TakeColor(); });
    // In front of all that is opened beside it, each time it is looked at.
    ActivateEvent.Connect([this] { SetTopMost(true); });
}

void frmSubCat::PlaceControls() {
    FrameTop.SetBorderStyle(1);
    FrameTop.Move(Margin, FrameTopTop, InnerWidth, TopHeight);
    // What a mail brought along: shown as it is.
    lblTop.SetUseMnemonic(false);
    lblTop.SetCaption(m_Dialog.Caption());
    lblTop.Move(60, 60, InnerWidth - 150, TopHeight - 150);
    lblCat.SetCaption("Category");
    lblCat.Move(Margin, FrameTopTop + TopHeight + Margin, InnerWidth, LineHeight);
    picBody.Move(Margin, BodyTop, InnerWidth, BodyHeight(m_Dialog));
    picConfidence.Move(Margin, picBody.Top() + picBody.Height() + Margin, InnerWidth, ConfidenceHeight);
    lblConfidence.SetCaption("Confidence ");
    lblConfidence.Move(0, 60, LabelWidth, LineHeight);
    const Twips step = ButtonSize.Width + Margin;
    PlaceButton(cmdOK, "OK", QualifiersDialog::OKToolTip, Margin + InnerWidth - 3 * step + Margin);
    PlaceButton(cmdCancel, "Cancel", QualifiersDialog::CancelToolTip, cmdOK.Left() + step);
    PlaceButton(cmdHelp, "Help", QualifiersDialog::CancelToolTip, cmdCancel.Left() + step);
    cmdOK.SetDefault(true);
    cmdCancel.SetCancel(true);
    const TwipSize content = Content(m_Dialog);
    Move(0, 0, content.Width, content.Height);
}

void frmSubCat::PlaceButton(CommandButton& button, const char* caption, TextView toolTip, Twips left) {
    button.SetCaption(caption);
    button.SetToolTipText(Text(toolTip));
    button.Move(left, picConfidence.Top() + ConfidenceHeight + Margin, ButtonSize.Width, ButtonSize.Height);
}

void frmSubCat::AddCategories() {
    size_t index = 0;
    for (const QualifiersDialog::Category& category : m_Dialog.Categories()) {
        auto& button = Add<OptionButton>(category.Name, NoIndex, &picBody);
        // As it is written: "R&D" has no key.
        button.SetCaption(ReplaceAll(category.Caption, "&", "&&"));
        button.SetToolTipText(category.ToolTip);
        button.SetTag(category.Tag);
        button.Move(0, category.Top, InnerWidth, QualifiersDialog::RowHeight);
        button.SetSelected(category.Selected);
        button.ClickEvent.Connect([this, index] { m_Dialog.SelectCategory(index); });
        ++index;
    }
}

void frmSubCat::AddConfidences() {
    Twips left = LabelWidth;
    size_t index = 0;
    for (const QualifiersDialog::Confidence& confidence : m_Dialog.Confidences()) {
        auto& button = Add<OptionButton>("optConfidence", static_cast<std::int32_t>(index), &picConfidence);
        const Twips width = confidence.Caption.empty() ? BareWidth : CaptionedWidth;
        button.SetCaption(Text(confidence.Caption));
        button.SetToolTipText(Text(confidence.ToolTip));
        button.Move(left, 30, width, QualifiersDialog::RowHeight);
        button.SetSelected(confidence.Selected);
        button.ClickEvent.Connect([this, index] { m_Dialog.SelectConfidence(index); });
        left += width;
        ++index;
    }
}

void frmSubCat::ConnectButtons() {
    cmdOK.ClickEvent.Connect([this] {
        if (m_Dialog.cmdOK({static_cast<double>(Top()), static_cast<double>(Left())})) Unload();
    });
    cmdCancel.ClickEvent.Connect([this] {
        m_Dialog.cmdCancel();
        Unload();
    });
    cmdHelp.ClickEvent.Connect([this] { m_Dialog.cmdHelp(); });
}

void frmSubCat::TakeColor() {
    const Color color = GroundColor(*this, tbSkin1, m_App);
    SetBackColor(color);
    for (const auto& control : Controls()) {
        // The buttons are the system's, the caption has its own.
        auto* const part = dynamic_cast<VisualControl*>(control.get());
        const bool isGround = part != nullptr && part != &tbSkin1 && dynamic_cast<CommandButton*>(part) == nullptr;
        if (isGround) part->SetBackColor(color);
        // Their text stands on that ground, and the skin names no rows that came at run time.
        if (dynamic_cast<OptionButton*>(part) != nullptr) part->SetForeColor(lblTop.ForeColor());
    }
}

// The frame has its size only now, and may have gone.
void frmSubCat::Loaded() {
    tbSkin1.DressWindow();
    tbSkin1.SetCaption(Caption());
    TakeColor();
    const TwipSize content = Content(m_Dialog);
    Move(Left(), Top(), Width() + content.Width - ScaleWidth(), Height() + content.Height - ScaleHeight());
    tbSkin1.FitWindow();
}

void SubCatWindows::ShowModal(QualifiersDialog& dialog, const WindowPosition& place) {
    const auto form = std::make_shared<frmSubCat>(m_Forms, m_App, m_Log, dialog);
    const WindowExtent extent = Extent(dialog);
    form->Move(RoundToInt32(place.Left), RoundToInt32(place.Top), RoundToInt32(extent.Width),
               RoundToInt32(extent.Height));
    Form* const behind = WindowBehind(*form);
    const auto ended = [](const std::weak_ptr<Form>& open) { return open.expired(); };
    m_Open.erase(std::remove_if(m_Open.begin(), m_Open.end(), ended), m_Open.end());
    m_Open.push_back(form);
    form->Load();
    form->SetOwner(behind);
    form->Show();
    VisualControl* focused = &form->cmdOK;
    for (const auto& control : form->Controls()) {
        auto* const option = dynamic_cast<OptionButton*>(control.get());
        if (option == nullptr || !option->Selected()) continue;
        focused = option;
        break;
    }
    focused->SetFocus();
    form->ShowModal();
    form->Unload();
}

void SubCatWindows::Close() {
    while (!m_Open.empty()) {
        const std::shared_ptr<Form> form = m_Open.back().lock();
        m_Open.pop_back();
        if (form) form->Unload();
    }
}

}  // namespace tb
