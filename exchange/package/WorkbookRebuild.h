#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <optional>

#include "exchange/package/CellRebuild.h"
#include "exchange/package/DrawingRebuild.h"
#include "exchange/package/PackageReader.h"
#include "exchange/package/PackageWriter.h"
#include "exchange/package/PartRelations.h"
#include "exchange/package/SharedTexts.h"
#include "exchange/package/StyleRebuild.h"

/// Makes of a workbook from outside one that the reading library can be trusted with: a new package
/// with nothing in it but what was read, understood and found within the limits. The library itself
/// believes what it reads, and would crash, hang or run out of memory.
class WorkbookRebuild
{
public:
    WorkbookRebuild();

    /// The new workbook. Returns nothing if the file is damaged, over the limits (PackageLimits) or
    /// no workbook, and puts the reason into `error` (may be null).
    std::optional<QByteArray> rebuild(const QByteArray& file, QString* error);

private:
    struct Sheet
    {
        QString name;
        QString state; ///< "hidden" or "veryHidden"; empty for a sheet to be seen
        QString part;
        bool isChart = false;
        int place = -1; ///< in the new workbook; -1 if it is left out
    };

    struct Name
    {
        QString name;
        QString comment;
        QString formula;
        int sheet = -1; ///< that it belongs to, in m_sheets; -1 for all
    };

    bool readWorkbook(QString* error);
    bool readWorkbookElement(PartReader& reader, QString* error);
    bool readSheet(const PartReader& reader, QString* error);
    void readName(PartReader& reader);
    bool readLists(QString* error);
    bool readPart(const char* kind, QByteArray& bytes, QString* error);

    bool addSheet(Sheet& sheet, QString* error);
    bool addChartSheet(Sheet& sheet, QString* error);
    void listSheet(Sheet& sheet, const QString& relation);
    bool addLink(const QString& relation, QString* error);
    bool addTheme(QString* error);
    void addProperties();
    void addWorkbook();
    void writeNames(XmlOutput& out) const;
    QString uniqueName(const QString& wanted) const;

    PackageReader m_package;
    PackageWriter m_copy;
    DrawingRebuild m_drawings;
    PartRelations m_rootRelations;
    PartRelations m_relations;
    QString m_part; ///< name of the workbook's part
    StyleRebuild m_styles;
    SharedTexts m_texts;
    CellBudget m_budget;
    bool m_isFrom1904 = false;

    QVector<Sheet> m_sheets;        ///< those with cells or a chart
    QVector<int> m_sheetByPosition; ///< of each sheet of the file, in m_sheets; -1 for others
    QVector<Name> m_names;
    QVector<QString> m_links; ///< relations to other workbooks, in their order
    XmlOutput m_sheetList;
    RelationList m_newRelations;
    int m_workSheetCount = 0;
    int m_chartSheetCount = 0;
    XmlOutput m_linkList;
    int m_linkCount = 0;
};
