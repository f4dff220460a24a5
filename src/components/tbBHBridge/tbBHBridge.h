// The browser channel as its clients see it, through tbBHBridge.dll.
#pragma once

#include <optional>

#include "components/tbBHBridge/tbBHBridgeFace.h"

namespace tb {

// What each operation does stands at its namesake of tbBHBridgeFace.
class tbBHBridge {
public:
    // `face` (FaceOf<tbBHBridgeFace>) must outlive the object.
    explicit tbBHBridge(const tbBHBridgeFace& face) : m_Face(face) {}

    bool Locate() const {
        std::int32_t found = 0;
        CallFace(m_Face.Locate, &found);
        return found != 0;
    }
    // Nothing without an answer; the empty text is one.
    std::optional<Text> Ask(TextView fields, std::uint32_t milliseconds) const {
        std::int32_t answered = 0;
        Text reply = TextOfFace([&](FaceTake take, void* target) {
            CallFace(m_Face.Ask, fields.data(), fields.size(), milliseconds, take, target, &answered);
        });
        if (answered == 0) return std::nullopt;
        return reply;
    }
    bool WakeUp(std::uint32_t milliseconds) const {
        std::int32_t done = 0;
        CallFace(m_Face.WakeUp, milliseconds, &done);
        return done != 0;
    }

private:
    const tbBHBridgeFace& m_Face;
};

}  // namespace tb
