#pragma once

#include "launcher/launcher_view_model.h"
#include "model/items.h"

#include <QObject>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace tessellar {

/// The sheet over the grid, one at a time; except for removals, which have their own panel.
class Sheets final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    Q_PROPERTY(QString current READ current NOTIFY changed FINAL) ///< one of the names below, or empty
    Q_PROPERTY(QString news READ news NOTIFY changed FINAL)       ///< Markdown
    Q_PROPERTY(QString appName READ appName NOTIFY changed FINAL) ///< of the application it is about
    /// Why its last request failed; empty if it did not.
    Q_PROPERTY(QString issue READ issue NOTIFY issueChanged FINAL)
    /// The user entered something that closing would lose.
    Q_PROPERTY(bool isTyped READ isTyped WRITE setTyped FINAL)

public:
    static inline const QString arrangements = QStringLiteral("arrangements");
    static inline const QString arranging = QStringLiteral("arranging");
    static inline const QString backups = QStringLiteral("backups");
    static inline const QString icon = QStringLiteral("icon");
    static inline const QString information = QStringLiteral("information");
    static inline const QString keys = QStringLiteral("keys");
    static inline const QString whatIsNew = QStringLiteral("news");
    static inline const QString pastRemovals = QStringLiteral("pastRemovals");
    static inline const QString settings = QStringLiteral("settings");
    static inline const QString smartFolder = QStringLiteral("smartFolder");
    static inline const QString unplaced = QStringLiteral("unplaced");
    static inline const QString updates = QStringLiteral("updates");

    explicit Sheets(LauncherViewModel& viewModel) : _viewModel(viewModel) {}

    QString current() const { return _current; }
    QString appName() const { return _app ? _app->name : QString(); }
    QString issue() const { return _issue; }
    QString news() const { return _news; }
    bool isTyped() const { return _isTyped; }
    void setTyped(bool isTyped) { _isTyped = isTyped; }

    void open(const QString& sheet, const AppEntry* app = nullptr);
    /// Shows what is new in the launcher.
    void openNews(const QString& news);
    Q_INVOKABLE void close() { open({}); }
    /// Closes the sheet, asking first if input would be lost.
    Q_INVOKABLE void leave();
    /// Sets the icon of the sheet's application to a file of the host, and closes on success.
    Q_INVOKABLE void changeIcon(const QString& file);
    Q_INVOKABLE static QString localFile(const QUrl& url) { return url.toLocalFile(); }

Q_SIGNALS:
    void changed();
    void issueChanged();

private:
    void setIssue(const QString& issue);

    LauncherViewModel& _viewModel;
    QString _current;
    std::optional<AppEntry> _app;
    QString _issue;
    QString _news;
    bool _isTyped = false;
};

} // namespace tessellar
