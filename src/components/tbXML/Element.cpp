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

void Element::SetAttributeValue(TextView name, Text value) {
    for (tb::Attribute& attribute : m_Attributes) {
        if (SameText(attribute.Name(), name)) return attribute.Value(std::move(value));
    }
    AddAttribute({Text(name), std::move(value)});
}

const tb::Attribute* Element::Find(TextView name) const {
    for (const tb::Attribute& attribute : m_Attributes) {
        if (SameText(attribute.Name(), name)) return &attribute;
    }
    return nullptr;
}

Text Element::FindAttributeValue(TextView name) const {
    const tb::Attribute* attribute = Find(name);
    return attribute == nullptr ? Text() : attribute->Value();
}

ElementPtr Element::FindElement(TextView name) const {
    for (const ElementPtr& child : m_Children) {
        if (SameText(child->Name(), name)) return child;
    }
    return nullptr;
}

ElementPtr Element::FindElementAttribute2(TextView attributeName, TextView attributeValue) const {
    for (const ElementPtr& child : m_Children) {
        const tb::Attribute* attribute = child->Find(attributeName);
        if (attribute != nullptr && SameText(attribute->Value(), attributeValue)) return child;
    }
    return nullptr;
}

const tb::Attribute& Element::Attribute(std::int32_t index) const {
    if (index < 1) throw Error(ErrorNumber::Subscript);
    return At(m_Attributes, static_cast<size_t>(index) - 1);
}

tb::Attribute& Element::Attribute(std::int32_t index) {
    if (index < 1) throw Error(ErrorNumber::Subscript);
    return At(m_Attributes, static_cast<size_t>(index) - 1);
}

void Element::AddElement(ElementPtr child) {
    if (child == nullptr) throw Error(ErrorNumber::ObjectNotSet);
    m_Children.push_back(std::move(child));
}

Text Element::XML() const {
    struct Level {
        const Element* Parent;
        size_t Next;
    };
    Text text;
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
    return text;
}

}  // namespace tb
