#pragma once
#include <QString>

// Where the user's own files of each kind lie, whoever wrote them: an absolute path, or an empty one where the system
// names no such folder. A relative path in the environment is ignored, for it would mean another folder to every
// program that reads it. Creates nothing. Any thread.
QString userDataFolder();
QString userConfigurationFolder();
