#include "Core/VeranoxStartupState.h"
#include "API/Values/VeranoxRecordClass.h"
#include "Base/Text/EnumeratorWord.h"
#include "State/VeranoxState.h"
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

template <class Record>
QString countFields(QStringView kind, const QList<Record> &records, const QList<VeranoxRecordClass> &classes)
{
    QString fields;
    for (const VeranoxRecordClass which : classes) {
        const auto count =
            std::ranges::count_if(records, [which](const Record &record) { return classOf(record) == which; });
        fields += u" %1_%2=%3"_s.arg(kind, enumeratorWord(which)).arg(count);
    }
    return fields;
}

} // namespace

QString startupStateFields(const ServiceState &service, const QList<VeranoxProfile> &profiles,
    const QList<VeranoxTunnel> &tunnels, const QList<VeranoxPublication> &publications)
{
    using enum VeranoxRecordClass;
    return u"service="_s + service.logWord() + countFields(u"profiles", profiles, {ready, starting, failed})
        + countFields(u"tunnels", tunnels, {ready, starting, disabled, failed})
        + countFields(u"publications", publications, {ready, starting, disabled, failed, blocked});
}

QString startupStateFields(const VeranoxState &state)
{
    return startupStateFields(state.serviceState(), state.profiles(), state.tunnels(), state.publications());
}

VeranoxLogDetails startupEvent(const QString &code, bool isWarning, const QString &correlationID)
{
    return {.eventCode = code,
        .level = isWarning ? u"warn"_s : u"info"_s,
        .component = u"macos_app"_s,
        .correlationID = correlationID,
        .profileName = {}};
}
