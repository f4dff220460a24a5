#include "operator/StandardStreams.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "operator/Options.h"

namespace tb {

bool LineReader::Next(Text& line) {
    line.clear();
    for (bool some = false;; some = true) {
        if (m_Position == m_Filled && !Fill()) return some;
        const auto begin = m_Buffer.begin() + static_cast<std::ptrdiff_t>(m_Position);
        const auto filled = m_Buffer.begin() + static_cast<std::ptrdiff_t>(m_Filled);
        const auto end = std::find(begin, filled, '\n');
        line.append(begin, end);
        m_Position += static_cast<size_t>(end - begin);
        if (end == filled) continue;
        ++m_Position;
        return true;
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
    if (std::fwrite(bytes.data(), 1, bytes.size(), stdout) != bytes.size()) {
        throw InputError("cannot write to standard output");
    }
}

void FlushStandardOutput() {
    if (std::fflush(stdout) != 0) throw InputError("cannot write to standard output");
}

}  // namespace tb
