#pragma once

#include "icons/icon_loader.h"
#include "launcher/launcher_view_model.h"
#include "launcher/layout_proposals.h"
#include "platform/lifetime.h"

#include <QObject>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

namespace tessellar {

/// The sheet with the ways to arrange what is installed, in QML's terms: one of them is chosen, and its
/// pages can be looked through before it is taken. It greets the user who starts for the first time.
class ArrangingPanel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    Q_PROPERTY(bool isFirstRun READ isFirstRun NOTIFY changed)
    Q_PROPERTY(QVariantList choices READ choices NOTIFY changed) ///< {title, isChosen}
    // Of the one that is chosen.
    Q_PROPERTY(QString explanation READ explanation NOTIFY changed)
    Q_PROPERTY(QVariantMap picture READ picture NOTIFY changed) ///< {rows, columns, tiles} of a page
    Q_PROPERTY(QString pageText READ pageText NOTIFY changed)   ///< "Page 1 of 4"
    Q_PROPERTY(int page READ page NOTIFY changed)
    Q_PROPERTY(int pageCount READ pageCount NOTIFY changed)
    /// Why the old Launchpad's arrangement is not offered; empty where there is none.
    Q_PROPERTY(QString issue READ issue NOTIFY changed)

public:
    explicit ArrangingPanel(LauncherViewModel& viewModel) : _viewModel(viewModel) {}

    bool isFirstRun() const { return _isFirstRun; }
    QVariantList choices() const;
    QString explanation() const;
    QVariantMap picture() const;
    QString pageText() const;
    int page() const { return _page; }
    int pageCount() const;
    QString issue() const;

    /// The icons that the page shows.
    QList<IconWish> icons() const;
    void open(bool isFirstRun);
    Q_INVOKABLE void choose(int index);
    Q_INVOKABLE void turn(int by);
    /// Puts it in place of the present arrangement.
    Q_INVOKABLE void take();

Q_SIGNALS:
    void changed();

private:
    const LayoutProposal* chosen() const;
    Page shownPage() const;

    LauncherViewModel& _viewModel;
    bool _isFirstRun = false;
    LauncherWindowMode _mode = LauncherWindowMode::fullScreen; ///< that they are of
    LayoutProposals::All _all;
    int _chosen = 0;
    int _page = 0;
    Lifetime _lifetime;
};

} // namespace tessellar
