// The application's delegate over parts that write down in which order they are used, in virtual time.
#pragma once
#include "Core/Entry/VeranoxMenuAppDelegate.h"
#include "Tests/Log/StoreLogWorld.h"
#include "Tests/Support/EnvironmentVariable.h"
#include "Tests/Support/FixedTheme.h"
#include <QGuiApplication>
#include <QMenu>
#include <QWindow>

class RecordingActivity final : public ProcessActivity {
public:
    explicit RecordingActivity(QStringList &steps) : m_steps(steps) { }
    void becomeAgent() override { m_steps.append(QStringLiteral("agent")); }
    void begin(const QString &reason) override { m_steps.append(QStringLiteral("activity: ") + reason); }
    void end() override { m_steps.append(QStringLiteral("activity ends")); }

private:
    QStringList &m_steps;
};

class RecordingHotKey final : public VeranoxGlobalHotKeyController {
public:
    explicit RecordingHotKey(QStringList &steps) : m_steps(steps) { }
    void configure(std::optional<VeranoxGlobalShortcut> shortcut) override
    {
        m_steps.append(QStringLiteral("shortcut: ") + (shortcut ? shortcut->id : QStringLiteral("none")));
    }
    bool isRegistered() const override { return true; }

private:
    QStringList &m_steps;
};

class RecordingLoginItem final : public LoginItem {
public:
    RecordingLoginItem(QStringList &steps, const bool &enabled) : m_steps(steps), m_enabled(enabled) { }
    bool isEnabled() const override
    {
        m_steps.append(QStringLiteral("login item"));
        return m_enabled;
    }
    std::expected<void, QString> add() override { return {}; }
    std::expected<void, QString> remove() override { return {}; }

private:
    QStringList &m_steps;
    const bool &m_enabled;
};

class RecordingStatusItem final : public StatusItem {
public:
    RecordingStatusItem(QStringList &steps, QMenu *&menu) : m_steps(steps), m_menu(menu)
    {
        m_steps.append(QStringLiteral("status item"));
    }
    ~RecordingStatusItem() override { m_steps.append(QStringLiteral("status item goes")); }
    void setIcon(const QIcon &) override { }
    void setToolTip(const QString &) override { }
    void setAccessibleName(const QString &) override { }
    void setMenu(QMenu *menu) override { m_menu = menu; }
    bool isAvailable() const override { return true; }
    QRect geometry() const override { return {400, 0, 22, 22}; }

private:
    QStringList &m_steps;
    QMenu *&m_menu;
};

class RecordingRuntimeClient final : public FakeRuntimeClient {
public:
    explicit RecordingRuntimeClient(QStringList &steps) : m_steps(steps) { }
    void terminateImmediately() override
    {
        m_steps.append(QStringLiteral("service"));
        FakeRuntimeClient::terminateImmediately();
    }

private:
    QStringList &m_steps;
};

class ScriptedDefaults final : public UserDefaults {
public:
    QVariant value(const QString &key) const override { return values.value(key); }
    void setValue(const QString &key, const QVariant &value) override { values.insert(key, value); }
    QString problem() const override { return trouble; }

    QVariantMap values;
    QString trouble;
};

class DelegateWorld : public ::testing::Test {
protected:
    DelegateWorld()
    {
        auto scriptedDefaults = std::make_unique<ScriptedDefaults>();
        auto client = std::make_unique<FakeAPIClient>(world.queue);
        auto processes = std::make_unique<RecordingRuntimeClient>(steps);
        auto log = std::make_unique<ScriptedLog>(world.queue);
        defaults = scriptedDefaults.get();
        service = client.get();
        runtime = processes.get();
        logFile = log.get();
        service->config.answer({.router = VeranoxRouterConfig::defaults()});
        service->editableConfig.answer(VeranoxEditableConfig::emptyForFirstProfile());
        parts.processActivity = std::make_unique<RecordingActivity>(steps);
        parts.theme = std::make_unique<FixedTheme>(false);
        parts.hotKeyController = std::make_unique<RecordingHotKey>(steps);
        parts.preferences = std::make_unique<VeranoxAppPreferences>(
            std::move(scriptedDefaults), std::make_unique<RecordingLoginItem>(steps, launchAtLogin));
        parts.store = std::make_unique<VeranoxStore>(world.queue,
            VeranoxStore::Collaborators{.apiClient = std::move(client),
                .runtimeClient = std::move(processes),
                .diagnostics = VeranoxDiagnosticSession::make(),
                .failureNotifier = nullptr,
                .runtimeLogPersistence = std::move(log)});
        parts.makeStatusItem = [this] { return std::make_unique<RecordingStatusItem>(steps, menu); };
        parts.endProcessAfter = [this](std::chrono::milliseconds time) {
            steps.append(QStringLiteral("ends in %1 ms").arg(time.count()));
        };
        preferences = parts.preferences.get();
        hotKey = parts.hotKeyController.get();
        store = parts.store.get();
    }

    // The delegate as main() makes it; steps are those from here on.
    void make()
    {
        delegate = std::make_unique<VeranoxMenuAppDelegate>(world.queue, std::move(parts));
        QObject::connect(delegate.get(), &VeranoxMenuAppDelegate::terminationReplied, delegate.get(),
            [this] { steps.append(QStringLiteral("reply")); });
        steps.clear();
    }

    void launch()
    {
        make();
        delegate->applicationDidFinishLaunching();
        world.run();
    }

    QStringList log() const
    {
        QStringList lines;
        for (const VeranoxRuntimeLogEntry &entry : store->runtimeLog())
            lines.append(entry.message);
        return lines;
    }

    // The steps since the last call.
    QStringList newSteps() { return std::exchange(steps, {}); }

    // Whether a window with this name or title is on the screen.
    static bool shows(const QString &name)
    {
        return std::ranges::any_of(QGuiApplication::allWindows(), [&](const QWindow *window) {
            return window->isVisible() && (window->objectName() == name || window->title() == name);
        });
    }

    QAction *menuAction(const QString &text) const
    {
        const auto actions = menu->actions();
        const auto found = std::ranges::find(actions, text, &QAction::text);
        return found == actions.end() ? nullptr : *found;
    }

    const EnvironmentVariable notWithinATestBundle{"XCTestConfigurationFilePath", std::nullopt};
    jobs::World world;
    QStringList steps;
    bool launchAtLogin = false; // as the system has it
    VeranoxMenuAppParts parts; // until make()
    ScriptedDefaults *defaults = nullptr; // the rest is the delegate's
    FakeAPIClient *service = nullptr;
    FakeRuntimeClient *runtime = nullptr;
    ScriptedLog *logFile = nullptr;
    VeranoxAppPreferences *preferences = nullptr;
    VeranoxGlobalHotKeyController *hotKey = nullptr;
    VeranoxStore *store = nullptr;
    QMenu *menu = nullptr;
    std::unique_ptr<VeranoxMenuAppDelegate> delegate;
};
