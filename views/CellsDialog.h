#pragma once

/// How a dialog for a command on many cells ended, unless it was cancelled.
enum class CellsAnswer {
    Do,      ///< at once
    Preview, ///< show first what it would do
};
