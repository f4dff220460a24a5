// Text as the whole program knows it: bytes, one per character, in the system's single-byte code page (base/codepage.h
// tells which), with an explicit length. A NUL is a character like any other; nothing here treats text as
// NUL-terminated.
// Positions are 1-based where a function says "position".
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tb {

using Text = std::string;
using TextView = std::string_view;

// The text between separators. An empty text has no parts at all; otherwise empty parts are kept, trailing ones too.
std::vector<Text> Split(TextView text, char separator);
// The same into texts that are there, for their memory.
void Split(TextView text, char separator, std::vector<Text>& parts);

// The same parts as views into `text`, which must outlive them.
std::vector<TextView> SplitViews(TextView text, char separator);

Text Join(const std::vector<Text>& parts, TextView separator);

// Case folding of all letters of the code page in use, not only of ASCII; those of ASCII alike in each. Characters
// whose other case is not in the code page stay as they are.
char LowerCase(char character);
char UpperCase(char character);
Text LowerCase(TextView text);
Text UpperCase(TextView text);

// The first `count` characters, or all of them when there are fewer.
TextView Left(TextView text, size_t count);

// `length` characters from `position` on, fewer at the end of the text, none behind it. A position below 1 or a
// negative length raises error 5.
TextView Mid(TextView text, long position, long length);

// Without leading and trailing blanks, tabs, carriage returns and line feeds.
TextView Trim(TextView text);

// Every occurrence of `pattern` taken out or replaced, in one pass from the left; an empty one occurs nowhere.
Text RemoveAll(TextView text, TextView pattern);
Text ReplaceAll(TextView text, TextView pattern, TextView value);

// While the text is longer than one character, trailing "/" characters are dropped.
TextView WithoutTrailingSlashes(TextView text);

// For messages: printable ASCII as it is, every other byte (and the backslash) as \xHH, cut after `limit` characters of
// the original with "..." behind.
Text Quoted(TextView text, size_t limit = 64);

// For a terminal, which obeys control characters: line feeds and tabs stay, a carriage return before a line feed goes,
// every other byte that is no printable ASCII stands as \xHH. A backslash stays, so a text that was quoted stays as it
// is.
Text Visible(TextView text);

}  // namespace tb
