#pragma once

#include "tests/app/SaveFixture.h"

/// The window over "notes.rcp": rows of an array "Zone °C" of two numbers with one decimal, a "Mode" with named bits, a
/// "Count" without notes and a "Speed" of 100 at most; four are not empty. One zone lies outside its sensible range,
/// that of row 2 in the second column.
struct NotesFixture : SaveFixture {
    explicit NotesFixture(int rows = 4);
    void SetUp() override;

    static constexpr int kZone0 = 2; ///< columns of the grid
    static constexpr int kZone1 = 3;
    static constexpr int kMode = 4;
    static constexpr int kCount = 5;
    static constexpr int kSpeed = 6;

    /// Changes the value of each cell of the first zone's column by a paste.
    void PasteZones(const QString& text) { PasteAt(1, kZone0, text); }
};
