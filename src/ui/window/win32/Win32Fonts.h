// The fonts that windows show texts in, each made once.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "platform/win32/Handle.h"
#include "ui/window/Font.h"

namespace tb {

class Win32Fonts {
public:
    explicit Win32Fonts(int dotsPerInch) : m_Dpi(dotsPerInch) {}

    // A name that is not installed, or a size that is none, gives the nearest that the system has. A window that shows
    // it holds it.
    std::shared_ptr<const OwnedFont> Get(const Font& font);

private:
    int m_Dpi;
    std::vector<std::pair<Font, std::shared_ptr<const OwnedFont>>> m_Made;
};

}  // namespace tb
