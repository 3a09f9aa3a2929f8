// Refused: incompatible pointer types assigning to 'qint64 *' (aka 'long long *') from 'long *'
#include <QtGlobal>

qint64 *target;

void take(long *value)
{
    target = value;
}
