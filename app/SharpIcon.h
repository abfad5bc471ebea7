#pragma once

#include <QIcon>
#include <QPixmap>
#include <QString>

// Pictures come in two sizes, "name.png" and "name@2x.png". Without an application attribute that
// this program does not set, Qt takes the small one for an icon on a screen with more than one
// pixel a unit, and stretches it. What is here takes the large one there.

/// The icon with every picture that it has, for buttons and actions of windows that are dressed by
/// applyBaseStyle(). Looks the same as the icon given on a plain screen.
QIcon sharpIcon(const QIcon& icon);

/// The picture of a resource path ("...png"), the large one with its ratio where a screen has more
/// than one pixel a unit.
QPixmap sharpPixmap(const QString& path);

/// What is to be painted in the place of a pixmap that a sharp icon gave: the same picture in the
/// screen's pixels, or the pixmap itself where there is no other.
QPixmap sharpTwin(const QPixmap& pixmap);
