#pragma once

#include "tests/faults/FaultRun.h"
#include "tests/faults/SavePath.h"

#include <optional>
#include <string>

/// Whether a program that does (SavePath::tellsTears) told that the file may hold old and new words.
bool TellsTear(const FaultRun& run);

/// Judges what is on the disk after a save with a fault; an empty text is no complaint.
class CSaveVerdict {
public:
    /// `old` and `fresh` are what the target holds before and after a save without a fault.
    CSaveVerdict(const SavePath& path, std::optional<Bytes> old, Bytes fresh);

    /// After a run that ended with the given fault: the target, whatever is left beside it, and the message.
    std::string ComplaintOf(const SavePlace& place, const Fault& fault, const FaultRun& run) const;

private:
    std::string ComplaintOfSuccess(const SavePlace& place) const;
    std::string ComplaintOfTarget(const SavePlace& place, const Fault& fault, const FaultRun& run) const;
    std::string ComplaintOfMessage(const FaultRun& run) const;
    std::string ComplaintOfRest(const SavePlace& place, const Fault& fault, const FaultRun& run) const;
    bool IsMix(const Bytes& bytes) const;
    bool IsSoundMix(const SavePlace& place) const;
    bool HoldsOldAndNew(const SavePlace& place) const;
    std::optional<Bytes> WordsOf(const SavePlace& place, const std::optional<Bytes>& content) const;

    const SavePath& m_path;
    std::optional<Bytes> m_old;
    Bytes m_new;
};
