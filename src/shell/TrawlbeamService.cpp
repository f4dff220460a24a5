#include "shell/TrawlbeamService.h"

namespace tb {

TrawlbeamService::TrawlbeamService(const Platform& platform, const std::filesystem::path& appPath)
    : m_Host(platform.Log, &platform.Messages),
      m_EvilDB(platform.Storage, m_Host, appPath / "Data"),
      m_Verdict(m_EvilDB, m_Host),
      m_Channel([this](const std::vector<Text>& args, Text& reply) { m_Verdict.CheckEvil(args, reply); }) {
    m_EvilDB.LogMessage.Connect([this](const Text& line, LogLevel level) { m_Host.WriteLog(line, level); });
}

void TrawlbeamService::Start() {
    bool corrupt = false;
    m_EvilDB.RestoreDB(corrupt);
}

}  // namespace tb
