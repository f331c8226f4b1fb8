#include "Platform/Linux/NotifierMenu.h"

#include <QAction>
#include <QBuffer>
#include <QEvent>
#include <QGuiApplication>
#include <QIcon>
#include <QMenu>
#include <QTimer>

#include <algorithm>
#include <set>
#include <utility>

namespace corvane {

namespace {

constexpr int root = 0;
constexpr int iconSide = 16;

QByteArray png(const QIcon& icon) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    icon.pixmap(iconSide, iconSide).save(&buffer, "PNG");
    return bytes;
}

// Values that are the protocol's defaults are left out.
QVariantMap propertiesOf(const QAction& action) {
    QVariantMap result;
    if (!action.isVisible()) result.insert(QStringLiteral("visible"), false);
    if (action.isSeparator()) {
        result.insert(QStringLiteral("type"), QStringLiteral("separator"));
        return result;
    }
    result.insert(QStringLiteral("label"), NotifierMenu::label(action.text()));
    if (!action.isEnabled()) result.insert(QStringLiteral("enabled"), false);
    if (!action.icon().isNull()) result.insert(QStringLiteral("icon-data"), png(action.icon()));
    return result;
}

QVariantMap only(const QVariantMap& properties, const QStringList& names) {
    if (names.isEmpty()) return properties;
    QVariantMap result;
    for (const QString& name : names) {
        if (properties.contains(name)) result.insert(name, properties.value(name));
    }
    return result;
}

QVariantMap rootProperties() {
    return {{QStringLiteral("children-display"), QStringLiteral("submenu")}};
}

QList<int> idsOf(const NotifierMenuEntries& entries) {
    QList<int> ids;
    for (const NotifierMenuEntry& entry : entries)
        ids.append(entry.id);
    return ids;
}

} // namespace

NotifierMenu::NotifierMenu(QMenu& menu)
    : menu_(&menu) {
    registerNotifierTypes();
    new NotifierMenuAdaptor(*this);
    menu.installEventFilter(this);
}

QString NotifierMenu::label(const QString& text) {
    QString result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text.at(i) == u'&') {
            // A doubled ampersand is a literal one; a single one marks the mnemonic.
            if (i + 1 >= text.size() || text.at(i + 1) != u'&') continue;
            ++i;
        }
        result += text.at(i);
        if (text.at(i) == u'_') result += u'_';
    }
    return result;
}

NotifierMenuEntries NotifierMenu::read() {
    NotifierMenuEntries entries;
    if (menu_ == nullptr) return entries;
    const QList<QAction*> actions = menu_->actions();
    for (const QAction* const action : actions) {
        const auto [known, isNew] = ids_.try_emplace(action, lastID_ + 1);
        if (isNew) {
            ++lastID_;
            // Another action may get the same address.
            connect(action, &QObject::destroyed, this, [this, action] { ids_.erase(action); });
        }
        entries.append({known->second, propertiesOf(*action)});
    }
    return entries;
}

QAction* NotifierMenu::action(int id) const {
    if (menu_ == nullptr) return nullptr;
    const QList<QAction*> actions = menu_->actions();
    const auto found = std::find_if(actions.begin(), actions.end(), [this, id](const QAction* action) {
        const auto known = ids_.find(action);
        return known != ids_.end() && known->second == id;
    });
    return found != actions.end() ? *found : nullptr;
}

NotifierMenuLayout NotifierMenu::layout(int parent, int depth, const QStringList& names, uint& revision) {
    const NotifierMenuEntries entries = read();
    revision = revision_;
    if (parent != root) {
        for (const NotifierMenuEntry& entry : entries) {
            if (entry.id == parent) return {entry.id, only(entry.properties, names), {}};
        }
        return {parent, {}, {}};
    }
    NotifierMenuLayout result{root, only(rootProperties(), names), {}};
    if (depth == 0) return result;
    // Other changes are reported by signals: a host may request only the structure, and the properties of
    // entries that it does not know yet.
    if (!told_) told_ = entries;
    for (const NotifierMenuEntry& entry : entries) {
        const NotifierMenuLayout child{entry.id, only(entry.properties, names), {}};
        result.children.append(QDBusVariant(QVariant::fromValue(child)));
    }
    return result;
}

NotifierMenuEntries NotifierMenu::properties(const QList<int>& ids, const QStringList& names) {
    NotifierMenuEntries result;
    // No IDs means all entries.
    if (ids.isEmpty() || ids.contains(root)) result.append({root, only(rootProperties(), names)});
    for (const NotifierMenuEntry& entry : read()) {
        if (ids.isEmpty() || ids.contains(entry.id)) result.append({entry.id, only(entry.properties, names)});
    }
    return result;
}

bool NotifierMenu::prepareToShow() {
    if (menu_ == nullptr) return false;
    Q_EMIT menu_->aboutToShow();
    const NotifierMenuEntries now = read();
    const bool isNewLayout = !told_ || idsOf(*told_) != idsOf(now);
    tell(now);
    return isNewLayout;
}

