#pragma once

#include "merge/MergeParams.h"
#include "text/Reporter.h"

/// Makes the merged file: of exactly the merged size, with the stretch of each source at its place, as the raw bytes
/// that it has in the source, and zero words everywhere else. What the source no longer holds of its stretch is zero.
/// The merged path's own file, if there is one, is replaced.
///
/// False after a failure, then reported exactly once. What was written by then stays on disk:
/// - "Merge file %s failed!" with the merged path when it cannot be created (nothing new on disk); the same with a
///   second line of operation, path and the system's reason when reading or writing fails later on (the merged file as
///   far as it was written);
/// - "Open file %s failed!" with the path of the source that cannot be opened (the merged file at its full size, with
///   the stretches before that one).
///
/// "Merge file %s failed!" also answers, before anything is touched, what would destroy a file or reach beyond one:
/// a merged path that is one of the sources itself, by whatever name or link, and stretches that lie outside the
/// merged file or before a file's start, which ValidateMergeParams does not let through.
bool MergeFiles(const MergeParams& params, CReporter& reporter);
