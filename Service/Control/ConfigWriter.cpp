#include "Service/Control/ConfigWriter.h"

#include "Service/Text/Refusal.h"
#include "Service/Text/ShownPath.h"

namespace veranox {

ConfigWriter::ConfigWriter(ConfigStore &store, Traffic &traffic, const TimeSource &time)
    : m_store(store),
      m_traffic(traffic),
      m_time(time)
{
}

void ConfigWriter::commit(ConfigDocument document, IfChanged ifChanged)
{
    if (m_store.isChangedByOthers()) {
        if (ifChanged == IfChanged::refuse)
            throw Refusal(Refusal::Kind::conflict,
                "The configuration file " + shownPath(m_store.file())
                    + " was changed by another program; restart the service so that it takes the change over.");
        m_store.keepChanged(m_time.wallNow());
    }
    m_store.save(std::move(document));
    m_traffic.apply(m_store.document());
}

} // namespace veranox
