#include "recovery/UnsavedWork.h"

bool HasFileOfWords(const WorkHeader& header)
{
    return !header.file.empty() && header.type != FileType::Csv;
}
