#pragma once

#include <QQuickItem>
#include <QStringList>

namespace tessellar {

/// A tile's properties, from its row; see `TileView`. In C++, because QML keeps strings on its own
/// heap: searching collected garbage at every second letter.
class TileItem : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int index MEMBER _index NOTIFY indexChanged FINAL)
    Q_PROPERTY(QString tileId MEMBER _tileId NOTIFY tileIdChanged FINAL)
    Q_PROPERTY(int kind MEMBER _kind NOTIFY kindChanged FINAL)
    Q_PROPERTY(QString label MEMBER _label NOTIFY labelChanged FINAL)
    Q_PROPERTY(QStringList appKeys MEMBER _appKeys NOTIFY appKeysChanged FINAL)
    Q_PROPERTY(QString symbolName MEMBER _symbolName NOTIFY symbolNameChanged FINAL)
    Q_PROPERTY(QString badge MEMBER _badge NOTIFY badgeChanged FINAL)
    Q_PROPERTY(QString activity MEMBER _activity NOTIFY activityChanged FINAL)
    Q_PROPERTY(QString description MEMBER _description NOTIFY descriptionChanged FINAL)
    Q_PROPERTY(QString markedLabel MEMBER _markedLabel NOTIFY markedLabelChanged FINAL)
    Q_PROPERTY(QString place MEMBER _place NOTIFY placeChanged FINAL)
    Q_PROPERTY(bool isUnavailable MEMBER _isUnavailable NOTIFY isUnavailableChanged FINAL)
    Q_PROPERTY(bool isSelected MEMBER _isSelected NOTIFY isSelectedChanged FINAL)
    Q_PROPERTY(bool isVacant MEMBER _isVacant NOTIFY isVacantChanged FINAL)
    Q_PROPERTY(bool isCut MEMBER _isCut NOTIFY isCutChanged FINAL)
    Q_PROPERTY(bool isWeakMatch MEMBER _isWeakMatch NOTIFY isWeakMatchChanged FINAL)

public:
    using QQuickItem::QQuickItem;

Q_SIGNALS:
    void indexChanged();
    void tileIdChanged();
    void kindChanged();
    void labelChanged();
    void appKeysChanged();
    void symbolNameChanged();
    void badgeChanged();
    void activityChanged();
    void descriptionChanged();
    void markedLabelChanged();
    void placeChanged();
    void isUnavailableChanged();
    void isSelectedChanged();
    void isVacantChanged();
    void isCutChanged();
    void isWeakMatchChanged();

private:
    int _index = 0;
    QString _tileId;
    int _kind = 0;
    QString _label;
    QStringList _appKeys;
    QString _symbolName;
    QString _badge;
    QString _activity;
    QString _description;
    QString _markedLabel;
    QString _place;
    bool _isUnavailable = false;
    bool _isSelected = false;
    bool _isVacant = false;
    bool _isCut = false;
    bool _isWeakMatch = false;
};

} // namespace tessellar
