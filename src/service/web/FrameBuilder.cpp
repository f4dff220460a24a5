#include "service/web/FrameBuilder.h"

#include "base/errors.h"
#include "base/numbers.h"
#include "sitedb/codec/Encryption.h"
#include "sitedb/codec/cCRC32.h"

namespace tb {

namespace {

// Room for the longest checksum and the letter behind it; what is not needed of it goes at the end.
constexpr size_t HeadRoom = 9;
constexpr size_t PieceSize = 65536;

}  // namespace

FrameBuilder::FrameBuilder() : m_Frame(HeadRoom, ' ') {}

void FrameBuilder::Append(TextView plain) {
    m_Pending += plain;
    if (m_Pending.size() >= PieceSize) Seal();
}

void FrameBuilder::Seal() {
    if (m_Pending.empty()) return;
    const Text& key = GetScrambleKey();
    const Text piece = XorWithScrambleKey(m_Pending, key, static_cast<std::int16_t>(m_Scrambled % key.size()));
    m_Check = cCRC32().GetStringCrc32(piece, m_Check);
    m_Scrambled += piece.size();
    m_Frame += piece;
    m_Pending.clear();
}

Text FrameBuilder::Finish() {
    Seal();
    if (m_Scrambled == 0) throw Error(ErrorNumber::Subscript);
    const Text head = ToHex(static_cast<std::uint32_t>(m_Check)) + 'G';
    m_Frame.replace(0, HeadRoom, head);
    return std::move(m_Frame);
}

}  // namespace tb
