#include "app/day_picker.h"

#include <QLocale>

namespace tessellar {

QVariantList DayPicker::days() const {
    QVariantList result;
    for (const SmartFolderMonth::Day& day : _month.days)
        result.append(QVariantMap{{QStringLiteral("text"), day.text},
                                  {QStringLiteral("name"), QLocale().toString(day.date)},
                                  {QStringLiteral("isInMonth"), day.isInMonth},
                                  {QStringLiteral("isToday"), day.isToday},
                                  {QStringLiteral("isChosen"), day.isChosen},
                                  {QStringLiteral("isCurrent"), day.date == _current}});
    return result;
}

void DayPicker::open(QPointF position, QDate current, MonthOf monthOf, Choose choose) {
    _position = position;
    _monthOf = std::move(monthOf);
    _choose = std::move(choose);
    show(current);
}

void DayPicker::close() {
    if (!isOpen())
        return;
    _monthOf = nullptr;
    _choose = nullptr;
    Q_EMIT changed();
}

void DayPicker::show(QDate current) {
    // Other years must be typed.
    if (!isOpen() || current.year() < 1000 || current.year() > 9999)
        return;
    _current = current;
    _month = _monthOf(current);
    Q_EMIT changed();
}

void DayPicker::turn(int months) { show(_current.addMonths(months)); }

void DayPicker::goToToday() { show(_month.today); }

void DayPicker::choose(int place) {
    if (place >= 0 && place < _month.days.size())
        choose(_month.days.at(place).date);
}

void DayPicker::choose(QDate day) {
    const Choose chosen = _choose;
    close();
    if (chosen)
        chosen(day);
}

void DayPicker::pressKey(int key) {
    switch (key) {
    case Qt::Key_Left:
        return show(_current.addDays(-1));
    case Qt::Key_Right:
        return show(_current.addDays(1));
    case Qt::Key_Up:
        return show(_current.addDays(-7));
    case Qt::Key_Down:
        return show(_current.addDays(7));
    case Qt::Key_PageUp:
        return turn(-1);
    case Qt::Key_PageDown:
        return turn(1);
    case Qt::Key_Home:
        return goToToday();
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        return choose(_current);
    case Qt::Key_Escape:
    case Qt::Key_Tab:
        return close();
    default:
        return;
    }
}

} // namespace tessellar
