#include "windows/OfferedData.h"

#include <shlobj.h>

#include <cstring>

#include "base/errors.h"
#include "platform/win32/Win32Text.h"

namespace tb {

namespace {

constexpr size_t CountSize = 4;
constexpr DWORD Access = STGM_READWRITE | STGM_SHARE_EXCLUSIVE;

void Check(HRESULT result) {
    if (FAILED(result)) throw RuntimeError(static_cast<std::int32_t>(result), "the system refuses");
}

HGLOBAL Block(const Text& bytes) {
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, bytes.size());
    std::memcpy(GlobalLock(block), bytes.data(), bytes.size());
    GlobalUnlock(block);
    return block;
}

}  // namespace

CLIPFORMAT FormatOf(const Text& name) {
    return static_cast<CLIPFORMAT>(name.empty() ? CF_TEXT : RegisterClipboardFormatA(name.c_str()));
}

ComPointer<IStorage> MakeStored(const std::map<Text, Text>& streams, const CLSID& classId) {
    ComPointer<ILockBytes> memory;
    Check(CreateILockBytesOnHGlobal(nullptr, TRUE, memory.Receive()));
    ComPointer<IStorage> storage;
    Check(StgCreateDocfileOnILockBytes(memory.Get(), STGM_CREATE | Access, 0, storage.Receive()));
    Check(storage->SetClass(classId));
    for (const auto& [name, bytes] : streams) {
        ComPointer<IStream> stream;
        Check(storage->CreateStream(ToSystem(name).c_str(), STGM_CREATE | Access, 0, 0, stream.Receive()));
        Check(stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr));
    }
    Check(storage->Commit(STGC_DEFAULT));
    return storage;
}

void OfferedData::AddStored(ComPointer<IStorage> storage) {
    const auto held = std::make_shared<ComPointer<IStorage>>(std::move(storage));
    Contents.push_back([held](STGMEDIUM& medium) {
        medium.tymed = TYMED_ISTORAGE;
        medium.pstg = held->Get();
        medium.pstg->AddRef();
        return S_OK;
    });
}

void OfferedData::Describe() {
    Text& block = Blocks[FormatOf(GroupDescriptor)];
    block.assign(CountSize + Contents.size() * sizeof(FILEDESCRIPTORA), '\0');
    const auto count = static_cast<std::uint32_t>(Contents.size());
    std::memcpy(block.data(), &count, CountSize);
}

HRESULT OfferedData::GetData(FORMATETC* asked, STGMEDIUM* medium) noexcept {
    *medium = {};
    ++Asked;
    if (asked->cfFormat == FormatOf(FileContents) && asked->lindex >= 0) {
        const auto index = static_cast<size_t>(asked->lindex);
        return index < Contents.size() ? Contents[index](*medium) : DV_E_LINDEX;
    }
    const auto block = Blocks.find(asked->cfFormat);
    const auto stream = Streams.find(asked->cfFormat);
    if (block != Blocks.end() && (asked->tymed & TYMED_HGLOBAL) != 0) {
        medium->tymed = BlockKind;
        medium->hGlobal = Block(block->second);
    } else if (stream != Streams.end() && (asked->tymed & TYMED_ISTREAM) != 0) {
        medium->tymed = TYMED_ISTREAM;
        medium->pstm = stream->second.Get();
        medium->pstm->AddRef();
    } else {
        return DV_E_FORMATETC;
    }
    return S_OK;
}

HRESULT OfferedData::QueryGetData(FORMATETC* asked) noexcept {
    const bool block = Blocks.count(asked->cfFormat) > 0 && (asked->tymed & TYMED_HGLOBAL) != 0;
    const bool stream = Streams.count(asked->cfFormat) > 0 && (asked->tymed & TYMED_ISTREAM) != 0;
    const bool contents = !Contents.empty() && asked->cfFormat == FormatOf(FileContents);
    return block || stream || contents ? S_OK : DV_E_FORMATETC;
}

HRESULT OfferedData::EnumFormatEtc(DWORD direction, IEnumFORMATETC** formats) noexcept {
    *formats = nullptr;
    if (direction != DATADIR_GET) return E_NOTIMPL;
    std::vector<FORMATETC> list;
    const auto add = [&](CLIPFORMAT format, DWORD kind) {
        list.push_back({format, nullptr, DVASPECT_CONTENT, -1, kind});
    };
    for (const auto& [format, bytes] : Blocks) add(format, TYMED_HGLOBAL);
    for (const auto& [format, stream] : Streams) add(format, TYMED_ISTREAM);
    if (!Contents.empty()) add(FormatOf(FileContents), TYMED_ISTORAGE);
    return SHCreateStdEnumFmtEtc(static_cast<UINT>(list.size()), list.data(), formats);
}

}  // namespace tb
