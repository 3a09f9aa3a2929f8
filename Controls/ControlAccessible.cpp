#include "Controls/ControlAccessible.h"
#include <QAccessible>
#include <QQuickItem>
#include <QQuickWindow>
#include <mutex>

using namespace Qt::StringLiterals;

namespace {

constexpr auto buttonClass = "QQuickButton"_L1;
constexpr auto checkBoxClass = "QQuickCheckBox"_L1;

QAccessibleInterface *make(const QString &className, QObject *object)
{
    // Asked for each class of the object, the most special one first.
    if (className != buttonClass && className != checkBoxClass)
        return nullptr;
    return new ControlAccessible(qobject_cast<QQuickItem *>(object)); // Qt's cache owns it
}

QRectF onScene(const QQuickItem &item)
{
    return item.mapRectToScene(QRectF(QPointF(), item.size()));
}

void tellDisabled(QObject *control)
{
    QAccessible::State changed;
    changed.disabled = true;
    QAccessibleStateChangeEvent event(control, changed);
    QAccessible::updateAccessibility(&event);
}

} // namespace

void ControlAccessible::install()
{
    static std::once_flag installed; // for the whole process
    std::call_once(installed, [] { QAccessible::installFactory(make); });
}

ControlAccessible::ControlAccessible(QQuickItem *item) : QAccessibleObject(item)
{
    QObject::connect(item, &QQuickItem::enabledChanged, item, [item] { tellDisabled(item); });
}

QQuickItem *ControlAccessible::item() const
{
    return static_cast<QQuickItem *>(object());
}

QObject *ControlAccessible::words() const
{
    const QObjectList &parts = item()->children();
    const auto found =
        std::ranges::find_if(parts, [](const QObject *part) { return part->inherits("QQuickAccessibleAttached"); });
    return found == parts.end() ? nullptr : *found;
}

QString ControlAccessible::said(const char *property) const
{
    const QObject *properties = words();
    return properties ? properties->property(property).toString() : QString();
}

QWindow *ControlAccessible::window() const
{
    return item()->window();
}

QRect ControlAccessible::rect() const
{
    if (!item()->window())
        return {};
    const QRect place = onScene(*item()).toRect();
    return {item()->window()->mapToGlobal(place.topLeft()), place.size()};
}

QAccessibleInterface *ControlAccessible::parent() const
{
    const QQuickWindow *const shownIn = item()->window();
    for (QQuickItem *above = item()->parentItem(); above; above = above->parentItem()) {
        if (shownIn && above == shownIn->contentItem())
            return QAccessible::queryAccessibleInterface(item()->window());
        if (QAccessibleInterface *found = QAccessible::queryAccessibleInterface(above))
            return found;
    }
    return nullptr;
}

QString ControlAccessible::text(QAccessible::Text text) const
{
    switch (text) {
    case QAccessible::Name:
        return said("name");
    case QAccessible::Description:
        return said("description");
    default:
        return {};
    }
}

QAccessible::Role ControlAccessible::role() const
{
    return item()->inherits(checkBoxClass.data()) ? QAccessible::CheckBox : QAccessible::Button;
}

QAccessible::State ControlAccessible::state() const
{
    QAccessible::State state;
    const bool enabled = item()->isEnabled();
    state.disabled = !enabled;
    state.focusable = enabled && item()->activeFocusOnTab();
    state.focused = item()->hasActiveFocus();
    state.checkable = item()->property("checkable").toBool();
    state.checked = item()->property("checked").toBool();
    state.pressed = item()->property("pressed").toBool();
    state.invisible = window() == nullptr || !window()->isVisible() || !item()->isVisible();
    state.offscreen = isOffScreen();
    return state;
}

bool ControlAccessible::isOffScreen() const
{
    if (!item()->window())
        return true;
    const QRectF place = onScene(*item());
    if (!place.intersects(QRectF(QPointF(), item()->window()->size())))
        return true;
    for (const QQuickItem *above = item()->parentItem(); above; above = above->parentItem())
        if (above->clip() && !place.intersects(onScene(*above)))
            return true;
    return false;
}

void *ControlAccessible::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface *>(this) : nullptr;
}

QStringList ControlAccessible::actionNames() const
{
    if (!item()->isEnabled())
        return {};
    if (role() == QAccessible::CheckBox)
        return {toggleAction(), pressAction(), setFocusAction()};
    return {pressAction(), setFocusAction()};
}

void ControlAccessible::doAction(const QString &name)
{
    if (!item()->isEnabled())
        return;
    if (name == setFocusAction())
        item()->forceActiveFocus(Qt::TabFocusReason);
    else if (name == toggleAction())
        QMetaObject::invokeMethod(words(), "toggleAction");
    else if (name == pressAction())
        QMetaObject::invokeMethod(words(), "pressAction");
}
