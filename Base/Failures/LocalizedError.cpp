#include "Base/Failures/LocalizedError.h"

const char *LocalizedError::what() const noexcept
{
    try {
        if (m_what.isNull())
            m_what = localizedDescription().toUtf8();
        return m_what.constData();
    } catch (...) {
        return "A failure of Veranox that there was no memory to describe.";
    }
}
