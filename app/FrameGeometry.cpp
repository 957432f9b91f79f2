#include "app/FrameGeometry.h"

QRect RestoredFrameGeometry(QSize screen)
{
    const int width = 5 * screen.width() / 6;
    const int height = 5 * screen.height() / 6;
    return {(screen.width() - width) / 2, (screen.height() - height) / 2, width, height};
}
