#pragma once
#include <QHashFunctions>
#include <QMetaType>
#include <QString>
#include <utility>

// A section of the settings window; one profile's page carries the profile's name.
class VeranoxSettingsSelection {
    Q_GADGET
    Q_PROPERTY(Section section READ section)
    Q_PROPERTY(QString profileName READ profileName)

public:
    enum class Section { profile, profiles, tunnels, publications, diagnostics, logs, settings, feedback, about };
    Q_ENUM(Section)

    // NOLINTNEXTLINE(google-explicit-constructor): a section without a profile is a selection
    VeranoxSettingsSelection(Section section = Section::profiles) : m_section(section) { }
    static VeranoxSettingsSelection profile(QString name)
    {
        VeranoxSettingsSelection selection(Section::profile);
        selection.m_profileName = std::move(name);
        return selection;
    }

    Section section() const { return m_section; }
    QString profileName() const { return m_profileName; } // empty but for Section::profile

    bool operator==(const VeranoxSettingsSelection &) const = default;

private:
    Section m_section;
    QString m_profileName;
};

inline size_t qHash(const VeranoxSettingsSelection &selection, size_t seed = 0)
{
    return qHashMulti(seed, static_cast<int>(selection.section()), selection.profileName());
}
