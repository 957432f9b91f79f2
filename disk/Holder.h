#pragma once

/// Which open file has the hold of a file on the disk, of which there is only one at a time.
enum class Holder {
    ThisFile,
    AnotherFile, ///< of this or another program
    Unknown,     ///< the file system cannot tell, as many network shares
};
