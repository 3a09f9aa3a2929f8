#pragma once
#include "Base/Models/Watches.h"

// How often what a function of bindable properties gives has become another.
class ChangeCount {
public:
    template <class Read> explicit ChangeCount(Read read)
    {
        m_watches.add(std::move(read), [this] { ++m_count; });
    }
    ChangeCount(const ChangeCount &) = delete;
    ChangeCount &operator=(const ChangeCount &) = delete;

    int count() const { return m_count; }

private:
    int m_count = 0;
    Watches m_watches;
};
