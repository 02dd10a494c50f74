// Makes one picture of a given size from a theme's file or an own drawing, its states and its
// bytes. It knows nothing of lists and drawers: Main.cpp decides which pictures are made and where
// they go.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtGui/QImage>

// Where pictures come from; both are host paths.
struct Sources {
    QString Theme; // the root of the icon theme, with <category>/<size>/<name>.png below it
    QString Own;   // the drawer of our own drawings, <name>.svg
};

enum class State { Plain, Selected, Ghosted };

// The picture that source names at size pixels: "category/name" is the theme's, a bare name is our
// own. The theme's own drawing for the size is taken, else the next bigger one scaled down; beyond the
// theme's largest size that one, grown. Null when there is none.
QImage LoadPicture(const Sources& sources, const QString& source, int size);

// The picture with our drawing badge in its lower right quarter. Null when the badge is missing.
QImage WithBadge(QImage picture, const Sources& sources, const QString& badge);

QImage InState(const QImage& picture, State state);

// The bytes of a PNG icon file: the plain picture with the icon's type in its private chunk, the
// selected one after it.
QByteArray IconFile(const QImage& picture, quint32 iconType);
