// A data object of the system as plain data. It belongs to another program, and everything that it tells may be wrong.
#pragma once

#include "platform/win32/ComPointer.h"
#include "submissions/DropData.h"
#include "submissions/win32/StorageMedium.h"

namespace tb {

class OleDropData : public DropData, private NativeData {
public:
    // Shares `object`, which may be null: then nothing is offered.
    explicit OleDropData(IDataObject* object);

    bool Has(ClipboardFormat format) override;
    // As a block of memory or a stream, whichever the object hands out; empty when it hands out neither. Error 57 when
    // the stream fails half-way, 7 when the data is larger than memory or a stream longer than 64 MB.
    Text Bytes(ClipboardFormat format) override;
    // NULs inside are part of it; those at its end are not, because a block of memory may be longer than its text.
    Text PlainText() override;
    NativeData* Native() override { return m_Object ? this : nullptr; }

private:
    Text DescriptorBytes() override;
    std::unique_ptr<MessageStorage> Storage(std::int32_t index) override;

    bool Offers(ClipboardFormat format, DWORD kind) const;
    // True when the object has filled `medium` with one of the kinds asked for.
    bool Get(ClipboardFormat format, std::int32_t index, DWORD kinds, StorageMedium& medium) const;

    ComPointer<IDataObject> m_Object;
    const ClipboardFormat m_FileContents;
    const ClipboardFormat m_FileGroupDescriptor;
};

}  // namespace tb
