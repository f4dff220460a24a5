// An event of a class: what it raises reaches every handler that was connected, in the order of connecting.
#pragma once

#include <deque>
#include <functional>

namespace tb {

// A handler runs inside Raise and must not throw. It may connect further handlers; those hear the next Raise. Handlers
// stay until the event dies, so whoever connects must outlive it.
template <typename... Arguments>
class Event {
public:
    using Handler = std::function<void(Arguments...)>;

    void Connect(Handler handler) { m_Handlers.push_back(std::move(handler)); }

    void Raise(const Arguments&... arguments) const {
        // A deque keeps its elements in place when a handler connects another one.
        for (size_t index = 0, count = m_Handlers.size(); index < count; ++index) {
            m_Handlers[index](arguments...);
        }
    }

private:
    std::deque<Handler> m_Handlers;
};

}  // namespace tb
