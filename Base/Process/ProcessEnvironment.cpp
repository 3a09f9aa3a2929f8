#include "Base/Process/ProcessEnvironment.h"
#include <unistd.h>

extern char **environ;

ProcessEnvironment currentProcessEnvironment()
{
    ProcessEnvironment environment;
    for (const char *const *entry = environ; entry && *entry; ++entry) {
        const QByteArray line(*entry);
        const qsizetype equals = line.indexOf('=');
        if (equals > 0 && !environment.contains(line.first(equals))) // getenv() too finds the first
            environment.insert(line.first(equals), line.sliced(equals + 1));
    }
    return environment;
}
