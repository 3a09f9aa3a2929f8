#include "Base/Jobs/Ambient.h"
#include <utility>

namespace jobs {

namespace {
thread_local detail::AmbientSlot t_threadText;
thread_local detail::AmbientSlot *t_jobSlot = nullptr;

detail::AmbientSlot &slot()
{
    return t_jobSlot ? *t_jobSlot : t_threadText;
}
} // namespace

std::optional<QString> ambient()
{
    return slot();
}

AmbientScope::AmbientScope(std::optional<QString> text)
    : m_slot(&slot()),
      m_before(std::exchange(*m_slot, std::move(text)))
{
}

AmbientScope::~AmbientScope()
{
    *m_slot = std::move(m_before);
}

detail::AmbientSlot *detail::exchangeAmbientSlot(AmbientSlot *slot) noexcept
{
    return std::exchange(t_jobSlot, slot);
}

} // namespace jobs
