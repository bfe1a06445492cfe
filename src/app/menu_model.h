#pragma once

#include "launcher/actions.h"

#include <QObject>
#include <QPointF>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

namespace tessellar {

/// The open menu: its entries, one submenu, and the current entries. Does not know what the entries do.
class MenuModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY changed FINAL)
    Q_PROPERTY(
        QPointF position READ position NOTIFY changed FINAL) ///< of the pointer when it was opened
    Q_PROPERTY(QVariantList entries READ entries NOTIFY changed FINAL)
    Q_PROPERTY(int current READ current NOTIFY currentChanged FINAL) ///< -1 for none
    /// The entry whose submenu is shown, or -1.
    Q_PROPERTY(int parentEntry READ parentEntry NOTIFY currentChanged FINAL)
    Q_PROPERTY(QVariantList subEntries READ subEntries NOTIFY currentChanged FINAL)
    Q_PROPERTY(int subCurrent READ subCurrent NOTIFY currentChanged FINAL)

public:
    bool isOpen() const { return !_entries.isEmpty(); }
    QPointF position() const { return _position; }
    QVariantList entries() const { return list(_entries); }
    int current() const { return _current; }
    int parentEntry() const { return _parent; }
    QVariantList subEntries() const { return list(sub()); }
    int subCurrent() const { return _subCurrent; }

    void open(const QList<MenuEntry>& entries, QPointF position, int current = -1);
    Q_INVOKABLE void close();
    /// The pointer moved over an entry.
    Q_INVOKABLE void hover(bool isSubmenu, int index);
    /// Chooses an entry: opens its submenu or emits `chosen`.
    Q_INVOKABLE void choose(bool isSubmenu, int index);
    /// Receives all keys while open. Letters select the next entry starting with the text typed.
    void pressKey(int key, const QString& text = {});

Q_SIGNALS:
    void changed();
    void currentChanged();
    void chosen(const QString& id);

private:
    const QList<MenuEntry>& sub() const;
    static QVariantList list(const QList<MenuEntry>& entries);
    void step(int by);
    void goTo(bool isLast);
    void typeAhead(const QString& text);
    /// The entries that the keyboard navigates, and the current one.
    const QList<MenuEntry>& lines() const { return _subCurrent >= 0 ? sub() : _entries; }
    int& line() { return _subCurrent >= 0 ? _subCurrent : _current; }
    void setLine(int line);
    void enterSubmenu();

    QList<MenuEntry> _entries;
    QPointF _position;
    int _current = -1;
    int _parent = -1;
    int _subCurrent = -1;
    QString _typed; ///< start of the current entry's title
};

} // namespace tessellar
