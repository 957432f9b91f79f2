// The toolkit's headers, compiled once for all window code. Each file still names what it needs: the presets that build
// without this (release, core) find what is missing.
#pragma once

#include <QtWidgets>

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>
