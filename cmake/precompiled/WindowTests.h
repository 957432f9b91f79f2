// What every suite of window tests includes, compiled once for all of them.
#pragma once

#include "cmake/precompiled/Toolkit.h"

#include <QTest>
#include <gtest/gtest.h>
