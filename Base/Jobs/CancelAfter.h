#pragma once
#include "Base/Jobs/Child.h"

namespace jobs {

// A time limit: cancels the child after the given time, unless this variable dies first. Declare it after the child.
class CancelAfter final : private Clock::Alarm {
public:
    template <class T> CancelAfter(Child<T> &child, Clock::Duration limit) : m_target(&child.core())
    {
        Clock &clock = m_target->queue().clock();
        clock.arm(*this, clock.after(limit));
    }
    // Whether the limit was reached, even if the child then still gave a result.
    bool expired() const noexcept { return m_expired; }

private:
    void ring() override
    {
        m_expired = true;
        m_target->cancel();
    }
    detail::Ref<detail::JobCore> m_target;
    bool m_expired = false;
};

} // namespace jobs
