// The window of the dialog "Assign Submission Category".
#pragma once

#include "shell/helpers/App.h"
#include "submissions/QualifiersDialog.h"
#include "ui/skin/tbSkin.h"
#include "ui/window/CommandButton.h"
#include "ui/window/Form.h"
#include "ui/window/Label.h"
#include "ui/window/OptionButton.h"
#include "ui/window/PictureBox.h"

namespace tb {

class frmSubCat : public Form {
public:
    // Not shown. With the rows that the dialog has now; it and the others outlive the window.
    frmSubCat(Forms& forms, const App& app, LogSink& log, QualifiersDialog& dialog);

    // Of the window with the dialog's rows and its frame, in twips.
    static WindowExtent Extent(const App& app, const QualifiersDialog& dialog);

    PictureBox& FrameTop;
    Label& lblTop;
    Label& lblCat;
    PictureBox& picBody;
    PictureBox& picConfidence;
    Label& lblConfidence;
    CommandButton& cmdOK;
    CommandButton& cmdCancel;
    CommandButton& cmdHelp;
    tbSkin& tbSkin1;

private:
    // The room inside the frame.
    static TwipSize Content(const QualifiersDialog& dialog);

    void AddCategories();
    void AddConfidences();
    void PlaceControls();
    void PlaceButton(CommandButton& button, const char* caption, TextView toolTip, Twips left);
    void Loaded();
    void TakeColor();
    void ConnectButtons();

    const App& m_App;
    QualifiersDialog& m_Dialog;
};

// Shows the dialog in such windows.
class SubCatWindows : public QualifiersView {
public:
    // All three outlive the object.
    SubCatWindows(Forms& forms, const App& app, LogSink& log) : m_Forms(forms), m_App(app), m_Log(log) {}

    WindowExtent Extent(const QualifiersDialog& dialog) override { return frmSubCat::Extent(m_App, dialog); }
    // Above all other windows; the choice that stands, or else the button OK, has the focus.
    void ShowModal(QualifiersDialog& dialog, const WindowPosition& place) override;

    // Ends those that are open as their frame's button would.
    void Close();

private:
    Forms& m_Forms;
    const App& m_App;
    LogSink& m_Log;
    // The last one is the one in front.
    std::vector<std::weak_ptr<Form>> m_Open;
};

}  // namespace tb
