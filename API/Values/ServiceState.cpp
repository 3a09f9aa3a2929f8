#include "API/Values/ServiceState.h"
#include "Base/Text/EnumeratorWord.h"

QString ServiceState::logWord() const
{
    return enumeratorWord(m_kind);
}

QString ServiceState::title() const
{
    QString word = logWord();
    word.front() = word.front().toUpper();
    return word;
}

VeranoxStatusBadge ServiceState::badge() const
{
    using Badge = VeranoxStatusBadge::Kind;
    switch (m_kind) {
    case Kind::starting:
        return {title(), Badge::warning};
    case Kind::online:
        return {title(), Badge::ok};
    case Kind::offline:
        return {title(), Badge::offline};
    case Kind::error:
        return {title(), Badge::error};
    }
    Q_UNREACHABLE();
}
