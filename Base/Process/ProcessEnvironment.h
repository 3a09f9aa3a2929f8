#pragma once
#include <QByteArray>
#include <QMap>

// The environment of a process, byte for byte: a value need not be text.
using ProcessEnvironment = QMap<QByteArray, QByteArray>;

// That of this process. Not while another thread changes it.
ProcessEnvironment currentProcessEnvironment();
