#include "Controls/VeranoxTone.h"

VeranoxTone::Tone VeranoxTone::of(VeranoxStatusBadge::Kind kind)
{
    switch (kind) {
    case VeranoxStatusBadge::Kind::ok:
        return Green;
    case VeranoxStatusBadge::Kind::warning:
        return Orange;
    case VeranoxStatusBadge::Kind::offline:
        return Gray;
    case VeranoxStatusBadge::Kind::error:
        return Red;
    }
    Q_UNREACHABLE();
}
