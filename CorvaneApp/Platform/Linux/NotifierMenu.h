#pragma once

#include "Platform/Linux/NotifierTypes.h"

#include <QDBusAbstractAdaptor>
#include <QObject>
#include <QPointer>
#include <QStringList>

#include <map>
#include <optional>

class QAction;
class QMenu;

namespace corvane {

/// A menu without submenus that a tray host on the session bus shows in its own style. A closed menu causes
/// no messages unless an entry is added, removed or changed; the host requests the rest before it opens the
/// menu. Main thread only.
class NotifierMenu : public QObject {
    Q_OBJECT

  public:
    /// `menu` must outlive this.
    explicit NotifierMenu(QMenu& menu);

    /// The replies to the host's queries.
    [[nodiscard]] NotifierMenuLayout layout(int parent, int depth, const QStringList& names, uint& revision);
    [[nodiscard]] NotifierMenuEntries properties(const QList<int>& ids, const QStringList& names);
    /// Notifies the host of changes. Returns whether the host must request the layout again.
    [[nodiscard]] bool prepareToShow();
    /// False if there is no such entry.
    bool handle(int id, const QString& kind);

    /// An action's text in the form of the menu's protocol, in which an underscore marks the mnemonic; the
    /// result has no mnemonic.
    [[nodiscard]] static QString label(const QString& text);

  Q_SIGNALS:
    void propertiesUpdated(const corvane::NotifierMenuEntries& updated,
                           const corvane::NotifierMenuRemovals& removed);
    void layoutUpdated(uint revision, int parent);

  protected:
    bool eventFilter(QObject* object, QEvent* event) override;

  private:
    [[nodiscard]] NotifierMenuEntries read();
    [[nodiscard]] QAction* action(int id) const;
    void followSoon();
    /// Notifies the host of changes since the last notification.
    void follow();
    void tell(const NotifierMenuEntries& now);

    QPointer<QMenu> menu_;
    std::map<const QObject*, int> ids_; // of each action as long as it lives
    int lastID_ = 0;
    std::optional<NotifierMenuEntries> told_; // as last reported; none before the host has asked
    uint revision_ = 1;
    bool isFollowing_ = false;
};

/// The menu's interface on the bus.
class NotifierMenuAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version)
    Q_PROPERTY(QString TextDirection READ textDirection)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath)

  public:
    explicit NotifierMenuAdaptor(NotifierMenu& menu);

    [[nodiscard]] uint version() const { return 3; }
    [[nodiscard]] QString textDirection() const;
    [[nodiscard]] QString status() const { return QStringLiteral("normal"); }
    [[nodiscard]] QStringList iconThemePath() const { return {}; }

    // The interface prescribes the names.
    // NOLINTBEGIN(readability-identifier-naming,readability-redundant-access-specifiers)
  public Q_SLOTS:
    uint GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames,
                   corvane::NotifierMenuLayout& layout);
    corvane::NotifierMenuEntries GetGroupProperties(const QList<int>& ids, const QStringList& propertyNames);
    QDBusVariant GetProperty(int id, const QString& name);
    void Event(int id, const QString& eventId, const QDBusVariant& data, uint timestamp);
    QList<int> EventGroup(const corvane::NotifierMenuEvents& events);
    bool AboutToShow(int id);
    QList<int> AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors);

  Q_SIGNALS:
    void ItemsPropertiesUpdated(const corvane::NotifierMenuEntries& updatedProps,
                                const corvane::NotifierMenuRemovals& removedProps);
    void LayoutUpdated(uint revision, int parent);
    // NOLINTEND(readability-identifier-naming,readability-redundant-access-specifiers)

  private:
    NotifierMenu& menu_;
};

} // namespace corvane
