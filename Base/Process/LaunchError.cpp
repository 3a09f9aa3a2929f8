#include "Base/Process/LaunchError.h"
#include <system_error>

using namespace Qt::StringLiterals;

LaunchError::LaunchError(QString executable, int code) : m_executable(std::move(executable)), m_code(code) { }

QString LaunchError::localizedDescription() const
{
    return u"%1 could not be started: %2."_s.arg(
        m_executable, QString::fromStdString(std::generic_category().message(m_code)));
}
