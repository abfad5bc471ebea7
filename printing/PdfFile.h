#pragma once

#include <QPageLayout>
#include <QPainter>
#include <QPrinter>
#include <QString>
#include <QTemporaryFile>

#include <functional>
#include <memory>

#include "app/TargetFile.h"
#include "app/UnfinishedFile.h"

/// A PDF file that comes to be whole or not at all: the pages go to a hidden file in the same
/// folder, which replaces an older file of the name only when it is complete. Without commit()
/// nothing is left behind.
class PdfFile
{
public:
    /// Sets the paper on the printer and paints one sheet, for which it begins the painter or, if
    /// that is active, a new page. False if it can't.
    using Paint = std::function<bool(QPrinter&, QPainter&)>;

    explicit PdfFile(const QString& path, TargetFile::Links links = TargetFile::Links::Follow);

    QString path() const { return m_path; }

    /// False if nothing can be written into the folder, or what has the name is no file.
    bool open();

    /// Prints a page on a sheet of its own. False if the file cannot take it.
    bool addPage(const Paint& paint);

    /// Ends the file, which must have a page, and gives it its name. False if it could not be
    /// written as a whole; a file that had the name is then as it was.
    bool commit();

private:
    bool writeTarget();

    QString m_path;
    TargetFile::Links m_links;
    QTemporaryFile m_part;
    std::unique_ptr<UnfinishedFile> m_unfinished;
    std::unique_ptr<QPrinter> m_printer;
    QPageLayout m_plainLayout; // of a printer that no page has changed
    QPainter m_painter;        // ends before its printer
};
