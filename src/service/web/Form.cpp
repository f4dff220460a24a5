#include "service/web/Form.h"

#include "urlcheck/url/UrlDecode.h"

namespace tb {

Form::Form(TextView body) {
    for (const TextView piece : SplitViews(body, '&')) {
        const size_t end = piece.find('=');
        const TextView value = end == TextView::npos ? TextView() : piece.substr(end + 1);
        m_Fields.emplace_back(UrlDecode(piece.substr(0, end)), UrlDecode(value));
    }
}

std::optional<Text> Form::Find(TextView name) const {
    for (const auto& [fieldName, value] : m_Fields) {
        if (fieldName == name) return value;
    }
    return std::nullopt;
}

}  // namespace tb
