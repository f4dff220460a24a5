// The parser behind Document.
#pragma once

#include "components/tbXML/Element.h"

namespace tb {

// The number of every error of the parser. Its description says what is wrong in which line, counted from 1:
// "XML line 3: </B> stands where </A> is due".
inline constexpr std::int32_t XmlErrorNumber = static_cast<std::int32_t>(0x80041F40U);

// Elements may be nested this deep, the root counted.
inline constexpr size_t XmlDepthLimit = 200;

// What ParseXml is made of; `root` stays as it was when the outcome is a failure.
TBXML_API XmlOutcome TryParseXml(TextView text, ElementPtr& root) noexcept;

// The root of the tree that `text` describes; raises XmlErrorNumber for a malformed text. Its cost grows with the
// length of the text and with nothing else.
inline ElementPtr ParseXml(TextView text) {
    ElementPtr root;
    RaiseFailure(TryParseXml(text, root));
    return root;
}

}  // namespace tb
