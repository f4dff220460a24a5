// The tokens in texts of a skin and of the options' markup.
#pragma once

#include "shell/helpers/App.h"

namespace tb {

// The text with each token replaced by what it stands for, in this order: {AppProductName}, {AppCompanyName},
// {AppComments}, {AppCopyright} (the last three from the version resource of the program's file, empty without one),
// {CrLf}, {AppPath} and {AppDataPath} (without a trailing backslash), {AppURL}. Case counts. A token inside a value
// that was put in is replaced too if it is one of those that are still to come. Reads the file only for a token that
// needs it; raises what that raises.
Text ExpandTokens(const App& app, Text text);

}  // namespace tb
