#include "Base/Failures/Cancellation.h"

using namespace Qt::StringLiterals;

QString Cancellation::localizedDescription() const
{
    return u"The request was cancelled."_s;
}
