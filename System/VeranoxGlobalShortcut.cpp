#include "System/VeranoxGlobalShortcut.h"

using namespace Qt::StringLiterals;

const QList<VeranoxGlobalShortcut> &VeranoxGlobalShortcut::presets()
{
    static const QList<VeranoxGlobalShortcut> list{
        {u"option-command-comma"_s, u"⌥⌘,"_s, 43, option | command},
        {u"option-command-t"_s, u"⌥⌘T"_s, 17, option | command},
        {u"control-option-command-t"_s, u"⌃⌥⌘T"_s, 17, control | option | command},
    };
    return list;
}

std::optional<VeranoxGlobalShortcut> VeranoxGlobalShortcut::shortcut(const QString &id)
{
    for (const VeranoxGlobalShortcut &preset : presets()) {
        if (preset.id == id)
            return preset;
    }
    return std::nullopt;
}
