#include "components/tbXML/XmlParser.h"

#include <algorithm>

#include "base/errors.h"
#include "components/tbXML/XmlText.h"

namespace tb {

namespace {

constexpr TextView Blanks = " \t\r\n";

bool IsNameStart(char character) {
    const char folded = static_cast<char>(character | 0x20);
    return (folded >= 'a' && folded <= 'z') || character == '_' || character == ':' ||
           static_cast<unsigned char>(character) >= 0x80;
}

bool IsNamePart(char character) {
    return IsNameStart(character) || (character >= '0' && character <= '9') || character == '-' || character == '.';
}

class XmlParser {
public:
    explicit XmlParser(TextView text) : m_Text(text) {}

    ElementPtr Parse() {
        while (m_Position < m_Text.size()) {
            const size_t tag = std::min(m_Text.find('<', m_Position), m_Text.size());
            TakeText(tag);
            if (tag < m_Text.size()) TakeMarkup();
        }
        if (!m_Open.empty()) Fail("<" + Quoted(m_Open.back().Node->Name()) + "> is not closed", m_Open.back().Start);
        if (m_Root == nullptr) Fail("there is no root element");
        return m_Root;
    }

private:
    // An element whose closing tag is still to come.
    struct Open {
        ElementPtr Node;
        size_t Start;
        // The text before the last child that has begun, and since then.
        Text Body;
        Text Run;
    };

    [[noreturn]] void Fail(const Text& what, size_t position) const {
        const auto line = 1 + std::count(m_Text.begin(), m_Text.begin() + static_cast<std::ptrdiff_t>(position), '\n');
        throw RuntimeError(XmlErrorNumber, "XML line " + std::to_string(line) + ": " + what);
    }
    [[noreturn]] void Fail(const Text& what) const { Fail(what, m_Position); }

    bool Ahead(TextView what) const { return m_Text.compare(m_Position, what.size(), what) == 0; }
    bool Accept(TextView what) {
        if (!Ahead(what)) return false;
        m_Position += what.size();
        return true;
    }

    // True if there was at least one.
    bool SkipBlanks() {
        const size_t start = m_Position;
        m_Position = std::min(m_Text.find_first_not_of(Blanks, m_Position), m_Text.size());
        return m_Position > start;
    }

    // What stands before `end`, which is skipped too. `kind` and `name` are for the message when there is no end.
    TextView TakeUntil(TextView end, size_t start, const char* kind, TextView name = {}) {
        const size_t found = m_Text.find(end, m_Position);
        if (found == TextView::npos) Fail(kind + Quoted(name) + " is not closed", start);
        const TextView taken = m_Text.substr(m_Position, found - m_Position);
        m_Position = found + end.size();
        return taken;
    }

    // Empty when no name stands here.
    TextView TakeName() {
        const size_t start = m_Position;
        if (start < m_Text.size() && IsNameStart(m_Text[start])) {
            while (m_Position < m_Text.size() && IsNamePart(m_Text[m_Position])) ++m_Position;
        }
        return m_Text.substr(start, m_Position - start);
    }

    TextView TakeTagName() {
        const TextView name = TakeName();
        if (name.empty()) Fail("\"<\" is followed by no tag name");
        // Markup with such a slip is in use, and its meaning is plain.
        Accept("'");
        return name;
    }

    void TakeText(size_t end) {
        const TextView text = m_Text.substr(m_Position, end - m_Position);
        if (!m_Open.empty()) {
            AppendUnescaped(m_Open.back().Run, text);
        } else if (!Trim(text).empty()) {
            SkipBlanks();
            Fail("text stands outside the root element");
        }
        m_Position = end;
    }

