// A message as a compound storage.
#pragma once

#include "submissions/DropData.h"
#include "submissions/win32/StorageMedium.h"

namespace tb {

// What a stream of another program really holds, at most `limit` bytes; nothing that it tells about itself is believed.
// Error 57 when a read fails, also half-way.
Text ReadStream(IStream& stream, size_t limit);

class OleMessageStorage : public MessageStorage {
public:
    // The medium holds a storage that is not null.
    explicit OleMessageStorage(StorageMedium medium) : m_Medium(std::move(medium)) {}

    // Empty when the storage does not tell it.
    Text ClassIdText() override;
    // Error 57 when the stream fails half-way.
    std::optional<Text> Stream(const Text& name) override;

private:
    IStorage& Storage() { return *m_Medium.Get().pstg; }

    StorageMedium m_Medium;
};

}  // namespace tb
