#include "components/tbXML/Element.h"

#include <algorithm>
#include <iterator>

#include "base/errors.h"
#include "components/tbXML/XmlText.h"

namespace tb {

namespace {

bool SameText(TextView one, TextView other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](char left, char right) { return LowerCase(left) == LowerCase(right); });
}

void AppendOpeningTag(Text& text, const Element& element) {
    text += '<';
    text += element.Name();
    for (std::int32_t index = 1; index <= element.AttributeCount(); ++index) {
        const Attribute& attribute = element.Attribute(index);
        text += ' ';
        text += attribute.Name();
        text += "='";
        AppendEscapedValue(text, attribute.Value());
        text += '\'';
    }
    text += '>';
    AppendEscapedText(text, element.Body());
}

void AppendClosingTag(Text& text, const Element& element) {
    text += "</";
    text += element.Name();
    text += ">\r\n";
}

}  // namespace

Element::~Element() {
    // Left to themselves, children would be destroyed by recursion as deep as the tree. Those held by nobody else hand
    // their own children over before they go. Without memory for the list, recursion it is.
    Children doomed = std::move(m_Children);
    const auto takeLast = [&doomed] {
        const ElementPtr last = std::move(doomed.back());
        doomed.pop_back();
        if (last.use_count() != 1) return;
        Children orphans = std::move(last->m_Children);
        doomed.insert(doomed.end(), std::make_move_iterator(orphans.begin()), std::make_move_iterator(orphans.end()));
    };
    Trap(
        [&] {
            while (!doomed.empty()) takeLast();
        },
        [](const RuntimeError&) {});
}

size_t Element::Find(TextView name) const noexcept {
    size_t index = 0;
    while (index < m_Attributes.size() && !SameText(m_Attributes[index].Name(), name)) ++index;
    return index;
}

ElementPtr Element::FindElement(TextView name) const noexcept {
    for (const ElementPtr& child : m_Children) {
        if (SameText(child->Name(), name)) return child;
    }
    return nullptr;
}

ElementPtr Element::FindElementAttribute2(TextView attributeName, TextView attributeValue) const noexcept {
    for (const ElementPtr& child : m_Children) {
        const size_t index = child->Find(attributeName);
        if (index == child->m_Attributes.size()) continue;
        if (SameText(child->m_Attributes[index].Value(), attributeValue)) return child;
    }
    return nullptr;
}

XmlOutcome Element::Write(Text& text) const noexcept {
    struct Level {
        const Element* Parent;
        size_t Next;
    };
    return OutcomeOf([&] {
        AppendOpeningTag(text, *this);
        for (std::vector<Level> open{{this, 0}}; !open.empty();) {
            Level& level = open.back();
            if (level.Next < level.Parent->m_Children.size()) {
                const Element* child = level.Parent->m_Children[level.Next++].get();
                AppendOpeningTag(text, *child);
                open.push_back({child, 0});
            } else {
                AppendClosingTag(text, *level.Parent);
                open.pop_back();
            }
        }
    });
}

}  // namespace tb
