#pragma once

#include "document/CellJudge.h"
#include "document/ChosenCells.h"
#include "model/NumberChange.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// What a command gives many cells: which they are, and what each would become. It changes nothing by itself.
class CCellsCommand {
public:
    virtual ~CCellsCommand() = default;

    /// The cells, all of them within the rows.
    virtual const CChosenCells& Cells() const = 0;

    /// What would become of one of them.
    virtual CellVerdict Judge(CellPlace place, const CCellJudge& judge) const = 0;
};

/// One text for all chosen cells.
class CFillWithText final : public CCellsCommand {
public:
    enum class As {
        Typed,   ///< as if typed into each cell
        Entered, ///< a number is stored exactly (CCellJudge::Entered)
    };

    CFillWithText(CChosenCells cells, std::u16string text, As as)
        : m_cells(std::move(cells)),
          m_text(std::move(text)),
          m_as(as)
    {
    }

    const CChosenCells& Cells() const override { return m_cells; }
    CellVerdict Judge(CellPlace place, const CCellJudge& judge) const override;

private:
    CChosenCells m_cells;
    std::u16string m_text;
    As m_as;
};

/// Numbers that follow each other by a step.
struct NumberSeries {
    enum class Way {
        DownRows,     ///< each chosen row has one number
        AlongColumns, ///< each chosen column
    };

    CDecimal start;
    CDecimal step;
    Way way = Way::DownRows;
};

/// A series for the chosen cells: the first chosen row, or column, has its start. Cells that hold text are refused.
class CFillWithSeries final : public CCellsCommand {
public:
    CFillWithSeries(CChosenCells cells, NumberSeries series) : m_cells(std::move(cells)), m_series(std::move(series)) {}

    const CChosenCells& Cells() const override { return m_cells; }
    CellVerdict Judge(CellPlace place, const CCellJudge& judge) const override;

private:
    CChosenCells m_cells;
    NumberSeries m_series;
};

/// The number of each chosen cell, changed.
class CCalculate final : public CCellsCommand {
public:
    CCalculate(CChosenCells cells, NumberChange change) : m_cells(std::move(cells)), m_change(std::move(change)) {}

    const CChosenCells& Cells() const override { return m_cells; }
    CellVerdict Judge(CellPlace place, const CCellJudge& judge) const override;

private:
    CChosenCells m_cells;
    NumberChange m_change;
};

/// Cells that get what others of their columns have.
struct FillDownBlock {
    std::int32_t sourceRow = 0;
    std::vector<CellRange> targets; ///< none of them in `sourceRow`
};

/// What the rows at the top of blocks hold, for the cells under them: as it is when the command is made.
class CFillDown final : public CCellsCommand {
public:
    /// Sources and targets lie within the rows.
    CFillDown(const std::vector<FillDownBlock>& blocks, const CCellJudge& judge);

    const CChosenCells& Cells() const override { return m_cells; }
    CellVerdict Judge(CellPlace place, const CCellJudge& judge) const override;

private:
    const CCellState* SourceOf(CellPlace place) const;

    struct Target { ///< rows of one block, with the sources of its columns
        std::int32_t lastRow;
        std::int32_t sourceRow;
    };

    CChosenCells m_cells;
    std::map<std::uint32_t, std::map<std::int32_t, Target>> m_targets; ///< by column and first row
    std::map<CellPlace, CCellState> m_sources;
};
