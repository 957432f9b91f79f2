#pragma once

#include <QSplitter>

/// The splitter between the two panes. A click on its bar collapses the left pane to nothing, the next one brings it
/// back at its normal width; a drag of the bar ends in the same toggle rather than where it was dragged to. The bar
/// takes the keyboard focus: Space or Enter toggles too.
class CMySplitter final : public QSplitter {
    Q_OBJECT

public:
    explicit CMySplitter(QWidget* parent = nullptr);

    /// The pixels to which the left pane is brought back.
    void SetLeftPaneWidth(int pixels) { m_nLeftPaneWidth = pixels; }

    /// Gives the left pane so many pixels and the right one the rest. Where the right pane needs more than that, the
    /// left one gives way, and gets its width back as soon as there is room for it.
    void PlaceBar(int left);

    /// Whether the left pane is at its normal width.
    bool IsExpanded() const { return m_bExpanded; }

    /// Whether any of the left pane can be seen: it may have been dragged open or shut.
    bool ShowsLeftPane() const { return sizes().front() > 0; }

    /// Collapses or restores the left pane.
    void Toggle();

    /// What a release of the left button does before the ordinary handling, at the height `y` in this widget's own
    /// coordinates. True when the release toggles.
    ///
    /// kept: `y` is compared with the splitter's place on the screen, so a release in its top band, as tall as its top
    /// edge lies below the top of the screen, does nothing.
    bool TogglesAt(int y) const;

protected:
    QSplitterHandle* createHandle() override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;

private:
    /// Tab would come to fields of a collapsed pane, which nobody sees.
    void DisableHiddenPane();
    void BarMoved();

    bool m_bExpanded = true;
    int m_nLeftPaneWidth = 0;
    int m_nLeftWanted = 0; ///< pixels of the left pane where there is room for both
};
