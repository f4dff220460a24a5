// Standard input and output as bytes.
#pragma once

#include <vector>

#include "base/text.h"

namespace tb {

// Lines of a file descriptor; what is written meanwhile to standard output goes out before a read that may wait, so
// that the tool can be talked to line by line and is fast with a file.
class LineReader {
public:
    explicit LineReader(int descriptor) : m_Descriptor(descriptor), m_Buffer(65536) {}

    // The next line without its line feed, until the next call; the last one may lack it. False at the end. Raises an
    // InputError.
    bool Next(TextView& line);
    // What has been read and is still to come, until the next call.
    TextView Buffered() const { return {m_Buffer.data() + m_Position, m_Filled - m_Position}; }

private:
    bool Fill();

    int m_Descriptor;
    std::vector<char> m_Buffer;
    size_t m_Position = 0;
    size_t m_Filled = 0;
    Text m_Line;  // one that came in pieces
};

// All of standard input. Raises an InputError.
Text ReadStandardInput();

// Buffered; raises an InputError when the reader is gone or the disk is full. A file or another program gets the bytes
// as they are. A terminal gets them Visible, so that what others have written (a mail, an entry of a list) cannot steer
// it.
void WriteStandardOutput(TextView bytes);
void FlushStandardOutput();

}  // namespace tb
