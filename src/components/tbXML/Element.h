// An XML element: tag name, text, attributes in order, child elements in order. It stands alone or in a tree, is shared
// by whoever holds it, and outlives the document that parsed it.
// Names are found without regard to case. Nothing here checks names: those that the caller gives must be ones that the
// parser reads (docs/formats/settings-file.md has the grammar), and no element may be put into itself.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "components/tbXML/Attribute.h"
#include "components/tbXML/Border.h"

namespace tb {

class Element;
using ElementPtr = std::shared_ptr<Element>;

class Element {
public:
    using Children = std::vector<ElementPtr>;

    Element() = default;
    explicit Element(Text name, Text body = {}) : m_Name(std::move(name)), m_Body(std::move(body)) {}
    Element(const Element&) = delete;
    Element& operator=(const Element&) = delete;
    // Trees of any depth go without deep recursion.
    TBXML_API ~Element();

    // The text. That of a parsed element without children is exactly what stood in the file; with children it is the
    // pieces of text around them, each without surrounding blanks and line ends, joined.
    const Text& Body() const { return m_Body; }
    void Body(Text body) { m_Body = std::move(body); }

    // In place, keeping the spelling of the name, or at the end when there is no such attribute.
    void SetAttributeValue(TextView name, Text value) {
        const size_t index = Find(name);
        if (index == m_Attributes.size()) return AddAttribute({Text(name), std::move(value)});
        m_Attributes[index].Value(std::move(value));
    }
    // The value of the first attribute of that name; empty when there is none.
    Text FindAttributeValue(TextView name) const {
        const size_t index = Find(name);
        return index == m_Attributes.size() ? Text() : m_Attributes[index].Value();
    }

    // The first direct child of that tag name, or null.
    TBXML_API ElementPtr FindElement(TextView name) const noexcept;
    // The first direct child whose attribute of that name has that value, case disregarded in both, or null. A child
    // without the attribute does not match the empty value.
    TBXML_API ElementPtr FindElementAttribute2(TextView attributeName, TextView attributeValue) const noexcept;

    // At the end, even if there is one of that name already; look-ups find the first.
    void AddAttribute(tb::Attribute attribute) { m_Attributes.push_back(std::move(attribute)); }
    std::int32_t AttributeCount() const { return static_cast<std::int32_t>(m_Attributes.size()); }
    // By position from 1; error 9 outside. The reference lasts until an attribute is added.
    const tb::Attribute& Attribute(std::int32_t index) const { return At(m_Attributes, Position(index)); }
    tb::Attribute& Attribute(std::int32_t index) { return At(m_Attributes, Position(index)); }

    const Text& Name() const { return m_Name; }
    void Name(Text name) { m_Name = std::move(name); }

    // The element with its subtree as text: opening tag with its attributes in single quotes, body, children, closing
    // tag, CR LF. Never self-closing; markup characters are escaped, all other bytes stand as they are. Parsing it
    // gives an equal element, but for blanks around a body that has children behind it, and up to the parser's depth.
    Text XML() const {
        Text text;
        RaiseFailure(Write(text));
        return text;
    }

    // Appends a child; error 91 for null.
    void AddElement(ElementPtr child) {
        if (child == nullptr) throw Error(ErrorNumber::ObjectNotSet);
        m_Children.push_back(std::move(child));
    }
    std::int32_t Count() const { return static_cast<std::int32_t>(m_Children.size()); }
    Children::const_iterator begin() const { return m_Children.begin(); }
    Children::const_iterator end() const { return m_Children.end(); }

private:
    // What is below 1 becomes a position behind all others.
    static size_t Position(std::int32_t index) { return static_cast<size_t>(index) - 1; }
    // The position of the first attribute of that name, or the number of attributes.
    TBXML_API size_t Find(TextView name) const noexcept;
    TBXML_API XmlOutcome Write(Text& text) const noexcept;

    Text m_Name;
    Text m_Body;
    std::vector<tb::Attribute> m_Attributes;
    Children m_Children;
};

}  // namespace tb
