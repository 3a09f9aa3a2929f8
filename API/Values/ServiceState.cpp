#include "API/Values/ServiceState.h"

using namespace Qt::StringLiterals;

QString ServiceState::logWord() const
{
    switch (m_kind) {
    case Kind::starting:
        return u"starting"_s;
    case Kind::online:
        return u"online"_s;
    case Kind::offline:
        return u"offline"_s;
    case Kind::error:
        return u"error"_s;
    }
    Q_UNREACHABLE();
}

QString ServiceState::title() const
{
    QString word = logWord();
    word.front() = word.front().toUpper();
    return word;
}
