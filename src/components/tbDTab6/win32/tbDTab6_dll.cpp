// What tbDTab6.ocx exports.
#include <memory>

#include "components/tbDTab6/win32/TabStrip.h"

namespace tb {

namespace {

TabStrip& Strip(void* strip) { return ObjectOf<TabStrip>(strip); }

// For what needs the window.
TabStrip& LiveStrip(void* strip) {
    TabStrip& live = Strip(strip);
    if (live.Window() == nullptr) throw Error(ErrorNumber::ObjectNotSet);
    return live;
}

void Create(void* parent, std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height,
            const tbDTab6Events* events, void** strip, FaceFailure* failure) noexcept {
    AtFace(failure, [&] {
        *strip = std::make_unique<TabStrip>(static_cast<HWND>(parent), ControlBox{left, top, width, height}, *events)
                     .release();
    });
}

void Destroy(void* strip) noexcept { delete static_cast<TabStrip*>(strip); }

void Window(void* strip, void** window, FaceFailure* failure) noexcept {
    AtFace(failure, [&] { *window = LiveStrip(strip).Window(); });
}

void Move(void* strip, std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height,
          FaceFailure* failure) noexcept {
    AtFace(failure, [&] { LiveStrip(strip).Move({left, top, width, height}); });
}

void Interior(void* strip, std::int32_t box[4], FaceFailure* failure) noexcept {
    AtFace(failure, [&] {
        const ControlBox inner = LiveStrip(strip).Interior();
        box[0] = inner.Left;
        box[1] = inner.Top;
        box[2] = inner.Width;
        box[3] = inner.Height;
    });
}

void Add(void* strip, const char* key, std::size_t keySize, const char* caption, std::size_t captionSize,
         std::int32_t* index, FaceFailure* failure) noexcept {
    AtFace(failure, [&] { *index = LiveStrip(strip).Add({Text(key, keySize), Text(caption, captionSize)}); });
}

void Remove(void* strip, std::int32_t index, FaceFailure* failure) noexcept {
    AtFace(failure, [&] { LiveStrip(strip).Remove(index); });
}

void Count(void* strip, std::int32_t* count, FaceFailure* failure) noexcept {
    AtFace(failure, [&] { *count = Strip(strip).Tabs().Count(); });
}

void Find(void* strip, const char* key, std::size_t keySize, std::int32_t* index, FaceFailure* failure) noexcept {
    AtFace(failure, [&] { *index = Strip(strip).Tabs().Find({key, keySize}); });
}

void Caption(void* strip, std::int32_t index, FaceTake take, void* target, FaceFailure* failure) noexcept {
    AtFace(failure, [&] {
        const Text& caption = Strip(strip).Tabs().Item(index).Caption;
        take(target, caption.data(), caption.size());
    });
}

void Select(void* strip, std::int32_t index, FaceFailure* failure) noexcept {
    AtFace(failure, [&] { LiveStrip(strip).Select(index); });
}

void Selected(void* strip, std::int32_t* index, FaceFailure* failure) noexcept {
    AtFace(failure, [&] { *index = Strip(strip).Tabs().Selected(); });
}

constexpr tbDTab6Face Face{&Create, &Destroy, &Window, &Move,    &Interior, &Add,
                           &Remove, &Count,   &Find,   &Caption, &Select,   &Selected};

}  // namespace

}  // namespace tb

extern "C" __declspec(dllexport) const void* tbDTab6_Face(std::uint32_t version) {
    return version == tb::tbDTab6Face::Version ? &tb::Face : nullptr;
}
