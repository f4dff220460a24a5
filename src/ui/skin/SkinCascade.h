// The attributes of a skin as one window sees them: from the general level to the special one, the last value that is
// not empty stays.
#pragma once

#include <map>

#include "components/tbXML/Element.h"

namespace tb {

// Empty at first.
class SkinCascade {
public:
    // Adds what a window has that no level of the skin names.
    void EnterDefaults();
    // The value of the attribute in `element`, which then stands in the collection; without one, what the collection
    // holds. Empty for neither, and for a null element, which changes nothing. Values are compared to the letter, names
    // without case.
    Text FindSkinAttribute(const ElementPtr& element, TextView name);
    // The first, and the second when that gives the empty text: a first element without the attribute gives what is
    // inherited, if anything is.
    Text FindSkinAttribute2(const ElementPtr& first, const ElementPtr& second, TextView name);
    // All attributes of an element; nothing for null.
    void Enter(const ElementPtr& element);
    // Those attributes of a window's built-in element that are no matter of the window's own size, colour and name; the
    // values come from the override first. A name that is a piece of these words is passed over with them.
    void EnterWindow(const ElementPtr& builtin, const ElementPtr& override);

    // The value, or `otherwise` when there is none.
    Text GetSkinCollection(TextView name, const Text& otherwise) const;
    bool Has(TextView name) const;

private:
    // By name in lower case.
    std::map<Text, Text> m_SkinCollection;
};

// The override's attribute unless it is empty or there is no override, else the built-in one's. No cascade knows of it.
Text FindPlainAttribute(const ElementPtr& builtin, const ElementPtr& override, TextView name);

}  // namespace tb
