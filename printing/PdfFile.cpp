#include "printing/PdfFile.h"

#include <QFileInfo>
#include <QRegularExpression>

namespace {

/// The printer's engine does not tell of a full disk. A whole file ends with the place of its
/// table, which stands there only if all before it was written.
bool isWholePdf(QFile& file)
{
    constexpr qint64 tailSize = 64;
    static const QRegularExpression end("startxref\\s+(\\d+)\\s+%%EOF\\s*$");
    if (!file.seek(qMax(file.size() - tailSize, qint64(0)))) {
        return false;
    }
    const QRegularExpressionMatch match = end.match(QString::fromLatin1(file.readAll()));
    return match.hasMatch() && file.seek(match.captured(1).toLongLong()) &&
           file.readLine().trimmed() == "xref";
}

bool copy(QFile& from, QIODevice& to)
{
    constexpr qint64 blockSize = 1 << 20;
    if (!from.seek(0)) {
        return false;
    }
    while (!from.atEnd()) {
        const QByteArray block = from.read(blockSize);
        if (block.isEmpty() || to.write(block) != block.size()) {
            return false;
        }
    }
    return true;
}

} // namespace

PdfFile::PdfFile(const QString& path, TargetFile::Links links)
    : m_path(path)
    , m_links(links)
    , m_part(unfinishedPdf(QFileInfo(path).path()))
{
}

bool PdfFile::open()
{
    if (!TargetFile::isAllowed(m_path, m_links) || !m_part.open()) {
        return false;
    }
    m_unfinished = std::make_unique<UnfinishedFile>(m_part.fileName());
    m_part.close(); // it stays there; the printer opens it by its name
    m_printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    m_printer->setOutputFormat(QPrinter::PdfFormat);
    m_printer->setOutputFileName(m_part.fileName());
    m_plainLayout = m_printer->pageLayout();
    return true;
}

bool PdfFile::addPage(const Paint& paint)
{
    // A blank without a paper of its own gets the printer's, not that of the page before.
    m_printer->setPageLayout(m_plainLayout);
    return paint(*m_printer, m_painter);
}

bool PdfFile::commit()
{
    m_painter.end();
    const bool isWritten = writeTarget();
    // Now, not with this object: a window keeps the results of a batch for long.
    m_part.remove();
    m_unfinished.reset();
    return isWritten;
}

bool PdfFile::writeTarget()
{
    // Through a second file: only that one can take the place of an older file in one go, with the
    // rights that a new file of the user has.
    QFile part(m_part.fileName());
    TargetFile file(m_path, m_links);
    return part.open(QIODevice::ReadOnly) && isWholePdf(part) && file.open() &&
           copy(part, file.device()) && file.commit();
}
