#include "Base/Failures/VeranoxCancellation.h"

using namespace Qt::StringLiterals;

QString VeranoxCancellation::localizedDescription() const
{
    return u"The request was cancelled."_s;
}
