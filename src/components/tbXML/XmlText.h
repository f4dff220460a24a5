// Characters that markup claims for itself, written and read as references.
#pragma once

#include "components/tbXML/Border.h"

namespace tb {

// Appends `text` as it stands between tags: "&", "<" and ">" become references.
void AppendEscapedText(Text& target, TextView text);

// Appends `value` as it stands between single quotes: the apostrophe becomes a reference too.
void AppendEscapedValue(Text& target, TextView value);

// The same as a text of its own, for those who write a tag by themselves; the one function here for other rooms.
TBXML_API XmlOutcome TryEscapeValue(Text& text, TextView value) noexcept;
inline Text EscapedValue(TextView value) {
    Text text;
    RaiseFailure(TryEscapeValue(text, value));
    return text;
}

// Appends `text` with its references replaced: the five named ones, and &#N; and &#xN; with N from 0 to 255 as that
// byte. An "&" that starts none of these stays with all that follows; so does a number above 255, which no byte can
// stand for.
void AppendUnescaped(Text& target, TextView text);

}  // namespace tb
