// The dialog "Assign Submission Category" without its window: what kind of scam a submission is, and how sure the user
// is.
#pragma once

#include <cstdint>
#include <vector>

#include "base/log.h"
#include "components/tbXML/Element.h"
#include "shell/helpers/App.h"
#include "shell/helpers/WindowPosition.h"

namespace tb {

class QualifiersDialog {
public:
    static constexpr TextView Title = "Assign Submission Category";
    static constexpr TextView OKToolTip = "Submit Malicious Site";
    // Of the buttons Cancel and Help.
    static constexpr TextView CancelToolTip = "Cancel Submission";
    // Twips from one category to the next.
    static constexpr std::int32_t RowHeight = 285;

    struct Category {
        // "optCat" and its number from 0.
        Text Name;
        Text Caption;
        Text ToolTip;
        // The category's id.
        Text Tag;
        // Twips below the first one.
        std::int32_t Top = 0;
        bool Selected = false;
    };
    struct Confidence {
        // Three of the five have one.
        TextView Caption;
        TextView ToolTip;
        bool Selected = false;
    };

    // Both outlive the dialog.
    QualifiersDialog(const App& app, LogSink& log) : m_App(app), m_Log(log) {}

    // What the dialog gives back. The ids are 0 until OK, -1 after Cancel; Result is 1 after OK and 0 after every other
    // end; the position is that of the window at OK, else 0.
    std::int16_t CategoryID = 0;
    std::int16_t ConfidenceID = 0;
    std::int32_t Result = 0;
    float LastTop = 0;
    float LastLeft = 0;

    // Makes the rows of the element's children, but for the category with the id "1", and selects the two given by
    // their texts; what is not there selects nothing. On a failure one line of level 0, and the rows made so far.
    void Setup(const ElementPtr& categories, const Text& caption, const Text& categoryID,
               const Text& confidenceID) noexcept;

    // The subject or the URL, for "lblTop".
    const Text& Caption() const { return m_Caption; }
    const std::vector<Category>& Categories() const { return m_Categories; }
    // By index, which is what is submitted.
    const std::vector<Confidence>& Confidences() const { return m_Confidences; }

    // The user chooses; the other rows of the same group are no longer selected. Error 9 outside.
    void SelectCategory(size_t index);
    void SelectConfidence(size_t index);

    // Takes over what is selected. True: the window, which stands there, closes. False after an error, which a message
    // has told.
    bool cmdOK(const WindowPosition& window) noexcept;
    // The window closes. When it closes in another way nothing is called.
    void cmdCancel() noexcept;
    // Opens the help at this dialog's topic; one line of level 0 when it cannot.
    void cmdHelp() noexcept;

private:
    const App& m_App;
    LogSink& m_Log;
    Text m_Caption;
    std::vector<Category> m_Categories;
    std::vector<Confidence> m_Confidences{{"1 - Low", "Low Confidence"},
                                          {"", ""},
                                          {"3 - Medium", "Medium Confidence"},
                                          {"", ""},
                                          {"5 - High", "High Confidence"}};
};

// The window of the dialog.
class QualifiersView {
public:
    virtual ~QualifiersView() = default;
    // Of the window with the dialog's rows, in twips.
    virtual WindowExtent Extent(const QualifiersDialog& dialog) = 0;
    // Shows the window there and returns when it is closed; messages are served meanwhile.
    virtual void ShowModal(QualifiersDialog& dialog, const WindowPosition& place) = 0;
};

}  // namespace tb
