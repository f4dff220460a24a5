// A data object as another program would hand it out, and messages in stored form for it.
#pragma once

#include <windows.h>

#include <shlobj.h>

#include <cstring>
#include <functional>
#include <map>
#include <vector>

#include "base/errors.h"
#include "platform/win32/ComObject.h"
#include "platform/win32/ComPointer.h"
#include "platform/win32/Win32Text.h"

namespace tb {

inline constexpr const char* InternetMessage = "Internet Message (rfc822/rfc1522)";
inline constexpr const char* GroupDescriptor = "FileGroupDescriptor";
inline constexpr const char* FileContents = "FileContents";

inline constexpr CLSID StoredMessageClass = {0x00020D0B, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

inline CLIPFORMAT FormatOf(const char* name) { return static_cast<CLIPFORMAT>(RegisterClipboardFormatA(name)); }

inline void CheckResult(HRESULT result) {
    if (FAILED(result)) throw RuntimeError(static_cast<std::int32_t>(result), "the system refuses");
}

// A compound file in memory with these streams.
inline ComPointer<IStorage> MakeStored(const std::map<Text, Text>& streams, const CLSID& classId = StoredMessageClass) {
    constexpr DWORD access = STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE;
    ComPointer<ILockBytes> memory;
    CheckResult(CreateILockBytesOnHGlobal(nullptr, TRUE, memory.Receive()));
    ComPointer<IStorage> storage;
    CheckResult(StgCreateDocfileOnILockBytes(memory.Get(), access, 0, storage.Receive()));
    CheckResult(storage->SetClass(classId));
    for (const auto& [name, bytes] : streams) {
        ComPointer<IStream> stream;
        CheckResult(storage->CreateStream(ToSystem(name).c_str(), access, 0, 0, stream.Receive()));
        CheckResult(stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr));
    }
    CheckResult(storage->Commit(STGC_DEFAULT));
    return storage;
}

class OfferedData : public ComObject<IDataObject> {
public:
    // Blocks of memory by format, and the kind that they are told to be.
    std::map<CLIPFORMAT, Text> Blocks;
    DWORD BlockKind = TYMED_HGLOBAL;
    // Streams by format.
    std::map<CLIPFORMAT, ComPointer<IStream>> Streams;
    // "FileContents" by index. Each fills a medium.
    std::vector<std::function<HRESULT(STGMEDIUM&)>> Contents;

    // Adds a stored message to the contents, and it to the descriptor of as many files as there are contents.
    void AddStored(ComPointer<IStorage> storage) {
        const auto held = std::make_shared<ComPointer<IStorage>>(std::move(storage));
        Contents.push_back([held](STGMEDIUM& medium) {
            medium.tymed = TYMED_ISTORAGE;
            medium.pstg = held->Get();
            medium.pstg->AddRef();
            return S_OK;
        });
        const auto count = static_cast<std::uint32_t>(Contents.size());
        Text& block = Blocks[FormatOf(GroupDescriptor)];
        block.assign(sizeof count + count * sizeof(FILEDESCRIPTORA), '\0');
        std::memcpy(block.data(), &count, sizeof count);
    }

    HRESULT STDMETHODCALLTYPE GetData(FORMATETC* asked, STGMEDIUM* medium) noexcept override {
        *medium = {};
        const auto index = static_cast<size_t>(asked->lindex);
        if (asked->cfFormat == FormatOf(FileContents)) {
            return index < Contents.size() ? Contents[index](*medium) : DV_E_LINDEX;
        }
        if (QueryGetData(asked) != S_OK) return DV_E_FORMATETC;
        if (const auto block = Blocks.find(asked->cfFormat); block != Blocks.end()) {
            medium->tymed = BlockKind;
            medium->hGlobal = GlobalAlloc(GMEM_MOVEABLE, block->second.size());
            std::memcpy(GlobalLock(medium->hGlobal), block->second.data(), block->second.size());
            GlobalUnlock(medium->hGlobal);
        } else {
            medium->tymed = TYMED_ISTREAM;
            medium->pstm = Streams.at(asked->cfFormat).Get();
            medium->pstm->AddRef();
        }
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE QueryGetData(FORMATETC* asked) noexcept override {
        const bool block = Blocks.count(asked->cfFormat) > 0 && (asked->tymed & TYMED_HGLOBAL) != 0;
        const bool stream = Streams.count(asked->cfFormat) > 0 && (asked->tymed & TYMED_ISTREAM) != 0;
        return block || stream ? S_OK : DV_E_FORMATETC;
    }
    HRESULT STDMETHODCALLTYPE EnumFormatEtc(DWORD, IEnumFORMATETC**) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetDataHere(FORMATETC*, STGMEDIUM*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetCanonicalFormatEtc(FORMATETC*, FORMATETC*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetData(FORMATETC*, STGMEDIUM*, BOOL) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DAdvise(FORMATETC*, DWORD, IAdviseSink*, DWORD*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DUnadvise(DWORD) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EnumDAdvise(IEnumSTATDATA**) noexcept override { return E_NOTIMPL; }
};

}  // namespace tb
