#pragma once

#include "icons/icon_loader.h"
#include "launcher/launcher_view_model.h"
#include "launcher/layout_proposals.h"
#include "platform/lifetime.h"

#include <QObject>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

namespace tessellar {

/// The sheet for rearranging all applications, for QML: offers several ways, with a preview of the
/// pages. Also welcomes new users.
class ArrangingPanel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    Q_PROPERTY(bool isFirstRun READ isFirstRun NOTIFY changed FINAL)
    Q_PROPERTY(QVariantList choices READ choices NOTIFY changed FINAL) ///< {title, isChosen}
    // The chosen one.
    Q_PROPERTY(QString explanation READ explanation NOTIFY changed FINAL)
    Q_PROPERTY(
        QVariantMap picture READ picture NOTIFY changed FINAL) ///< a page, as {rows, columns, tiles}
    Q_PROPERTY(QString pageText READ pageText NOTIFY changed FINAL) ///< for example "Page 1 of 4"
    Q_PROPERTY(int page READ page NOTIFY changed FINAL)
    Q_PROPERTY(int pageCount READ pageCount NOTIFY changed FINAL)
    /// Why the old Launchpad's arrangement is not offered; may be empty.
    Q_PROPERTY(QString issue READ issue NOTIFY changed FINAL)

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

    /// The icons on the page shown.
    QList<IconRequest> icons() const;
    void open(bool isFirstRun);
    Q_INVOKABLE void choose(int index);
    Q_INVOKABLE void turn(int by);
    /// Replaces the current arrangement.
    Q_INVOKABLE void take();

Q_SIGNALS:
    void changed();

private:
    const LayoutProposal* chosen() const;
    Page shownPage() const;

    LauncherViewModel& _viewModel;
    bool _isFirstRun = false;
    LauncherWindowMode _mode = LauncherWindowMode::fullScreen; ///< of the proposals
    LayoutProposals::All _all;
    int _chosen = 0;
    int _page = 0;
    int _openings = 0; ///< late proposals for an earlier one are dropped
    Lifetime _lifetime;
};

} // namespace tessellar
