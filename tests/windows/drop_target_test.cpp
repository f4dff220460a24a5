// Data objects, honest and lying ones, handed to the real drop target, with the drop logic behind it.
#include <gtest/gtest.h>

#include "platform/win32/Handle.h"
#include "platform/win32/Win32WindowText.h"
#include "submissions/win32/OleSession.h"
#include "submissions/win32/Win32ClipboardFormats.h"
#include "submissions/win32/Win32DropTarget.h"
#include "submissions/win32/Win32DropTargets.h"
#include "windows/OfferedData.h"

namespace tb {
namespace {

// A stream in memory of that many bytes.
ComPointer<IStream> StreamOf(size_t length) {
    ComPointer<IStream> stream;
    CheckResult(CreateStreamOnHGlobal(GlobalAlloc(GMEM_MOVEABLE, length), TRUE, stream.Receive()));
    return stream;
}

class DropTargetTest : public ::testing::Test {
protected:
    // Drops it on a target; the effect that the source is told of.
    DWORD Drop(const std::function<void(DropData&)>& seen, DWORD allowed = DROPEFFECT_COPY | DROPEFFECT_MOVE) {
        const ComPointer<IDropTarget> target(
            new Win32DropTarget(seen, [this](const RuntimeError& error) { m_Errors.push_back(error.Number); }));
        DWORD effect = allowed;
        EXPECT_EQ(target->DragEnter(m_Offered.Get(), 0, {}, &effect), S_OK);
        effect = allowed;
        EXPECT_EQ(target->Drop(m_Offered.Get(), 0, {}, &effect), S_OK);
        return effect;
    }

