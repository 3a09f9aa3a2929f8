#include "Core/VeranoxStore.h"
#include "MenuBar/Popover/VeranoxMenuView.h"
#include "MenuBar/Popover/VeranoxQuitConfirmation.h"
#include "Tests/Gallery/Gallery.h"
#include "Tests/Gallery/Scenes.h"
#include "Tests/Support/FakeAPIClient.h"
#include "Tests/Support/FakeRuntimeClient.h"
#include "Tests/Support/VirtualTime.h"

using namespace Qt::StringLiterals;

namespace {

VeranoxProfile profile(const QString &name, const QString &icon, const QString &color, const QStringList &suffixes,
    const QString &hostname, bool ok = true)
{
    VeranoxProfile record;
    record.name = name.toLower();
    record.displayName = name;
    record.icon = icon;
    record.color = color;
    record.suffixes = suffixes;
    record.hostname = hostname;
    record.backend = u"tsnet"_s;
    record.status.ok = ok;
    record.status.backendState = ok ? u"Running"_s : u"NeedsLogin"_s;
    return record;
}

QList<VeranoxProfile> fewProfiles()
{
    return {
        profile(u"Work"_s, u"briefcase.fill"_s, u"indigo"_s,
            {u"corp.example.com"_s, u"staging.example.com"_s, u"internal.example.com"_s}, u"veranox-work"_s),
        profile(u"Home"_s, u"house.fill"_s, u"orange"_s, {u"tail1f2c.ts.net"_s}, u"veranox-home"_s),
        profile(u"Studio"_s, u"server.rack"_s, u"teal"_s,
            {u"a-very-long-suffix-of-the-studio.film-production.example.net"_s, u"b.example.net"_s},
            u"veranox-studio-on-this-computer"_s, false),
        profile(u"Lab"_s, u"bolt.fill"_s, u"pink"_s, {}, {}),
    };
}

VeranoxTunnel tunnel(const QString &title, const QString &profile, const QString &target, int port,
    const QString &state, const QString &lastError = {}, bool disabled = false)
{
    VeranoxTunnel record;
    record.name = title.toLower();
    record.displayName = title;
    record.profile = profile;
    record.target = target;
    record.mode = u"native"_s;
    record.listen = u"127.0.0.1:%1"_s.arg(port);
    record.state = state;
    record.lastError = lastError;
    record.disabled = disabled;
    return record;
}

QList<VeranoxTunnel> fewTunnels()
{
    QList<VeranoxTunnel> tunnels{
        tunnel(u"Orders database"_s, u"work"_s, u"postgres.corp.example.com:5432"_s, 15432, u"listening"_s),
        tunnel(u"Warehouse"_s, u"work"_s, u"redshift.internal.example.com:5439"_s, 15439, u"listening"_s),
        tunnel(u"Media server"_s, u"home"_s, u"nas.tail1f2c.ts.net:8096"_s, 18096, u"starting"_s),
        tunnel(u"Render queue"_s, u"studio"_s, u"queue.example.net:6379"_s, 16379, u"error"_s,
            u"dial tcp 100.64.0.7:6379: connect: connection refused"_s),
        tunnel(u"Old printer"_s, u"gone"_s, u"printer.example.net:631"_s, 10631, u"stopped"_s, {}, true)};
    tunnels[0].activeConns = 3;
    tunnels[1].mode = u"ssh"_s;
    tunnels[1].sshBastion = u"bastion.corp.example.com:22"_s;
    return tunnels;
}

VeranoxPublication publication(const QString &title, const QString &profile, const QString &target,
    const QString &address, const QString &state, const QString &reach = {})
{
    VeranoxPublication record;
    record.name = title.toLower();
    record.displayName = title;
    record.profile = profile;
    record.target = target;
    record.address = address;
    record.state = state;
    record.reachability.state = reach;
    return record;
}

QList<VeranoxPublication> fewPublications()
{
    return {
        publication(u"Handbook preview"_s, u"work"_s, u"127.0.0.1:8080"_s, u"veranox-work.corp.example.com:8080"_s,
            u"listening"_s, u"reachable"_s),
        publication(u"Photo wall"_s, u"home"_s, u"127.0.0.1:3000"_s, u"veranox-home.tail1f2c.ts.net:443"_s,
            u"listening"_s, u"unreachable"_s),
        publication(u"Webhook"_s, u"lab"_s, u"127.0.0.1:9000"_s, {}, u"blocked"_s),
    };
}

// Goes on for ever: what a row shows meanwhile can be drawn.
jobs::Async<QString> goOn()
{
    co_await jobs::sleep(std::chrono::hours(1));
    co_return QString();
}

jobs::Async<QString> fail()
{
    co_return u"Tunnel render queue: The profile studio is not running, so the tunnel cannot be started."_s;
}

const VeranoxRowOperations operations{
    .setEnabled = [](const QString &, bool) { return goOn(); }, .restart = [](const QString &) { return goOn(); }};
const VeranoxRowOperations failing{
    .setEnabled = [](const QString &, bool) { return fail(); }, .restart = [](const QString &) { return fail(); }};

// A store as it stands after one refresh.
class World {
public:
    explicit World(const VeranoxRowOperations &rows = operations)
    {
        auto client = std::make_unique<FakeAPIClient>(world.queue);
        service = client.get();
        service->config.answer({.router = VeranoxRouterConfig::defaults()});
        service->editableConfig.answer(VeranoxEditableConfig::emptyForFirstProfile());
        service->profiles.answer(fewProfiles());
        store = std::make_unique<VeranoxStore>(world.queue,
            VeranoxStore::Collaborators{.apiClient = std::move(client),
                .runtimeClient = std::make_unique<FakeRuntimeClient>(),
                .diagnostics = VeranoxDiagnosticSession::make()});
        view = std::make_unique<VeranoxMenuView>(world.queue, *store,
            VeranoxMenuActions{.dismissMenu = [] { },
                .requestQuit = [] { },
                .copyText = [](const QString &) { },
                .openAddress = [](const QUrl &) { },
                .tunnels = rows,
                .publications = rows});
    }