    void TakeMarkup() {
        const size_t start = m_Position;
        if (Accept("<!--")) {
            TakeUntil("-->", start, "a comment");
        } else if (Accept("<![CDATA[")) {
            if (m_Open.empty()) Fail("text stands outside the root element", start);
            m_Open.back().Run += TakeUntil("]]>", start, "a CDATA section");
        } else if (Accept("<?")) {
            TakeUntil("?>", start, "a processing instruction");
        } else if (Accept("<!DOCTYPE")) {
            TakeDocumentType(start);
        } else if (Accept("</")) {
            TakeClosingTag(start);
        } else {
            Accept("<");
            TakeOpeningTag(start);
        }
    }

    void TakeDocumentType(size_t start) {
        if (m_Root != nullptr) Fail("a document type stands behind the beginning of the root element", start);
        const TextView type = TakeUntil(">", start, "the document type");
        if (type.find('[') != TextView::npos) Fail("a document type with declarations of its own is not read", start);
    }

    void TakeOpeningTag(size_t start) {
        const TextView name = TakeTagName();
        if (m_Open.empty() && m_Root != nullptr) Fail("a second root element <" + Quoted(name) + "> begins", start);
        if (m_Open.size() == XmlDepthLimit) {
            Fail("elements are nested more than " + std::to_string(XmlDepthLimit) + " deep", start);
        }
        const auto element = std::make_shared<Element>(Text(name));
        const bool closed = TakeAttributes(*element, start);
        if (m_Open.empty()) {
            m_Root = element;
        } else {
            EndRun(m_Open.back());
            m_Open.back().Node->AddElement(element);
        }
        if (!closed) m_Open.push_back({element, start, {}, {}});
    }

    // Up to the end of the tag; True if that also closes the element.
    bool TakeAttributes(Element& element, size_t start) {
        for (;;) {
            const bool blank = SkipBlanks();
            if (Accept(">")) return false;
            if (Accept("/>")) return true;
            if (m_Position >= m_Text.size()) Fail("tag <" + Quoted(element.Name()) + "> is not finished", start);
            const TextView name = blank ? TakeName() : TextView();
            if (name.empty()) {
                const Text found = Quoted(m_Text.substr(m_Position, 1));
                Fail("\"" + found + "\" is out of place in tag <" + Quoted(element.Name()) + ">");
            }
            element.AddAttribute({Text(name), TakeValue(name)});
        }
    }

    Text TakeValue(TextView name) {
        SkipBlanks();
        const size_t start = m_Position;
        if (!Accept("=")) Fail("attribute " + Quoted(name) + " has no value");
        SkipBlanks();
        const TextView quote = m_Text.substr(m_Position, 1);
        if (quote != "'" && quote != "\"") Fail("the value of attribute " + Quoted(name) + " is not in quotes");
        ++m_Position;
        Text value;
        AppendUnescaped(value, TakeUntil(quote, start, "the value of attribute ", name));
        return value;
    }

    void TakeClosingTag(size_t start) {
        const TextView name = TakeTagName();
        SkipBlanks();
        if (!Accept(">")) Fail("tag </" + Quoted(name) + "> is not finished", start);
        if (m_Open.empty()) Fail("</" + Quoted(name) + "> closes nothing", start);
        Open& open = m_Open.back();
        if (open.Node->Name() != name) {
            Fail("</" + Quoted(name) + "> stands where </" + Quoted(open.Node->Name()) + "> is due", start);
        }
        if (open.Node->Count() == 0) {
            open.Body = std::move(open.Run);
        } else {
            EndRun(open);
        }
        open.Node->Body(std::move(open.Body));
        m_Open.pop_back();
    }

    // Between children only trimmed text counts: otherwise the line ends that the writer puts behind each child would
    // grow into the body at every round trip.
    static void EndRun(Open& open) {
        open.Body += Trim(open.Run);
        open.Run.clear();
    }

    TextView m_Text;
    size_t m_Position = 0;
    std::vector<Open> m_Open;
    ElementPtr m_Root;
};

}  // namespace

XmlOutcome TryParseXml(TextView text, ElementPtr& root) noexcept {
    return OutcomeOf([&] { root = XmlParser(text).Parse(); });
}

}  // namespace tb
