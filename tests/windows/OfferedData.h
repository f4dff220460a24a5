// A data object as another program would hand it out, and messages in stored form for it.
#pragma once

#include <windows.h>

#include <ole2.h>

#include <functional>
#include <map>
#include <vector>

#include "base/text.h"
#include "platform/win32/ComObject.h"
#include "platform/win32/ComPointer.h"

namespace tb {

inline constexpr const char* InternetMessage = "Internet Message (rfc822/rfc1522)";
inline constexpr const char* GroupDescriptor = "FileGroupDescriptor";
inline constexpr const char* FileContents = "FileContents";

// The streams of a stored message.
inline constexpr const char* HeadersStream = "__substg1.0_007D001E";
inline constexpr const char* HtmlStream = "__substg1.0_1013001E";
inline constexpr const char* PlainStream = "__substg1.0_1000001E";
inline constexpr const char* RtfStream = "__substg1.0_10090102";

inline constexpr CLSID StoredMessageClass = {0x00020D0B, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

// A format's number; CF_TEXT for an empty name.
CLIPFORMAT FormatOf(const Text& name);

// A compound file in memory with these streams.
ComPointer<IStorage> MakeStored(const std::map<Text, Text>& streams, const CLSID& classId = StoredMessageClass);

class OfferedData : public ComObject<IDataObject> {
public:
    // Blocks of memory by format, and the kind that they are told to be.
    std::map<CLIPFORMAT, Text> Blocks;
    DWORD BlockKind = TYMED_HGLOBAL;
    // Streams by format.
    std::map<CLIPFORMAT, ComPointer<IStream>> Streams;
    // "FileContents" by index. Each fills a medium.
    std::vector<std::function<HRESULT(STGMEDIUM&)>> Contents;
    // Calls of GetData.
    int Asked = 0;

    // Adds a stored message to the contents.
    void AddStored(ComPointer<IStorage> storage);
    // A descriptor of as many files as there are contents.
    void Describe();

    HRESULT STDMETHODCALLTYPE GetData(FORMATETC* asked, STGMEDIUM* medium) noexcept override;
    HRESULT STDMETHODCALLTYPE QueryGetData(FORMATETC* asked) noexcept override;
    HRESULT STDMETHODCALLTYPE EnumFormatEtc(DWORD direction, IEnumFORMATETC** formats) noexcept override;
    HRESULT STDMETHODCALLTYPE GetDataHere(FORMATETC*, STGMEDIUM*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetCanonicalFormatEtc(FORMATETC*, FORMATETC* out) noexcept override {
        out->ptd = nullptr;
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetData(FORMATETC*, STGMEDIUM*, BOOL) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DAdvise(FORMATETC*, DWORD, IAdviseSink*, DWORD*) noexcept override {
        return OLE_E_ADVISENOTSUPPORTED;
    }
    HRESULT STDMETHODCALLTYPE DUnadvise(DWORD) noexcept override { return OLE_E_ADVISENOTSUPPORTED; }
    HRESULT STDMETHODCALLTYPE EnumDAdvise(IEnumSTATDATA**) noexcept override { return OLE_E_ADVISENOTSUPPORTED; }
};

}  // namespace tb
