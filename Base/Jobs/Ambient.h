// One optional text that belongs to the job at hand (a correlation id) and follows the work that it starts.
#pragma once
#include <QString>
#include <optional>

namespace jobs {

// The ambient text of the running job, or of the thread when no job runs in it. Any thread.
// A job gets a copy of its starter's text; Workers and Isolated carry it into their threads.
std::optional<QString> ambient();

// Sets the ambient text for the life of this variable, which belongs on the stack or in a coroutine's frame.
class AmbientScope {
public:
    explicit AmbientScope(std::optional<QString> text);
    ~AmbientScope();
    AmbientScope(const AmbientScope &) = delete;
    AmbientScope &operator=(const AmbientScope &) = delete;

private:
    std::optional<QString> *m_slot;
    std::optional<QString> m_before;
};

namespace detail {
using AmbientSlot = std::optional<QString>;
// Makes `slot` this thread's ambient text (null: the thread's own) and returns the one it replaces.
AmbientSlot *exchangeAmbientSlot(AmbientSlot *slot) noexcept;
} // namespace detail

} // namespace jobs
