#pragma once

/// Which open file has the one hold of a file on the disk that there is at a time.
enum class Holder {
    ThisFile,
    AnotherFile, ///< of this or another program
    Unknown,     ///< the file system cannot tell, as many network shares
};
