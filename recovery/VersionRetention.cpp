#include "recovery/VersionRetention.h"

#include <algorithm>
#include <map>
#include <numeric>

namespace {

using std::chrono::days;
using std::chrono::floor;

using Indices = std::vector<std::size_t>; ///< of versions

/// What goes of one file, whose versions come from the oldest to the newest.
class CFileRetention {
public:
    CFileRetention(std::span<const KeptVersion> versions, UtcTime now, const VersionLimits& limits)
        : m_versions(versions),
          m_firstDay(floor<days>(now) - days(limits.days - 1)),
          m_limits(limits)
    {
    }

    /// Appends to `removed` what goes.
    void Remove(const Indices& ofFile, std::vector<bool>& removed) const
    {
        bool isNeeded = false; // by an older version that stays
        for (std::size_t i = 0; i < ofFile.size(); ++i) {
            const bool stays = isNeeded || i + m_limits.newest >= ofFile.size() || i + 1 == ofFile.size() ||
                               IsLastOfYoungDay(ofFile[i], ofFile[i + 1]);
            removed[ofFile[i]] = !stays;
            isNeeded = stays && m_versions[ofFile[i]].isRecords;
        }
    }

private:
    bool IsLastOfYoungDay(std::size_t version, std::size_t next) const
    {
        const auto day = floor<days>(m_versions[version].time);
        return day >= m_firstDay && day != floor<days>(m_versions[next].time);
    }

    std::span<const KeptVersion> m_versions;
    std::chrono::sys_days m_firstDay;
    const VersionLimits& m_limits;
};

/// The indices of all versions, the oldest first.
Indices ByAge(std::span<const KeptVersion> versions)
{
    Indices indices(versions.size());
    std::iota(indices.begin(), indices.end(), std::size_t{0});
    std::stable_sort(indices.begin(), indices.end(),
                     [&](std::size_t a, std::size_t b) { return versions[a].time < versions[b].time; });
    return indices;
}

} // namespace

std::vector<std::size_t> VersionsToRemove(std::span<const KeptVersion> versions, UtcTime now,
                                          const VersionLimits& limits)
{
    const Indices byAge = ByAge(versions);
    std::map<std::size_t, Indices> files;
    for (const std::size_t i : byAge)
        files[versions[i].file].push_back(i);

    std::vector<bool> removed(versions.size(), false);
    const CFileRetention retention(versions, now, limits);
    for (const auto& [file, ofFile] : files)
        retention.Remove(ofFile, removed);

    std::uint64_t bytes = 0;
    for (std::size_t i = 0; i < versions.size(); ++i)
        bytes += removed[i] ? 0 : versions[i].bytes;
    for (const std::size_t i : byAge) {
        if (bytes <= limits.bytes)
            break;
        if (removed[i] || files[versions[i].file].back() == i)
            continue;
        removed[i] = true;
        bytes -= versions[i].bytes;
    }

    Indices gone;
    for (std::size_t i = 0; i < versions.size(); ++i)
        if (removed[i])
            gone.push_back(i);
    return gone;
}
