#pragma once

#include "smartfolders/smart_folder_input_format.h"

#include <QObject>
#include <QPointF>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace tessellar {

/// A calendar popup for picking a day, independent of what the day is for.
class DayPicker : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the panel")
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY changed FINAL)
    Q_PROPERTY(QPointF position READ position NOTIFY changed FINAL)
    Q_PROPERTY(QString title READ title NOTIFY changed FINAL)
    Q_PROPERTY(QStringList weekdays READ weekdays NOTIFY changed FINAL)
    /// Six weeks of {text, name, isInMonth, isToday, isChosen, isCurrent}.
    Q_PROPERTY(QVariantList days READ days NOTIFY changed FINAL)

public:
    /// Returns the month around a day.
    using MonthOf = std::function<SmartFolderMonth(QDate)>;
    using Choose = std::function<void(QDate)>;

    bool isOpen() const { return bool(_monthOf); }
    QPointF position() const { return _position; }
    QString title() const { return _month.title; }
    QStringList weekdays() const { return _month.weekdays; }
    QVariantList days() const;

    void open(QPointF position, QDate current, MonthOf monthOf, Choose choose);
    Q_INVOKABLE void close();
    Q_INVOKABLE void turn(int months);
    /// Picks one of the days shown, by index.
    Q_INVOKABLE void choose(int place);
    Q_INVOKABLE void goToToday();
    /// Receives all keys while open.
    void pressKey(int key);

Q_SIGNALS:
    void changed();

private:
    void show(QDate current);
    void choose(QDate day);

    QPointF _position;
    QDate _current; ///< selected with the keyboard
    SmartFolderMonth _month;
    MonthOf _monthOf;
    Choose _choose;
};

} // namespace tessellar
