#pragma once

#include <QFont>

/// The font of a coloured list or its header: face "宋体" or what the system has in its place.
///
/// `height` is that of a line of text in pixels, and the letters are as large as fits in it; below 0 it is, without the
/// sign, the height of the letters; 0 leaves the size to the toolkit. `width` is that of an average letter in pixels, 0
/// for what goes with the height.
QFont ListFont(int height, int width);
