#include "MenuBar/Popover/VeranoxMenuPresentation.h"
#include <algorithm>

namespace {

constexpr double screenReserve = 24;
constexpr double leastHeight = 1;

} // namespace

void VeranoxMenuPresentation::update(double naturalContentHeight, std::optional<double> availableScreenHeight)
{
    m_naturalContentHeight = naturalContentHeight;
    m_availableScreenHeight = availableScreenHeight;
    const double natural = std::max(naturalContentHeight, leastHeight);
    const double limit = std::max(availableScreenHeight.value_or(natural + screenReserve) - screenReserve, leastHeight);
    const bool scrolls = availableScreenHeight && limit < natural;
    const double height = scrolls ? limit : natural;
    if (height == m_viewportHeight && scrolls == m_requiresScrolling)
        return;
    m_viewportHeight = height;
    m_requiresScrolling = scrolls;
    Q_EMIT changed();
}

void VeranoxMenuPresentation::adoptContentHeight(double naturalContentHeight)
{
    update(naturalContentHeight, m_availableScreenHeight);
}

void VeranoxMenuPresentation::adoptScreen(std::optional<double> availableScreenHeight)
{
    update(m_naturalContentHeight, availableScreenHeight);
}
