#include "shell/helpers/Messages.h"

namespace tb {

std::int32_t ShowMessage(const App& app, const Text& prompt, std::int32_t buttons, const Text& title,
                         const Text& helpFile, std::int32_t context) {
    const Text& named = title.empty() ? app.Product.ProductName : title;
    if (app.Messages != nullptr) return app.Messages->Show({prompt, buttons, named, helpFile, context});
    const OpenDialog open(app);
    return app.System.Dialogs.ShowMessage(prompt, buttons, named);
}

}  // namespace tb
