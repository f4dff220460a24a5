#include "submissions/QualifiersDialog.h"

#include "base/errors.h"
#include "base/numbers.h"
#include "shell/helpers/Messages.h"
#include "shell/helpers/Opening.h"

namespace tb {

namespace {

// Every site's category; it says nothing about a submission.
constexpr const char* GeneralCategory = "1";

template <typename Rows>
void SelectOnly(Rows& rows, size_t index) {
    At(rows, index);
    for (size_t row = 0; row < rows.size(); ++row) rows[row].Selected = row == index;
}

}  // namespace

void QualifiersDialog::Setup(const ElementPtr& categories, const Text& caption, const Text& categoryID,
                             const Text& confidenceID) noexcept {
    Trap(
        [&] {
            m_Caption = caption;
            if (!categories) throw Error(ErrorNumber::ObjectNotSet);
            for (const ElementPtr& category : *categories) {
                const Text id = category->FindAttributeValue("ID");
                if (id == GeneralCategory) continue;
                const size_t number = m_Categories.size();
                m_Categories.push_back({"optCat" + std::to_string(number), category->FindAttributeValue("NAME"),
                                        category->FindAttributeValue("DESC"), id,
                                        static_cast<std::int32_t>(number) * RowHeight});
                if (id == categoryID) SelectCategory(number);
            }
            SelectConfidence(static_cast<size_t>(ToInt16(confidenceID)));
        },
        [&](const RuntimeError& error) {
            m_Log.WriteLog("Error setting up Submissions Category: " + error.Description, LogLevel::Always);
        });
}

void QualifiersDialog::SelectCategory(size_t index) { SelectOnly(m_Categories, index); }
void QualifiersDialog::SelectConfidence(size_t index) { SelectOnly(m_Confidences, index); }

bool QualifiersDialog::cmdOK(const WindowPosition& window) noexcept {
    return TrapOr(
        false,
        [&] {
            for (const Category& category : m_Categories) {
                if (category.Selected) CategoryID = ToInt16(category.Tag);
            }
            for (size_t index = 0; index < m_Confidences.size(); ++index) {
                if (m_Confidences[index].Selected) ConfidenceID = static_cast<std::int16_t>(index);
            }
            Result = 1;
            LastTop = static_cast<float>(window.Top);
            LastLeft = static_cast<float>(window.Left);
            return true;
        },
        [&](const RuntimeError& error) {
            ShowMessage(m_App, "Error Submissions Category cmdOK Click: " + error.Description, 0);
        });
}

void QualifiersDialog::cmdCancel() noexcept { CategoryID = ConfidenceID = -1; }

void QualifiersDialog::cmdHelp() noexcept { StartHelp(m_App, m_Log, HelpTopic::Qualifiers); }

}  // namespace tb
