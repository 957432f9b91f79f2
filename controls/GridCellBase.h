#pragma once

#include <QColor>
#include <QFont>
#include <QString>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

class QPainter;
class QRect;

/// How one cell is drawn, with what it does not set itself taken from its default cell.
struct GridCellLook {
    QColor textColor;
    QColor backColor;
    QFont font;
    std::uint32_t format = 0; ///< CGridCellBase::Format
    int margin = 0;           ///< in pixels, left and right of the text
};

/// A cell of the grid: its text, its state and how it looks.
///
/// Colours, font, margin and format that a cell does not set are those of the grid's default cell for its place. They
/// are rarely set, so they lie behind one pointer: a grid may hold millions of cells.
class CGridCellBase {
public:
    enum State : std::uint32_t { Focused = 1, Selected = 2, ReadOnly = 4, Fixed = 8, FixedRow = 16, FixedColumn = 32 };
    enum Format : std::uint32_t { Left = 0, Centred = 1, Right = 2, WordBreak = 16 };
    static constexpr std::uint32_t kNoFormat = 0xFFFFFFFF; ///< the default cell's
    static constexpr int kNoImage = -1;

    CGridCellBase() = default;
    CGridCellBase(CGridCellBase&&) noexcept = default;
    CGridCellBase& operator=(CGridCellBase&&) noexcept = default;
    CGridCellBase(const CGridCellBase&) = delete;
    CGridCellBase& operator=(const CGridCellBase&) = delete;
    virtual ~CGridCellBase() = default;

    /// Draws the content onto the background, which is filled already.
    virtual void Draw(QPainter& painter, const QRect& rect, const GridCellLook& look) const = 0;

    QString Text() const { return QString::fromStdU16String(m_text); }
    void SetText(QStringView text) { m_text.assign(text.utf16(), static_cast<std::size_t>(text.size())); }
    void TakeText(std::u16string text) noexcept { m_text = std::move(text); }
    std::uint32_t StateFlags() const { return m_state; }
    void SetState(std::uint32_t state) { m_state = state; }
    std::uint32_t TextFormat() const { return m_format; }
    void SetFormat(std::uint32_t format) { m_format = format; }
    std::uintptr_t Data() const { return m_data; }
    void SetData(std::uintptr_t data) { m_data = data; }

    int Image() const { return m_extras ? m_extras->image : kNoImage; }
    void SetImage(int image) { Extra().image = image; }
    std::optional<QColor> BackColor() const { return m_extras ? m_extras->backColor : std::nullopt; }
    void SetBackColor(std::optional<QColor> color) { Extra().backColor = color; }
    std::optional<QColor> TextColor() const { return m_extras ? m_extras->textColor : std::nullopt; }
    void SetTextColor(std::optional<QColor> color) { Extra().textColor = color; }
    std::optional<QFont> Font() const { return m_extras ? m_extras->font : std::nullopt; }
    void SetFont(std::optional<QFont> font) { Extra().font = std::move(font); }
    std::optional<int> Margin() const { return m_extras ? m_extras->margin : std::nullopt; } ///< in pixels, both sides
    void SetMargin(std::optional<int> margin) { Extra().margin = margin; }

private:
    struct Extras {
        int image = kNoImage;
        std::optional<int> margin;
        std::optional<QColor> backColor;
        std::optional<QColor> textColor;
        std::optional<QFont> font;
    };
    Extras& Extra();

    std::u16string m_text;
    std::uint32_t m_state = 0;
    std::uint32_t m_format = kNoFormat;
    std::uintptr_t m_data = 0;
    std::unique_ptr<Extras> m_extras;
};