    void refresh()
    {
        store->requestRefresh();
        world.run();
    }

    jobs::World world;
    FakeAPIClient *service = nullptr; // the store's
    std::unique_ptr<VeranoxStore> store;
    std::unique_ptr<VeranoxMenuView> view;
};

// As the popover stands on a screen of so many pixels.
void draw(Gallery &gallery, const QString &name, World &stage, double screen = 1200, int surface = 0)
{
    auto item = gallery.engine().create(QUrl(u"qrc:/Veranox/Popover/MenuPopover.qml"_s),
        {{u"view"_s, QVariant::fromValue(stage.view.get())}, {u"surface"_s, surface}});
    stage.view->presentation()->adoptScreen(screen);
    gallery.draw(u"popover-"_s + name, std::move(item));
}

} // namespace

void drawPopover(Gallery &gallery)
{
    {
        World stage;
        stage.refresh();
        draw(gallery, u"online"_s, stage);
        draw(gallery, u"plain"_s, stage, 1200, 1);
        draw(gallery, u"window"_s, stage, 1200, 2);
        draw(gallery, u"scrolling"_s, stage, 240);
        stage.view->footer()->copyPAC();
        stage.world.run();
        draw(gallery, u"copied"_s, stage);
    }
    {
        World stage;
        stage.service->tunnels.answer(fewTunnels());
        stage.service->publications.answer(fewPublications());
        stage.refresh();
        draw(gallery, u"full"_s, stage);
        stage.view->tunnels()->copy(u"warehouse"_s, u"127.0.0.1:15439"_s);
        stage.view->tunnels()->setEnabled(u"media server"_s, false);
        stage.view->tunnels()->retry(u"render queue"_s);
        stage.world.run();
        draw(gallery, u"busy"_s, stage);
        QList<VeranoxTunnel> many = fewTunnels();
        for (int number = 0; number < 4; ++number)
            many.append(tunnel(u"Spare %1"_s.arg(number), u"work"_s, u"a:1"_s, 20000 + number, u"listening"_s));
        stage.service->tunnels.answer(many);
        stage.refresh();
        draw(gallery, u"many-tunnels"_s, stage);
    }
    {
        World stage(failing);
        stage.service->tunnels.answer(fewTunnels());
        stage.service->publications.answer(fewPublications());
        stage.refresh();
        stage.view->tunnels()->retry(u"render queue"_s);
        stage.world.run();
        draw(gallery, u"failed-action"_s, stage);
    }
    {
        World stage;
        draw(gallery, u"offline"_s, stage);
        stage.service->profiles.answer({});
        stage.refresh();
        draw(gallery, u"empty"_s, stage);
    }
    {
        World stage;
        stage.refresh();
        stage.service->profiles.fail(VeranoxAPIFailure::unavailable());
        stage.refresh();
        draw(gallery, u"error"_s, stage);
    }
}

void drawQuitConfirmation(Gallery &gallery)
{
    World stage;
    VeranoxQuitConfirmation confirmation(*stage.store, [] { }, [] { });
    const auto draw = [&](const QString &name) {
        gallery.draw(name,
            gallery.engine().create(QUrl(u"qrc:/Veranox/Popover/QuitConfirmation.qml"_s),
                {{u"confirmation"_s, QVariant::fromValue(&confirmation)}, {u"blended"_s, true}}));
    };
    draw(u"quit"_s);
    jobs::JobScope scope(stage.world.queue);
    scope.start(stage.store->quitAndShutdown());
    stage.world.run();
    draw(u"quit-under-way"_s);
}
