#pragma once

#include "platform/machine.h"
#include "platform/task.h"

#include <QImage>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace tessellar {

/// What lies behind the tiles: the desktop's picture, or one of the launcher's own, as a setting has
/// it.
///
/// 1. A picture that was blurred before is kept in the application's folder ("Backdrop.png") and is
///    there at the start.
/// 2. Meanwhile the desktop is asked which picture it shows now; another one is read, blurred and kept.
/// 3. It is drawn for the window on a worker. Until then the former one is stretched.
///
/// Main thread only.
class Backdrop final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")

public:
    explicit Backdrop(const Machine& machine) : _machine(machine) {}

    /// Begins to draw for a window of this size.
    void prepare(QSize size);
    /// Asks anew which picture there is.
    void look();
    /// To be called when a setting may have changed.
    void applySettings();
    /// For so many pixels; not null. `changed` says when there is a better one.
    QImage image(QSize size, bool isDark);

Q_SIGNALS:
    void changed();

private:
    /// A blurred picture, and what it was made of: a file's path, size and date.
    struct Picture {
        QImage image;
        QString source;

        bool isOwn() const { return image.isNull(); }
    };
    struct Drawn {
        QImage image;
        bool isDark = false;
        QString source = {}; ///< of the picture; empty for the launcher's own
    };

    static Picture keptPicture(const FileSystem& files, const QString& path);
    static Drawn drawn(const Picture& picture, QSize size, bool isDark);
    bool isWanted() const;
    QString path() const;
    void show(const Picture& picture);
    void draw(QSize size, bool isDark);

    const Machine& _machine;
    bool _hadWanted = true; ///< when it was last looked for
    Picture _picture;       ///< none: the launcher's own
    Drawn _drawn;
    QSize _drawingSize; ///< of what a worker draws
    bool _isDrawingDark = false;
    Task _looking;
    Task _drawing;
};

} // namespace tessellar
