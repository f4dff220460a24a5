#include "shell/helpers/Messages.h"

namespace tb {

std::int32_t ShowMessage(const App& app, const Text& prompt, std::int32_t buttons, const Text& title) {
    const OpenDialog open(app);
    return app.System.Dialogs.ShowMessage(prompt, buttons, title.empty() ? app.Product.ProductName : title);
}

}  // namespace tb
