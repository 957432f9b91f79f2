#pragma once

#include "changes/WordViews.h"

#include <QAbstractTableModel>

#include <cstddef>
#include <span>
#include <vector>

/// The words of a cell in every way to look at them, a row each: its name and what the words are in it.
class CInspectorModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    explicit CInspectorModel(QObject* parent = nullptr) : QAbstractTableModel(parent) {}

    /// Shows `bytes`, of which the first `own` are the cell's; those after it serve the numbers that are longer. What
    /// takes no more than the cell's own can be edited where `isEditable`.
    void SetWords(std::vector<std::byte> bytes, std::size_t own, bool isEditable);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    /// Has Typed told. The words stay until they are set anew.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

signals:
    void Typed(const WordView& view, const QString& text);

private:
    bool IsLonger(const WordView& view) const { return BytesTaken(view) > m_own; }
    bool IsBeyond(const WordView& view) const { return m_own > 0 && IsLonger(view); } ///< the cell
    std::span<const std::byte> Own() const { return std::span(m_bytes).first(m_own); }
    QString TextOf(const WordView& view) const;
    QString InFull(const WordView& view) const;

    std::vector<std::byte> m_bytes;
    std::size_t m_own = 0;
    bool m_isEditable = false;
};
