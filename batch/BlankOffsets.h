#pragma once

#include <QPoint>
#include <QSqlRecord>
#include <QString>
#include <QVariant>

#include <optional>

#include "render/page/BlankPaper.h"

/// A blank as it was read, and the way to give it other print offsets if it is still the same.
class BlankOffsets
{
public:
    enum class Result
    {
        Written,
        Changed, ///< the blank has been changed or deleted since it was read; it is as it was
        Failed
    };

    /// Reads a blank from the open database. Nothing, with the reason in `error`, if it can't.
    static std::optional<BlankOffsets> read(const QVariant& id, QString* error);

    QString name() const; ///< "Бланк N" for an unnamed one
    BlankPaper paper() const { return m_paper; }
    QPoint offsets() const; ///< millimetres, as they are set

    /// Stores other offsets, in millimetres, in the database's file, which the open connection need
    /// not be able to write. On failure puts the reason into `error`.
    Result write(const QPoint& offsets, QString* error) const;

private:
    BlankOffsets(const QSqlRecord& row, const BlankPaper& paper);

    QSqlRecord m_row;
    BlankPaper m_paper;
};
