#include "submissions/win32/OleDropData.h"

#include "base/errors.h"
#include "submissions/win32/OleMessageStorage.h"
#include "submissions/win32/Win32ClipboardFormats.h"

namespace tb {

namespace {

// The whole of the data, not one of several items.
constexpr std::int32_t Whole = -1;
// No mail is so long; a stream need not have an end.
constexpr size_t LongestStream = 0x4000000;

FORMATETC Asked(ClipboardFormat format, std::int32_t index, DWORD kinds) {
    FORMATETC asked{};
    asked.cfFormat = static_cast<CLIPFORMAT>(format);
    asked.dwAspect = DVASPECT_CONTENT;
    asked.lindex = index;
    asked.tymed = kinds;
    return asked;
}

// A block of memory, locked as long as this lives.
class Locked {
public:
    explicit Locked(HGLOBAL block) : m_Block(block), m_Bytes(static_cast<const char*>(GlobalLock(block))) {}
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;
    ~Locked() {
        if (m_Bytes != nullptr) GlobalUnlock(m_Block);
    }

    // The system's own size of the block, whatever the data in it says.
    TextView Bytes() const { return m_Bytes != nullptr ? TextView(m_Bytes, GlobalSize(m_Block)) : TextView(); }

private:
    HGLOBAL m_Block;
    const char* m_Bytes;
};

Text BytesOf(const StorageMedium& medium) { return Text(Locked(medium.Get().hGlobal).Bytes()); }

}  // namespace

OleDropData::OleDropData(IDataObject* object)
    : m_Object(ComPointer<IDataObject>::Share(object)),
      m_FileContents(Win32ClipboardFormats().Register("FileContents")),
      m_FileGroupDescriptor(Win32ClipboardFormats().Register("FileGroupDescriptor")) {}

bool OleDropData::Offers(ClipboardFormat format, DWORD kind) const {
    FORMATETC asked = Asked(format, Whole, kind);
    return m_Object && m_Object->QueryGetData(&asked) == S_OK;
}

bool OleDropData::Get(ClipboardFormat format, std::int32_t index, DWORD kinds, StorageMedium& medium) const {
    FORMATETC asked = Asked(format, index, kinds);
    STGMEDIUM filled{};
    // After a failure nothing in it is to be given back.
    if (!m_Object || FAILED(m_Object->GetData(&asked, &filled))) return false;
    medium = StorageMedium(filled);
    const STGMEDIUM& got = medium.Get();
    // Of the union; it is null when nothing was put there.
    return (got.tymed & kinds) != 0 && got.hGlobal != nullptr;
}

bool OleDropData::Has(ClipboardFormat format) { return Offers(format, TYMED_HGLOBAL) || Offers(format, TYMED_ISTREAM); }

Text OleDropData::Bytes(ClipboardFormat format) {
    StorageMedium block;
    if (Get(format, Whole, TYMED_HGLOBAL, block)) return BytesOf(block);
    StorageMedium stream;
    if (!Get(format, Whole, TYMED_ISTREAM, stream)) return {};
    Text bytes = ReadStream(*stream.Get().pstm, LongestStream + 1);
    if (bytes.size() > LongestStream) throw Error(ErrorNumber::OutOfMemory);
    return bytes;
}

Text OleDropData::PlainText() {
    Text text = Bytes(PlainTextFormat);
    text.resize(text.find_last_not_of('\0') + 1);
    return text;
}

Text OleDropData::DescriptorBytes() {
    StorageMedium block;
    return Get(m_FileGroupDescriptor, Whole, TYMED_HGLOBAL, block) ? BytesOf(block) : Text();
}

std::unique_ptr<MessageStorage> OleDropData::Storage(std::int32_t index) {
    StorageMedium medium;
    // A plain stream is taken and given back: it holds no message that is understood.
    if (!Get(m_FileContents, index, TYMED_ISTREAM | TYMED_ISTORAGE, medium)) return nullptr;
    if (medium.Get().tymed != TYMED_ISTORAGE) return nullptr;
    return std::make_unique<OleMessageStorage>(std::move(medium));
}

}  // namespace tb
