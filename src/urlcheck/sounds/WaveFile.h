// Whether bytes are a wave file that can be played from memory.
#pragma once

#include "base/text.h"

namespace tb {

// True when a form "WAVE" lies whole in `bytes`, with a format in front of its samples and no chunk that reaches beyond
// it. What the format says is not looked at.
bool IsWaveFile(TextView bytes);

}  // namespace tb
