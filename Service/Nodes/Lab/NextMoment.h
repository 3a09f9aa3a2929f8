#pragma once
#include "Service/Nodes/Lab/LabNetwork.h"
#include <optional>

namespace veranox {

/// Collects the moments at which something may change and keeps the first that is still to come.
class NextMoment {
public:
    explicit NextMoment(LabTime now) : m_now(now) { }

    void consider(LabTime moment)
    {
        if (moment > m_now && (!m_next || moment < *m_next))
            m_next = moment;
    }
    void consider(LabTime from, const std::optional<LabFailure> &failure)
    {
        if (failure)
            consider(from + failure->after);
    }
    std::optional<LabTime> next() const { return m_next; }

private:
    LabTime m_now;
    std::optional<LabTime> m_next;
};

} // namespace veranox
