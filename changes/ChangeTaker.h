#pragma once

#include "changes/ChangeRecord.h"

/// Takes changes one after the other, none of which need be kept.
class CChangeTaker {
public:
    virtual ~CChangeTaker() = default;

    /// False when no more are wanted.
    virtual bool Take(const ChangeRecord& record) = 0;
};
