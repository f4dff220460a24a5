// The helper's configuration as its users see it: the program writes it, the helper reads it, both through
// tbBHOCfg.dll.
#pragma once

#include <filesystem>
#include <utility>

#include "components/tbBHOCfg/tbBHOCfgFace.h"

namespace tb {

// Names of BHOSection::Options. They are flags, "1" or "0", but for MessageDetail.
struct BHOOption {
    // The helper lets every page pass.
    static constexpr const char* CheckOff = "CheckOff";
    // The helper tells the user why it blocked a page. The program always sets it.
    static constexpr const char* ShowAlert = "ShowAlert";
    // The helper tells the user when a component fails.
    static constexpr const char* Messages = "Messages";
    // How much it tells then: 1 the text, 2 number and text. The program always sets 2.
    static constexpr const char* MessageDetail = "MessageDetail";
    static constexpr const char* AutoLaunch = "AutoLaunch";
};

// Move-only owner of one configuration. Every operation raises as BHOSettings tells.
class tbBHOCfg {
public:
    // `face` (FaceOf<tbBHOCfgFace>) must outlive the object.
    explicit tbBHOCfg(const tbBHOCfgFace& face) : m_Face(face) { CallFace(m_Face.Create, &m_Configuration); }
    tbBHOCfg(tbBHOCfg&& other) noexcept
        : m_Face(other.m_Face), m_Configuration(std::exchange(other.m_Configuration, nullptr)) {}
    tbBHOCfg& operator=(tbBHOCfg&&) = delete;
    ~tbBHOCfg() { m_Face.Destroy(m_Configuration); }

    bool Flag(const char* option) const { return Get(BHOSection::Options, 0, option) == "1"; }
    void SetFlag(const char* option, bool value) { Set(BHOSection::Options, 0, option, value ? "1" : "0"); }

    std::uint32_t Count(BHOSection section) const {
        std::uint32_t count = 0;
        CallFace(m_Face.Count, m_Configuration, static_cast<std::uint32_t>(section), &count);
        return count;
    }
    std::uint32_t Add(BHOSection section) {
        std::uint32_t index = 0;
        CallFace(m_Face.Add, m_Configuration, static_cast<std::uint32_t>(section), &index);
        return index;
    }
    Text Get(BHOSection section, std::uint32_t index, const char* name) const {
        return TextOfFace([&](FaceTake take, void* target) {
            CallFace(m_Face.Get, m_Configuration, static_cast<std::uint32_t>(section), index, name, take, target);
        });
    }
    void Set(BHOSection section, std::uint32_t index, const char* name, TextView value) {
        CallFace(m_Face.Set, m_Configuration, static_cast<std::uint32_t>(section), index, name, value.data(),
                 value.size());
    }
    void Save(const std::filesystem::path& path) const {
        CallFace(m_Face.Save, m_Configuration, path.wstring().c_str());
    }
    void Load(const std::filesystem::path& path) { CallFace(m_Face.Load, m_Configuration, path.wstring().c_str()); }

private:
    const tbBHOCfgFace& m_Face;
    void* m_Configuration = nullptr;
};

}  // namespace tb
