#pragma once

#include "disk/Replacement.h"
#include "files/Outcome.h"

/// Puts the new file in the old one's place.
inline Outcome FinishReplacement(CReplacement& file)
{
    if (file.Finish())
        return Outcome::Done;
    return file.MayHoldOldAndNew() ? Outcome::FailedMixed : Outcome::Failed;
}
