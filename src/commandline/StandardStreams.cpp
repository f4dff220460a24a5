#include "commandline/StandardStreams.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "base/errors.h"

namespace tb {

bool LineReader::Next(TextView& line) {
    m_Line.clear();
    for (bool some = false;; some = true) {
        if (m_Position == m_Filled && !Fill()) {
            line = m_Line;
            return some;
        }
        const TextView piece = Buffered().substr(0, Buffered().find('\n'));
        m_Position += piece.size();
        const bool isWhole = m_Position < m_Filled;
        if (isWhole) ++m_Position;
        if (some || !isWhole) m_Line.append(piece);
        line = some ? TextView(m_Line) : piece;
        if (isWhole) return true;
    }
}

bool LineReader::Fill() {
    FlushStandardOutput();
    ssize_t count = 0;
    do {
        count = ::read(m_Descriptor, m_Buffer.data(), m_Buffer.size());
    } while (count < 0 && errno == EINTR);
    if (count < 0) throw InputError(Text("cannot read: ") + std::strerror(errno));
    m_Position = 0;
    m_Filled = static_cast<size_t>(count);
    return count > 0;
}

Text ReadStandardInput() {
    Text content;
    char buffer[65536];
    while (const size_t count = std::fread(buffer, 1, sizeof buffer, stdin)) content.append(buffer, count);
    if (std::ferror(stdin) != 0) throw InputError("cannot read standard input");
    return content;
}

void WriteStandardOutput(TextView bytes) {
    static const bool isTerminal = ::isatty(STDOUT_FILENO) != 0;
    Text visible;
    if (isTerminal) bytes = visible = Visible(bytes);
    if (std::fwrite(bytes.data(), 1, bytes.size(), stdout) != bytes.size()) {
        throw InputError("cannot write to standard output");
    }
}

void FlushStandardOutput() {
    if (std::fflush(stdout) != 0) throw InputError("cannot write to standard output");
}

}  // namespace tb
