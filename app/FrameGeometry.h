#pragma once

#include <QRect>
#include <QSize>

/// The restored frame on a screen of `screen` pixels: five sixths of its width and height, centred; each number is
/// truncated.
QRect RestoredFrameGeometry(QSize screen);
