#include "app/menu_model.h"

#include <QKeySequence>

#include <algorithm>

namespace tessellar {

static bool canBeCurrent(const MenuEntry& entry) { return !entry.isSeparator() && entry.isEnabled; }

/// A shortcut in the system's notation.
static QString shortcutText(const QString& shortcut) {
    return shortcut.isEmpty()
               ? QString()
               : QKeySequence(shortcut, QKeySequence::PortableText).toString(QKeySequence::NativeText);
}

const QList<MenuEntry>& MenuModel::sub() const {
    static const QList<MenuEntry> none;
    return _parent >= 0 && _parent < _entries.size() ? _entries[_parent].entries : none;
}

QVariantList MenuModel::list(const QList<MenuEntry>& entries) {
    QVariantList result;
    for (const MenuEntry& entry : entries)
        result.append(QVariantMap{{QStringLiteral("title"), entry.title},
                                  {QStringLiteral("isEnabled"), entry.isEnabled},
                                  {QStringLiteral("shortcut"), shortcutText(entry.shortcut)},
                                  {QStringLiteral("isDestructive"), entry.isDestructive},
                                  {QStringLiteral("isChosen"), entry.isChosen},
                                  {QStringLiteral("isSeparator"), entry.isSeparator()},
                                  {QStringLiteral("hasEntries"), !entry.entries.isEmpty()}});
    return result;
}

void MenuModel::open(const QList<MenuEntry>& entries, QPointF position, int current) {
    _entries = entries;
    _position = position;
    _current = current;
    _parent = _subCurrent = -1;
    _typed.clear();
    Q_EMIT currentChanged();
    Q_EMIT changed();
}

void MenuModel::close() {
    if (isOpen())
        open({}, {});
}

void MenuModel::hover(bool isSubmenu, int index) {
    const QList<MenuEntry>& entries = isSubmenu ? sub() : _entries;
    if (index < 0 || index >= entries.size() || !canBeCurrent(entries[index]))
        return;
    if (isSubmenu) {
        _subCurrent = index;
    } else if (_current != index) {
        _current = index;
        _parent = _entries[index].entries.isEmpty() ? -1 : index;
        _subCurrent = -1;
    }
    Q_EMIT currentChanged();
}

void MenuModel::choose(bool isSubmenu, int index) {
    const QList<MenuEntry>& entries = isSubmenu ? sub() : _entries;
    if (index < 0 || index >= entries.size() || !canBeCurrent(entries[index]))
        return;
    if (!entries[index].entries.isEmpty())
        return hover(isSubmenu, index);
    const QString id = entries[index].id;
    close();
    Q_EMIT chosen(id);
}

void MenuModel::step(int by) {
    const QList<MenuEntry>& entries = lines();
    int next = line() < 0 && by < 0 ? 0 : line();
    for (qsizetype tries = 0; tries < entries.size(); ++tries) {
        next = static_cast<int>((next + by + entries.size()) % entries.size());
        if (canBeCurrent(entries[next]))
            return setLine(next);
    }
}

void MenuModel::goTo(bool isLast) {
    // One step from beyond the other end.
    line() = isLast ? 0 : static_cast<int>(lines().size()) - 1;
    step(isLast ? -1 : 1);
}

void MenuModel::setLine(int next) {
    int& current = line();
    current = next;
    if (&current == &_current)
        _parent = -1;
    Q_EMIT currentChanged();
}

void MenuModel::typeAhead(const QString& text) {
    const QList<MenuEntry>& entries = lines();
    // Extends the typed prefix as long as an entry matches, otherwise starts a new one.
    for (const QString& typed : {_typed + text.toCaseFolded(), text.toCaseFolded()}) {
        const int from = std::max(0, line() + (typed.size() > 1 ? 0 : 1));
        for (qsizetype i = 0; i < entries.size(); ++i) {
            const auto at = static_cast<int>((from + i) % entries.size());
            if (!canBeCurrent(entries[at]) || !entries[at].title.toCaseFolded().startsWith(typed))
                continue;
            setLine(at);
            _typed = typed;
            return;
        }
    }
}

void MenuModel::enterSubmenu() {
    if (_current < 0 || _entries[_current].entries.isEmpty())
        return;
    _parent = _current;
    _subCurrent = 0;
    Q_EMIT currentChanged();
}

void MenuModel::pressKey(int key, const QString& text) {
    // A space chooses the entry, unless it continues a typed prefix.
    if (!text.isEmpty() && text.front().isPrint() && (text != u" " || !_typed.isEmpty()))
        return typeAhead(text);
    _typed.clear();
    switch (key) {
    case Qt::Key_Home:
    case Qt::Key_PageUp:
        return goTo(false);
    case Qt::Key_End:
    case Qt::Key_PageDown:
        return goTo(true);
    case Qt::Key_Up:
        return step(-1);
    case Qt::Key_Down:
        return step(1);
    case Qt::Key_Right:
        return enterSubmenu();
    case Qt::Key_Left:
        if (_subCurrent >= 0) {
            _parent = _subCurrent = -1;
            Q_EMIT currentChanged();
        }
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        if (_subCurrent >= 0)
            return choose(true, _subCurrent);
        if (_current >= 0 && !_entries[_current].entries.isEmpty())
            return enterSubmenu();
        return choose(false, _current);
    case Qt::Key_Escape:
    case Qt::Key_Menu:
        return close();
    default:
        return;
    }
}

} // namespace tessellar
