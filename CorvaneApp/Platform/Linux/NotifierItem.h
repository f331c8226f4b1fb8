#pragma once

#include "Platform/Linux/NotifierMenu.h"
#include "Platform/Linux/NotifierTypes.h"
#include "Style/Tokens.h"

#include <QDBusAbstractAdaptor>
#include <QDBusObjectPath>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QPoint>
#include <QString>
#include <QTimer>

#include <memory>

class QMenu;

namespace corvane {

/// What an icon shows.
struct NotifierFace {
    int waitingCount = 0;
    QString label;   ///< for assistive technology
    QString toolTip; ///< the first line is the title
    /// The icon for hosts that recolour it to match their bar. If empty, they get a pixmap for a bar of the
    /// scheme `bar`.
    QString iconName;
    ColorScheme bar = ColorScheme::light;

    bool operator==(const NotifierFace&) const = default;
};

/// A StatusNotifierItem on the session bus, whose hosts report where it was clicked. It is present from its
/// creation until its destruction, even if a watcher starts later, restarts or occasionally drops it. Main
/// thread only.
class NotifierItem : public QObject {
    Q_OBJECT

  public:
    /// `iconFolder` holds an icon theme with the named icons; empty if desktops search it anyway. `menu` may
    /// be null.
    NotifierItem(NotifierFace face, QMenu* menu, QString iconFolder);
    ~NotifierItem() override;

    /// Notifies hosts only of what has changed.
    void show(const NotifierFace& face);

    [[nodiscard]] const NotifierFace& face() const { return face_; }
    [[nodiscard]] const QString& iconFolder() const { return iconFolder_; }
    [[nodiscard]] QDBusObjectPath menuPath() const;
    [[nodiscard]] NotifierToolTip toolTip() const;
    [[nodiscard]] NotifierPixmaps pixmaps() const;

  Q_SIGNALS:
    /// The user clicked the icon. `place` is as the host reported it.
    void activated(QPoint place);
    /// The host shows no menus, so the application must show its own.
    void menuRequested(QPoint place);

    void iconChanged();
    void statusChanged();
    void toolTipChanged();

  private:
    void registerAtWatcher();
    void meetWatcher();
    Q_SLOT void returnToWatcher(const QString& item);

    NotifierFace face_;
    QString iconFolder_;
    QString service_;
    std::unique_ptr<NotifierMenu> menu_;
    QDBusServiceWatcher watcher_;
    QTimer return_;
    int returnsLeft_ = 0; // repeated registrations left with this watcher
};

/// The item's interface on the bus.
class NotifierItemAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category)
    Q_PROPERTY(QString Id READ id)
    Q_PROPERTY(QString Title READ title)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(int WindowId READ windowId)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu)
    Q_PROPERTY(QDBusObjectPath Menu READ menu)
    Q_PROPERTY(QString IconThemePath READ iconThemePath)
    Q_PROPERTY(QString IconName READ iconName)
    Q_PROPERTY(corvane::NotifierPixmaps IconPixmap READ iconPixmap)
    Q_PROPERTY(QString IconAccessibleDesc READ accessibleDescription)
    Q_PROPERTY(QString OverlayIconName READ none)
    Q_PROPERTY(corvane::NotifierPixmaps OverlayIconPixmap READ noPixmap)
    Q_PROPERTY(QString AttentionIconName READ iconName)
    Q_PROPERTY(corvane::NotifierPixmaps AttentionIconPixmap READ iconPixmap)
    Q_PROPERTY(QString AttentionAccessibleDesc READ accessibleDescription)
    Q_PROPERTY(QString AttentionMovieName READ none)
    Q_PROPERTY(corvane::NotifierToolTip ToolTip READ toolTip)

  public:
    explicit NotifierItemAdaptor(NotifierItem& item);

    [[nodiscard]] QString category() const { return QStringLiteral("ApplicationStatus"); }
    [[nodiscard]] QString id() const { return QStringLiteral("Corvane"); }
    [[nodiscard]] QString title() const { return QStringLiteral("Corvane"); }
    [[nodiscard]] QString status() const;
    [[nodiscard]] int windowId() const { return 0; }
    [[nodiscard]] bool itemIsMenu() const { return false; }
    [[nodiscard]] QDBusObjectPath menu() const { return item_.menuPath(); }
    [[nodiscard]] QString iconThemePath() const { return item_.iconFolder(); }
    [[nodiscard]] QString iconName() const { return item_.face().iconName; }
    [[nodiscard]] NotifierPixmaps iconPixmap() const { return item_.pixmaps(); }
    [[nodiscard]] NotifierPixmaps noPixmap() const { return {}; }
    [[nodiscard]] QString accessibleDescription() const { return item_.face().label; }
    [[nodiscard]] QString none() const { return {}; }
    [[nodiscard]] NotifierToolTip toolTip() const { return item_.toolTip(); }

    // The interface prescribes the names.
    // NOLINTBEGIN(readability-identifier-naming,readability-redundant-access-specifiers)
  public Q_SLOTS:
    void Activate(int x, int y);
    void SecondaryActivate(int x, int y);
    void ContextMenu(int x, int y);
    void Scroll(int delta, const QString& orientation);

  Q_SIGNALS:
    void NewTitle();
    void NewIcon();
    void NewAttentionIcon();
    void NewOverlayIcon();
    void NewToolTip();
    void NewStatus(const QString& status);
    // NOLINTEND(readability-identifier-naming,readability-redundant-access-specifiers)

  private:
    NotifierItem& item_;
};

} // namespace corvane
