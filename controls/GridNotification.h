#pragma once

#include <QString>

/// What the grid tells its parent: which control speaks, what happened and at which cell.
struct GridNotification {
    enum Code {
        RightClick = -5,          ///< a right button release over a cell
        SelectionChanging = -100, ///< before the focus cell moves; the cell is the one it moves to
        EndInPlaceEdit = -176,    ///< from the in-place editor, when an edit ends
    };

    int controlId = 0; ///< of the grid, or of its editor (8)
    int code = 0;
    int row = 0;    ///< grid row, the fixed rows counted
    int column = 0; ///< grid column, the fixed columns counted
};