bool NotifierMenu::handle(int id, const QString& kind) {
    if (id == root) {
        // Some hosts report that they have opened the menu instead of asking first.
        if (kind == QLatin1String("opened") && menu_ != nullptr) Q_EMIT menu_->aboutToShow();
        if (kind == QLatin1String("closed") && menu_ != nullptr) Q_EMIT menu_->aboutToHide();
        return true;
    }
    QAction* const chosen = action(id);
    if (chosen == nullptr) return false;
    // Deferred until after the reply: the entry may quit the application.
    if (kind == QLatin1String("clicked")) QTimer::singleShot(0, chosen, &QAction::trigger);
    return true;
}

bool NotifierMenu::eventFilter(QObject* object, QEvent* event) {
    const QEvent::Type type = event->type();
    if (object == menu_ &&
        (type == QEvent::ActionAdded || type == QEvent::ActionChanged || type == QEvent::ActionRemoved))
        followSoon();
    return false;
}

// Coalesces changes, which come in groups.
void NotifierMenu::followSoon() {
    if (std::exchange(isFollowing_, true)) return;
    QTimer::singleShot(0, this, &NotifierMenu::follow);
}

void NotifierMenu::follow() {
    isFollowing_ = false;
    if (told_) tell(read());
}

void NotifierMenu::tell(const NotifierMenuEntries& now) {
    const NotifierMenuEntries before = std::exchange(told_, now).value_or(NotifierMenuEntries());
    NotifierMenuEntries updated;
    NotifierMenuRemovals removed;
    for (const NotifierMenuEntry& entry : now) {
        const auto old = std::find_if(before.begin(), before.end(), [&entry](const NotifierMenuEntry& each) {
            return each.id == entry.id;
        });
        if (old == before.end()) continue; // the host requests all properties of a new entry
        const QVariantMap& properties = entry.properties;
        QVariantMap changed;
        for (auto each = properties.begin(); each != properties.end(); ++each) {
            if (old->properties.value(each.key()) != each.value()) changed.insert(each.key(), each.value());
        }
        if (!changed.isEmpty()) updated.append({entry.id, changed});
        QStringList gone;
        for (const QString& name : old->properties.keys()) {
            if (!properties.contains(name)) gone.append(name);
        }
        if (!gone.isEmpty()) removed.append({entry.id, gone});
    }
    if (!updated.isEmpty() || !removed.isEmpty()) Q_EMIT propertiesUpdated(updated, removed);
    if (idsOf(now) != idsOf(before)) Q_EMIT layoutUpdated(++revision_, root);
}

NotifierMenuAdaptor::NotifierMenuAdaptor(NotifierMenu& menu)
    : QDBusAbstractAdaptor(&menu)
    , menu_(menu) {
    connect(&menu, &NotifierMenu::propertiesUpdated, this, &NotifierMenuAdaptor::ItemsPropertiesUpdated);
    connect(&menu, &NotifierMenu::layoutUpdated, this, &NotifierMenuAdaptor::LayoutUpdated);
}

QString NotifierMenuAdaptor::textDirection() const {
    return QGuiApplication::isRightToLeft() ? QStringLiteral("rtl") : QStringLiteral("ltr");
}

// NOLINTBEGIN(readability-identifier-naming)
uint NotifierMenuAdaptor::GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames,
                                    NotifierMenuLayout& layout) {
    uint revision = 0;
    layout = menu_.layout(parentId, recursionDepth, propertyNames, revision);
    return revision;
}

NotifierMenuEntries NotifierMenuAdaptor::GetGroupProperties(const QList<int>& ids,
                                                            const QStringList& propertyNames) {
    return menu_.properties(ids, propertyNames);
}

QDBusVariant NotifierMenuAdaptor::GetProperty(int id, const QString& name) {
    for (const NotifierMenuEntry& entry : menu_.properties({id}, {name}))
        return QDBusVariant(entry.properties.value(name, QString()));
    return QDBusVariant(QString());
}

void NotifierMenuAdaptor::Event(int id, const QString& eventId, const QDBusVariant& /*data*/,
                                uint /*timestamp*/) {
    menu_.handle(id, eventId);
}

QList<int> NotifierMenuAdaptor::EventGroup(const NotifierMenuEvents& events) {
    QList<int> unknown;
    for (const NotifierMenuEvent& event : events) {
        if (!menu_.handle(event.id, event.kind)) unknown.append(event.id);
    }
    return unknown;
}

bool NotifierMenuAdaptor::AboutToShow(int id) {
    return id == root && menu_.prepareToShow();
}

QList<int> NotifierMenuAdaptor::AboutToShowGroup(const QList<int>& ids, QList<int>& /*idErrors*/) {
    return ids.contains(root) && menu_.prepareToShow() ? QList<int>{root} : QList<int>{};
}
// NOLINTEND(readability-identifier-naming)

} // namespace corvane
