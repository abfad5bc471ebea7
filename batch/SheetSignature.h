#pragma once

#include <QByteArray>
#include <QHash>
#include <QVariant>

struct PrintSheet;

/// Tells whether what stands on a sheet has changed: two signatures are equal if the document, the
/// blank, its background's file and the organisation's data are. The database must be open.
class SheetSignature
{
public:
    /// Takes the organisation's data as they are now.
    SheetSignature();

    /// Empty if document or blank can't be read.
    QByteArray of(const PrintSheet& sheet);

private:
    QByteArray ofBlank(const QVariant& id);

    QByteArray m_organisation;
    QHash<QString, QByteArray> m_blanks; // by ID; few, and asked for with each document
};
