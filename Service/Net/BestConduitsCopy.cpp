#include "Service/Net/Conduit.h"

namespace veranox {

std::unique_ptr<Conduits> bestConduits()
{
    return copyingConduits();
}

} // namespace veranox
