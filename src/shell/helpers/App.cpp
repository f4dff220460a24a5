#include "shell/helpers/App.h"

#include "base/codepage.h"

namespace tb {

App::App(const Platform& system, Deployment deployment)
    : System(system),
      Product(std::move(deployment)),
      m_Path(system.Processes.Executable().parent_path()),
      m_AppPath(PathText(m_Path)) {}

}  // namespace tb
