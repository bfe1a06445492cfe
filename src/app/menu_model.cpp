#include "app/menu_model.h"

namespace tessellar {

static bool canBeCurrent(const MenuEntry& entry) { return !entry.isSeparator() && entry.isEnabled; }

const QList<MenuEntry>& MenuModel::sub() const {
    static const QList<MenuEntry> none;
    return _parent >= 0 && _parent < _entries.size() ? _entries[_parent].entries : none;
}

QVariantList MenuModel::list(const QList<MenuEntry>& entries) {
    QVariantList result;
    for (const MenuEntry& entry : entries)
        result.append(QVariantMap{{QStringLiteral("title"), entry.title},
                                  {QStringLiteral("isEnabled"), entry.isEnabled},
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
    const QList<MenuEntry>& entries = _subCurrent >= 0 ? sub() : _entries;
    int& current = _subCurrent >= 0 ? _subCurrent : _current;
    int next = current < 0 && by < 0 ? 0 : current;
    for (qsizetype tries = 0; tries < entries.size(); ++tries) {
        next = static_cast<int>((next + by + entries.size()) % entries.size());
        if (canBeCurrent(entries[next])) {
            current = next;
            break;
        }
    }
    if (&current == &_current)
        _parent = -1;
    Q_EMIT currentChanged();
}

void MenuModel::enterSubmenu() {
    if (_current < 0 || _entries[_current].entries.isEmpty())
        return;
    _parent = _current;
    _subCurrent = 0;
    Q_EMIT currentChanged();
}

void MenuModel::pressKey(int key) {
    switch (key) {
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
