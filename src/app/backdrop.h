#pragma once

#include "platform/machine.h"
#include "platform/task.h"

#include <QImage>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace tessellar {

/// The background: the desktop picture or the launcher's own, depending on a setting.
///
/// 1. The last blurred picture is cached in the application's folder ("Backdrop.png") and available at
///    start-up.
/// 2. Meanwhile the desktop is asked for its current picture; a new one is read, blurred and cached.
/// 3. It is rendered for the window on a worker. Until then the previous one is stretched.
///
/// Main thread only.
class Backdrop final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")

public:
    explicit Backdrop(const Machine& machine) : _machine(machine) {}

    /// Starts rendering for a window of this size.
    void prepare(QSize size);
    /// Checks the desktop picture again.
    void reload();
    /// Call when settings may have changed.
    void applySettings();
    /// The best image available, in pixels; never null. `changed` announces a better one.
    QImage image(QSize size, bool isDark);

Q_SIGNALS:
    void changed();

private:
    /// A blurred picture, and its source: path, size and date of the file.
    struct Picture {
        QImage image;
        QString source;

        bool isOwn() const { return image.isNull(); }
    };
    struct Drawn {
        QImage image;
        bool isDark = false;
        QString source = {}; ///< the picture's; empty for the launcher's own
    };

    static Picture keptPicture(const FileSystem& files, const QString& path);
    static Drawn drawn(const Picture& picture, QSize size, bool isDark);
    bool isWanted() const;
    QString path() const;
    void show(const Picture& picture);
    void draw(QSize size, bool isDark);

    const Machine& _machine;
    bool _hadWanted = true; ///< at the last check
    Picture _picture;       ///< null for the launcher's own
    Drawn _drawn;
    QSize _drawingSize; ///< being rendered on a worker
    bool _isDrawingDark = false;
    Task _loading;
    Task _drawing;
};

} // namespace tessellar