    OleSession m_Session;
    ComPointer<OfferedData> m_Offered{new OfferedData};
    std::vector<std::int32_t> m_Errors;
};

TEST_F(DropTargetTest, FormatsKeepTheirBytes) {
    Text mail = "Subject: a\r\n\r\n";
    for (int byte = 0; byte < 256; ++byte) mail += static_cast<char>(byte);
    m_Offered->Blocks[FormatOf(InternetMessage)] = mail;
    m_Offered->Blocks[CF_TEXT] = Text("http://a\0b\0\0", 12);
    Win32ClipboardFormats formats;
    const ClipboardFormat internet = formats.Register(InternetMessage);
    EXPECT_LT(internet, 0) << "registered numbers lie in the upper half";
    EXPECT_EQ(Drop([&](DropData& data) {
                  EXPECT_TRUE(data.Has(internet));
                  EXPECT_FALSE(data.Has(formats.Register(GroupDescriptor)));
                  EXPECT_EQ(data.Bytes(internet), mail);
                  EXPECT_EQ(data.PlainText(), Text("http://a\0b", 10));
                  EXPECT_EQ(data.Native()->DescriptorBytes(), "");
              }),
              DWORD{DROPEFFECT_COPY});
}

TEST_F(DropTargetTest, AMailMayComeAsAStream) {
    const ClipboardFormat internet = Win32ClipboardFormats().Register(InternetMessage);
    ComPointer<IStream> orphan;
    CheckResult(MakeStored({{"x", "mail"}})->OpenStream(L"x", nullptr, STGM_SHARE_EXCLUSIVE, 0, orphan.Receive()));
    const ComPointer<IStream> streams[] = {StreamOf(70000), StreamOf(0x4000001), std::move(orphan)};
    size_t size = 0;
    for (const auto& stream : streams) {
        m_Offered->Streams[FormatOf(InternetMessage)] = ComPointer<IStream>::Share(stream.Get());
        Drop([&](DropData& data) {
            EXPECT_TRUE(data.Has(internet));
            size += data.Bytes(internet).size();
        });
    }
    EXPECT_EQ(size, 70000U);
    EXPECT_EQ(m_Errors, (std::vector<std::int32_t>{7, 57})) << "too long, and one that cannot be read";
}

TEST_F(DropTargetTest, StoredMessagesAreReadByIndex) {
    m_Offered->AddStored(MakeStored({{"one", Text("LZFu\0\1", 6)}, {"large", Text(LargestMail + 100, 'x')}}));
    m_Offered->AddStored(MakeStored({}, {0x12345678, 0, 0, {0, 0, 0, 0, 0, 0, 0, 1}}));
    Drop([&](DropData& data) {
        EXPECT_EQ(data.Native()->DescriptorBytes(), m_Offered->Blocks[FormatOf(GroupDescriptor)]);
        const auto first = data.Native()->Storage(0);
        EXPECT_EQ(first->ClassIdText(), "{00020D0B-0000-0000-C000-000000000046}");
        EXPECT_EQ(first->Stream("one"), Text("LZFu\0\1", 6));
        EXPECT_EQ(first->Stream("large")->size(), LargestMail + 1);
        EXPECT_EQ(first->Stream("none"), std::nullopt);
        EXPECT_EQ(data.Native()->Storage(1)->ClassIdText(), "{12345678-0000-0000-0000-000000000001}");
        EXPECT_EQ(data.Native()->Storage(2), nullptr);
        EXPECT_EQ(data.Native()->Storage(-1), nullptr);
    });
    EXPECT_TRUE(m_Errors.empty());
}

// Media that are no storage, or not what they tell.
TEST_F(DropTargetTest, ContentsThatLieHoldNothing) {
    const auto plain = StreamOf(3);
    const auto answer = [&](DWORD kind, IStream* what, HRESULT result) {
        m_Offered->Contents.emplace_back([=](STGMEDIUM& medium) {
            medium.tymed = kind;
            medium.pstm = what;
            return result;
        });
    };
    plain->AddRef();
    answer(TYMED_ISTREAM, plain.Get(), S_OK);
    answer(TYMED_ISTORAGE, nullptr, S_OK);
    answer(TYMED_ISTORAGE, reinterpret_cast<IStream*>(16), E_FAIL);
    m_Offered->Blocks[CF_TEXT] = "x";
    m_Offered->BlockKind = TYMED_NULL;
    Drop([&](DropData& data) {
        for (std::int32_t index = 0; index < 3; ++index) EXPECT_EQ(data.Native()->Storage(index), nullptr) << index;
        EXPECT_EQ(data.PlainText(), "");
    });
    EXPECT_TRUE(m_Errors.empty());
}

TEST_F(DropTargetTest, TheSourceIsNeverToldToDelete) {
    m_Offered->Blocks[CF_TEXT] = "x";
    int drops = 0;
    const auto count = [&](DropData&) { ++drops; };
    EXPECT_EQ(Drop(count, DROPEFFECT_LINK | DROPEFFECT_MOVE), DWORD{DROPEFFECT_LINK});
    EXPECT_EQ(Drop(count, DROPEFFECT_MOVE), DWORD{DROPEFFECT_NONE});
    EXPECT_EQ(drops, 1);
    EXPECT_EQ(Drop([](DropData&) { throw Error(ErrorNumber::DiskFull); }), DWORD{DROPEFFECT_NONE});
    EXPECT_EQ(m_Errors, std::vector<std::int32_t>{61});
    m_Offered = {};
    Drop([](DropData& data) {
        EXPECT_FALSE(data.Has(PlainTextFormat));
        EXPECT_EQ(data.Native(), nullptr);
    });
}

TEST_F(DropTargetTest, ADragIsToldUntilItLeavesOrDrops) {
    Text told;
    const auto note = [&](DragState state) { told += std::to_string(static_cast<int>(state)); };
    const ComPointer<IDropTarget> target(
        new Win32DropTarget([&](DropData&) { told += "d"; }, [](const RuntimeError&) {}, note));
    const auto drag = [&](DWORD allowed, bool drops) {
        told.clear();
        DWORD effect = allowed;
        target->DragEnter(m_Offered.Get(), 0, {}, &effect);
        effect = allowed;
        target->DragOver(0, {}, &effect);
        effect = allowed;
        drops ? target->Drop(m_Offered.Get(), 0, {}, &effect) : target->DragLeave();
        return told;
    };
    EXPECT_EQ(drag(DROPEFFECT_COPY, false), "021");
    EXPECT_EQ(drag(DROPEFFECT_COPY, true), "02d");
    EXPECT_EQ(drag(DROPEFFECT_MOVE, false), "") << "it will not be taken";
}

// The window goes, and another drop comes, while the first one is handled.
TEST_F(DropTargetTest, ADropOutlivesItsRegistration) {
    m_Offered->Blocks[CF_TEXT] = "http://a";
    const OwnedWindow window(
        CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 99, 99, nullptr, nullptr, nullptr, nullptr));
    Win32DropTargets targets([this](const RuntimeError& error) { m_Errors.push_back(error.Number); });
    EXPECT_THROW(targets.Register(0, [](DropData&) {}), RuntimeError);
    std::unique_ptr<DropRegistration> registration = targets.Register(ToWindowHandle(window.Get()), [](DropData&) {});
    registration.reset();
    EXPECT_EQ(RevokeDragDrop(window.Get()), DRAGDROP_E_NOTREGISTERED);

    Text text;
    DWORD inner = DROPEFFECT_COPY;
    auto token = std::make_shared<int>();
    const std::weak_ptr<int> handler = token;
    ComPointer<IDropTarget> target(new Win32DropTarget(
        [&, held = std::move(token)](DropData& data) {
            target->Drop(m_Offered.Get(), 0, {}, &inner);
            target = {};
            EXPECT_FALSE(handler.expired()) << "it lives to the end of the drop";
            text = data.PlainText();
        },
        [](const RuntimeError&) {}));
    DWORD effect = DROPEFFECT_COPY;
    target.Get()->Drop(m_Offered.Get(), 0, {}, &effect);
    EXPECT_EQ(text, "http://a");
    EXPECT_EQ(inner, DWORD{DROPEFFECT_NONE}) << "one at a time";
}

}  // namespace
}  // namespace tb
