#pragma once
#include <QVariantMap>

namespace platform {

// What this build says of itself, under the keys of a macOS bundle's information dictionary. Any thread.
QVariantMap informationDictionary();

} // namespace platform
