#include "updater/Updater.h"

namespace tb {

namespace {

// A minute, in pieces short enough for a window to stay alive.
constexpr int Waits = 1200;
constexpr std::int32_t WaitMs = 50;

}  // namespace

void Updater::Run() {
    const std::filesystem::path folder = m_Parts.Processes.Executable().parent_path();
    Log("Started for " + m_Command.Program + " " + m_Command.Product);
    m_Parts.Screen.Say("Waiting for " + m_Command.Product + " to close...");
    if (!WaitForProgram()) {
        Log(m_Command.Program + " is still running, exiting");
        m_Parts.Screen.Tell(m_Command.Product +
                            " is still running, so its update has not been installed.\r\n\r\nPlease exit " +
                            m_Command.Product + ". The update will be offered again when it starts.");
        m_Parts.Screen.Close();
        return;
    }
    const UpdateResult result = Install(folder);
    const Text message = Message(result);
    if (!message.empty()) m_Parts.Screen.Tell(message);
    m_Parts.Screen.Close();
    // Parts of two versions are not started unasked.
    if (result.Outcome != UpdateOutcome::Halfway) Restart(folder);
}

bool Updater::WaitForProgram() {
    for (int wait = 0; m_Parts.Processes.IsRunningBeside(m_Command.Program); ++wait) {
        if (wait == Waits) return false;
        m_Parts.Pump.ProcessMessages();
        m_Parts.Pump.Sleep(WaitMs);
    }
    return true;
}

UpdateResult Updater::Install(const std::filesystem::path& folder) {
    m_Parts.Screen.Say("Installing the update of " + m_Command.Product + "...");
    return UpdateInstaller(m_Parts.Files, m_Parts.Log, m_Parts.Pump, folder, m_Command.Program,
                           [this](int percent) {
                               m_Parts.Screen.Progress(percent);
                               m_Parts.Pump.ProcessMessages();
                           })
        .Run();
}

Text Updater::Message(const UpdateResult& result) const {
    const Text& product = m_Command.Product;
    switch (result.Outcome) {
    case UpdateOutcome::Refused:
        return "The update of " + product + " is damaged and has been removed:\r\n" + result.Reason +
               "\r\n\r\nThe installed version stays as it was.";
    case UpdateOutcome::Failed:
        return "The update of " + product + " could not be installed now:\r\n" + result.Reason +
               "\r\n\r\nThe installed version stays as it was. " +
               (result.IsDenied ? "Please close the programs that use this file. " : "") +
               "The update will be offered again when " + product + " starts.";
    case UpdateOutcome::Halfway:
        return "The update of " + product + " could be installed only in part:\r\n" + result.Reason +
               "\r\n\r\nPlease restart Windows, start " + product + " and let it install the update.";
    case UpdateOutcome::Nothing:
    case UpdateOutcome::Installed: break;
    }
    return {};
}

void Updater::Restart(const std::filesystem::path& folder) {
    const std::filesystem::path program = folder / TextPath(m_Command.Program);
    const std::uint32_t process = m_Parts.Processes.StartProgram(program, "\"" + PathText(program) + "\"");
    if (process != 0) {
        Log(m_Command.Program + " started (" + std::to_string(process) + ")");
        return;
    }
    Log(m_Command.Program + " did not start");
    m_Parts.Screen.TellClosed(m_Command.Product + " could not be started.\r\n\r\nPlease start it yourself. If that " +
                              "fails too, restart Windows or install " + m_Command.Product + " anew.");
}

}  // namespace tb
